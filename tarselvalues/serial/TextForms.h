// The written forms of integers and quoted strings, as the text writer writes them. Not for users.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tarselvalues/core/Export.h"

namespace tarselvalues {

// "-2147483648"
constexpr int MostDecimalDigits = 11;

constexpr int EscapeRoom = 4;  // What an escaped byte asks for; it takes one less.

// What outputQuotedString() of the writer does. Of the text, `readable` bytes are known to be
// there, whatever they are, and no more than `most`: these are read a ByteWord at a time.
TARSELVALUES_INTERNAL int writeEscaped(char** cursor, int* room, char const* text, int most,
                                       int readable);

inline constexpr char DigitPairs[] =
    "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546"
    "4748495051525354555657585960616263646566676869707172737475767778798081828384858687888990919293"
    "949596979899";

// Writes a number below 100 with both its digits.
inline void writePair(char* at, std::uint32_t value) {
  std::memcpy(at, DigitPairs + std::size_t{2} * value, 2);
}

// Writes a value below 10000. Returns the end.
inline char* writeFewDigits(char* at, std::uint32_t value) {
  std::uint32_t const high = value / 100;
  if (value >= 1000) {
    writePair(at, high);
    at += 2;
  } else if (value >= 100) {
    *at++ = static_cast<char>('0' + high);
  } else if (value < 10) {
    *at++ = static_cast<char>('0' + value);
    return at;
  }
  writePair(at, value % 100);
  return at + 2;
}

// Writes the last four digits of a value. Returns the end.
inline char* writeFourDigits(char* at, std::uint32_t value) {
  writePair(at, value / 100 % 100);
  writePair(at + 2, value % 100);
  return at + 4;
}

// Writes a value in decimal. Returns the end.
inline char* writeDecimal(char* at, int value) {
  std::uint32_t magnitude = static_cast<std::uint32_t>(value);
  if (value < 0) {
    magnitude = 0 - magnitude;
    *at++ = '-';
  }
  if (magnitude < 10000) {
    return writeFewDigits(at, magnitude);
  }
  if (magnitude < 100000000) {
    return writeFourDigits(writeFewDigits(at, magnitude / 10000), magnitude);
  }
  at = writeFewDigits(at, magnitude / 100000000);
  return writeFourDigits(writeFourDigits(at, magnitude / 10000), magnitude);
}

}  // namespace tarselvalues
