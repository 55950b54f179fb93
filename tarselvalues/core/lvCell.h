// lvToCell(): makes a cell from what C++ programs have at hand.
//
// Ownership: the caller's cell holds what is made; texts are copied.
// Threads:   any thread; but one at a time for a cell that is copied.
// Errors:    a text that is too long for memory, or for an int, is std::bad_alloc.
// Limits:    a text may have NULs in it; but of one of 65,535 bytes or more no more is read than
//            what stands before the first (see lvrString.h).
#pragma once

#include <climits>
#include <new>
#include <string_view>
#include <type_traits>

#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvValue.h"
#include "tarselvalues/core/lvrString.h"

// Returns a copy of a cell or handle. One thread at a time.
inline lvArg lvToCell(lvArg const& value) { return value; }

// Returns an integer; 1 and 0 for true and false. Numbers that an int need not hold do not compile:
// the program says how it cuts them; nor do characters, but signed and unsigned char are numbers.
// Any thread.
template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
lvArg lvToCell(Number number) {
  static_assert(!std::is_same_v<Number, char> && !std::is_same_v<Number, wchar_t> &&
                    !std::is_same_v<Number, char16_t> && !std::is_same_v<Number, char32_t>,
                "a character is neither a number nor a text");
  static_assert(
      sizeof(Number) < sizeof(int) || (sizeof(Number) == sizeof(int) && std::is_signed_v<Number>),
      "a cell holds an int");
  lvArg cell;
  cell.setInt(static_cast<int>(number));
  return cell;
}

// Returns a new string with this text. Any thread.
inline lvArg lvToCell(std::string_view text) {
  if (text.size() > INT_MAX) {
    throw std::bad_alloc();
  }
  lvValue cell;
  cell.setString(text.data() != nullptr ? text.data() : "", static_cast<int>(text.size()),
                 lvrString::CopyAndOwnEmpty);
  if (cell.getString(nullptr) == nullptr) {
    throw std::bad_alloc();
  }
  return cell;
}

// The same for a NUL-terminated text; nil for a null one. Any thread.
inline lvArg lvToCell(char const* text) {
  return text != nullptr ? lvToCell(std::string_view(text)) : lvArg();
}

// Returns what lvToCell() does, but strings are interned, as is good for keys: many maps share
// them. Any thread.
template <class Key>
lvArg lvToKey(Key const& key) {
  lvArg cell = lvToCell(key);
  if (cell.getType() == lvArg::StringType) {
    return lvString(cell);
  }
  return cell;
}
