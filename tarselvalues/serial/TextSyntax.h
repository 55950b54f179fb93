// The character classes of the text format, which writer and parser share. Not for users.
//
// They are those of the process's locale. All locales agree on the ASCII characters, which a table
// therefore answers for; about the bytes from 128 on the locale is asked.
#pragma once

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tarselvalues/core/Tuning.h"

namespace tarselvalues {

// The classes of ASCII characters, as bits.
constexpr unsigned Letter = 1;
constexpr unsigned Underscore = 2;
constexpr unsigned Digit = 4;
constexpr unsigned HexDigit = 8;
constexpr unsigned Blank = 16;
constexpr unsigned Escaped = 32;      // written as an escape inside of quotes
constexpr unsigned Punctuation = 64;  // a token by itself

constexpr unsigned WordClasses = Letter | Underscore | Digit;

constexpr unsigned AsciiSize = 128;

constexpr unsigned classesOf(unsigned c) {
  bool const digit = c >= '0' && c <= '9';
  bool const letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  bool const hexLetter = (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
  bool const blank = c == ' ' || (c >= '\t' && c <= '\r');
  // The colon has no meaning in the format and is escaped all the same, deliberately.
  bool const escaped = c < ' ' || c == 127 || c == '"' || c == '%' || c == ':';
  bool const punctuation = c == '#' || c == '(' || c == ')' || c == '*' || c == ',' || c == '-' ||
                           c == '=' || c == '[' || c == ']' || c == '{' || c == '}';
  return (escaped ? Escaped : 0) | (punctuation ? Punctuation : 0) | (letter ? Letter : 0) |
         (c == '_' ? Underscore : 0) | (digit ? Digit : 0) | (digit || hexLetter ? HexDigit : 0) |
         (blank ? Blank : 0);
}

// The classes of every byte; none for those from 128 on.
constexpr std::array<std::uint8_t, 256> makeCharClasses() {
  std::array<std::uint8_t, 256> classes{};
  for (unsigned c = 0; c < AsciiSize; ++c) {
    classes[c] = static_cast<std::uint8_t>(classesOf(c));
  }
  return classes;
}

inline constexpr std::array<std::uint8_t, 256> CharClasses = makeCharClasses();

inline bool isOfClass(char c, unsigned classes) {
  return (CharClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

// Whether the locale is to be asked about a byte.
inline bool isLocal(char c) { return !Tuned || static_cast<unsigned char>(c) >= AsciiSize; }

inline bool isLocalLetter(char c) {
  return isLocal(c) && std::isalpha(static_cast<unsigned char>(c)) != 0;
}
inline bool isLocalBlank(char c) {
  return isLocal(c) && std::isspace(static_cast<unsigned char>(c)) != 0;
}
inline bool isLocalHexDigit(char c) {
  return isLocal(c) && std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

inline bool isPunctuation(char c) { return isOfClass(c, Punctuation); }
inline bool isEscaped(char c) { return isOfClass(c, Escaped); }
inline bool isDigit(char c) { return c >= '0' && c <= '9'; }
inline bool isBlank(char c) { return isOfClass(c, Blank) || isLocalBlank(c); }
inline bool isHexDigit(char c) { return isOfClass(c, HexDigit) || isLocalHexDigit(c); }

// Words start with the first and go on with the second.
inline bool startsWord(char c) { return isOfClass(c, Letter | Underscore) || isLocalLetter(c); }
inline bool continuesWord(char c) { return isOfClass(c, WordClasses) || isLocalLetter(c); }

// ---- Several bytes at once ---------------------------------------------------------------------

// As many bytes as the machine handles at once.
using ByteWord = std::size_t;
constexpr int ByteWordSize = sizeof(ByteWord);

constexpr ByteWord repeated(unsigned c) { return ~ByteWord{0} / 255 * c; }
constexpr ByteWord HighBits = repeated(0x80);

inline ByteWord loadBytes(char const* from) {
  ByteWord bytes = 0;
  std::memcpy(&bytes, from, sizeof(bytes));
  return bytes;
}
inline void storeBytes(char* to, ByteWord bytes) { std::memcpy(to, &bytes, sizeof(bytes)); }

// Whether none of the bytes is of the class Escaped. A byte is below a bound if subtracting that
// sets the high bit, and equal to another if the difference is below 1.
constexpr bool areUnescaped(ByteWord bytes) {
  constexpr ByteWord one = repeated(1);
  ByteWord const below = (bytes - repeated(' ')) | ((bytes ^ repeated(127)) - one) |
                         ((bytes ^ repeated('"')) - one) | ((bytes ^ repeated('%')) - one) |
                         ((bytes ^ repeated(':')) - one);
  return (below & ~bytes & HighBits) == 0;
}

// The high bit of each byte that lies between two ASCII characters; all bytes must be ASCII.
constexpr ByteWord markRange(ByteWord bytes, unsigned first, unsigned last) {
  return (bytes + repeated(0x80 - first)) ^ (bytes + repeated(0x7F - last));
}

// Whether none of the bytes ends a quoted string or begins an escape in it.
constexpr bool areVerbatim(ByteWord bytes) {
  constexpr ByteWord one = repeated(1);
  ByteWord const below = (bytes - one) | ((bytes ^ repeated('"')) - one) |
                         ((bytes ^ repeated('%')) - one) | ((bytes ^ repeated('\\')) - one);
  return (below & ~bytes & HighBits) == 0;
}

// Returns the first byte that ends a quoted string or begins an escape in it; `end` if there is
// none.
inline char const* findSpecial(char const* at, char const* end) {
  while (end - at >= ByteWordSize && areVerbatim(loadBytes(at))) {
    at += ByteWordSize;
  }
  while (at != end && *at != '"' && *at != '%' && *at != '\\' && *at != '\0') {
    ++at;
  }
  return at;
}

constexpr bool areAscii(ByteWord bytes) { return (bytes & HighBits) == 0; }

// Whether all of the bytes are of the WordClasses.
constexpr bool areWordBytes(ByteWord bytes) {
  ByteWord const ofWords = markRange(bytes, '0', '9') |
                           markRange(bytes | repeated(0x20), 'a', 'z') | markRange(bytes, '_', '_');
  return areAscii(bytes) && (ofWords & HighBits) == HighBits;
}

// Copies bytes, whole ByteWords of them, as long as they pass the test. Returns how many.
template <class Test>
int copyWhile(char* to, char const* text, int length, Test areAccepted) {
  int copied = 0;
  for (; length - copied >= ByteWordSize; copied += ByteWordSize) {
    ByteWord const bytes = loadBytes(text + copied);
    if (!areAccepted(bytes)) {
      break;
    }
    storeBytes(to + copied, bytes);
  }
  return copied;
}

// Copies a text of at least one ByteWord whose bytes all pass the test; false, with some of them
// copied, if they do not.
template <class Test>
bool copyAtOnce(char* to, char const* text, int length, Test areAccepted) {
  int const copied = copyWhile(to, text, length, areAccepted);
  int const last = length - ByteWordSize;
  if (copied <= last) {
    return false;
  }
  // The last bytes overlap those before.
  return copied == length || copyWhile(to + last, text + last, ByteWordSize, areAccepted) != 0;
}

}  // namespace tarselvalues
