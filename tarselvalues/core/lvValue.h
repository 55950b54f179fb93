// lvValue: a cell with helpers that read and write strings.
//
// Exactly an lvArg, plus: making a fresh string object from a text, reading a cell's text, reading
// an integer from an integer or a string, turning any value into a string. The strings made here
// are plain lvrString objects; lvString makes interned ones.
//
// Ownership: as for lvArg, and so the bookkeeping bits.
// Threads:   one thread at a time per cell.
// Errors:    operations that return int answer 0. Out of memory for the string object, with which a
//            text of up to 128 bytes is one block, is std::bad_alloc and leaves the cell as it was;
//            out of memory for a longer text leaves a string without text and is not reported.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvrString.h"

class TARSELVALUES_API lvValue : public lvArg {
 public:
  // Makes a nil cell.
  lvValue() noexcept = default;

  // Copies or takes any cell.
  lvValue(lvArg const& other) : lvArg(other) {}  // NOLINT(google-explicit-constructor)
  lvValue(lvArg&& other) noexcept
      : lvArg(static_cast<lvArg&&>(other)) {}  // NOLINT(google-explicit-constructor)

  // Takes a reference to `string`.
  lvValue(lvrString const& string);  // NOLINT(google-explicit-constructor)

  // Borrows the text: "(NIL)" for nil, a string's own text (null if it has none), null for any
  // other value. `length`, where not null, receives the number of bytes if there is a string or
  // nil, and is left alone otherwise.
  char const* getString(int* length) const;

  // Returns the integer of an integer cell, lvrString::getInteger() of a string, else -1.
  int getInt() const;

  // The cell takes a new string object with this text; `length` (-1 measures) and `mode` as for
  // lvrString::setStringData(). What it held is released once the new string is there.
  int setString(char const* text, int length, int mode);

  // The cell takes a reference to `string`.
  int setString(lvrString const& string);

  // The same without releasing what the cell held: for fresh or released cells only.
  int setStringFast(char const* text, int length, int mode);
  int setStringFast(lvrString const& string);

  // Returns a cell with this very string, or with a new string made by lvrString::setFrom():
  // "(NIL)" for nil, "%d" of an integer, "%08x" of a raw address, a string without text for
  // anything else.
  lvValue toString() const;
};
