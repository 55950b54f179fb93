// A string object of its own in a fixture, and what its private fields say.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tarselvalues/core/LayoutAccess.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvrString.h"

namespace test {

using StringFields = lvLayoutAccess<lvrString>;

// Bits 0-3 of the flags word.
constexpr unsigned IntegerValid = 1;
constexpr unsigned HashValid = 2;
constexpr unsigned Interned = 4;
constexpr unsigned Borrowed = 8;

inline unsigned flagsOf(lvrString const& string) { return StringFields::flags(string) & 0xF; }
inline bool isBorrowed(lvrString const& string) { return (flagsOf(string) & Borrowed) != 0; }
inline bool hasCachedInteger(lvrString const& string) {
  return (flagsOf(string) & IntegerValid) != 0;
}
inline bool hasCachedHash(lvrString const& string) { return (flagsOf(string) & HashValid) != 0; }

// The bytes of a string object; "<no text>" without one.
inline std::string bytesOf(lvrString const& string) {
  return string.getText() != nullptr
             ? std::string(string.getText(), static_cast<std::size_t>(string.getLength()))
             : "<no text>";
}

// Sets a copy of all bytes.
inline int setCopy(lvrString& string, std::string const& text) {
  return string.setStringData(text.data(), static_cast<int>(text.size()), lvrString::CopyAndOwn);
}

// A string object without text, held by a cell.
class HeldString {
 public:
  HeldString() : cell(*lvrString::defaultCtorMethod()) {}
  explicit HeldString(std::string const& text) : HeldString() { setCopy(**this, text); }

  lvrString& operator*() const { return static_cast<lvrString&>(*cell.getReferencable()); }
  lvrString* operator->() const { return &**this; }

  lvArg const cell;
};

class StringObjectTest : public ::testing::Test {
 protected:
  HeldString const held;
  lvrString& string = *held;
};

}  // namespace test
