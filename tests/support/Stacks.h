// The array of a stack, to look at and to fill.
#pragma once

#include <initializer_list>
#include <string>

#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"

namespace test {

using StackLayout = lvLayoutAccess<lvrStack>;

// All cells in the order of the array, the bottom first, "1 2 . . "; a dot for nil.
inline std::string cellsOf(lvrStack const& stack) {
  std::string cells;
  for (int i = 0; i < StackLayout::alloced(stack); ++i) {
    lvArg const& cell = StackLayout::elements(stack)[i];
    cells += cell.isNil() ? ". " : brief(cell) + " ";
  }
  return cells;
}

// The elements from the top down, "2 1 ".
inline std::string fromTop(lviStack const& stack) {
  std::string elements;
  for (int depth = 0; depth < stack.getSize(); ++depth) {
    elements += brief(stack.peek(depth)) + " ";
  }
  return elements;
}

inline void pushEach(lviStack& stack, std::initializer_list<int> values) {
  for (int const value : values) {
    stack.push(integer(value));
  }
}

inline void pushUpTo(lviStack& stack, int last) {
  for (int value = 1; value <= last; ++value) {
    stack.push(integer(value));
  }
}

}  // namespace test
