// The ring buffer of a vector, to look at and to make.
#pragma once

#include <initializer_list>
#include <string>

#include "support/Cells.h"
#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"

namespace test {

using VectorLayout = lvLayoutAccess<lvrVector>;

// As brief(), but a dot for nil.
inline std::string briefSlot(lvArg const& cell) { return cell.isNil() ? "." : brief(cell); }

// All slots in the order of the array, "1 2 . . ".
inline std::string slotsOf(lvrVector const& vector) {
  std::string slots;
  for (int i = 0; i < VectorLayout::alloced(vector); ++i) {
    slots += briefSlot(VectorLayout::elements(vector)[i]) + " ";
  }
  return slots;
}

// The elements in their order, "1 2 ".
inline std::string elementsOf(lviList const& list) {
  std::string elements;
  for (int i = 0; i < list.getSize(); ++i) {
    elements += briefSlot(list.at(i)) + " ";
  }
  return elements;
}

inline void append(lviList& list, std::initializer_list<int> values) {
  for (int const value : values) {
    list.insert(integer(value), -1);
  }
}

// A ring of `alloced` cells that holds the integers from slot `start` on.
inline lvArg* newRing(int alloced, int start, std::initializer_list<int> values) {
  auto* const ring = new lvArg[static_cast<std::size_t>(alloced)];
  int slot = start;
  for (int const value : values) {
    ring[slot++ % alloced].setInt(value);
  }
  return ring;
}

// A vector that takes such a ring over.
class RingVector : public Held<lvrVector> {
 public:
  RingVector(int alloced, int start, std::initializer_list<int> values)
      : Held(alloced, static_cast<int>(values.size()), start, newRing(alloced, start, values)) {}
};

}  // namespace test
