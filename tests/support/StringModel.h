// Slow, plain answers to what a string object is asked, from std::string alone.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

namespace test {

// A text, or none.
using ModelText = std::optional<std::string>;

inline unsigned byteAt(std::string const& text, std::size_t i) {
  return static_cast<unsigned char>(text[i]);
}

// The hash of a text, with the wrap-around made at the very end of each step.
inline unsigned modelHash(std::string const& text) {
  std::string mixed = text;
  if (text.size() >= 18) {
    mixed = text.substr(text.size() - 18, 17);
  }
  std::uint64_t hash = 5381 * 33 + (text.empty() ? 0 : byteAt(text, 0));
  for (std::size_t i = 0; i < mixed.size(); ++i) {
    hash = (hash * 33 + byteAt(mixed, i)) % 0x100000000;
  }
  return static_cast<unsigned>((hash + 257 * text.size()) % 0x100000000);
}

// Up to the first NUL.
inline std::string visible(std::string const& text) { return text.substr(0, text.find('\0')); }

inline int signOf(int value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

inline int modelCompare(ModelText const& a, ModelText const& b) {
  return signOf(visible(a.value_or("")).compare(visible(b.value_or(""))));
}

// For texts of fewer than 65535 bytes.
inline int modelEquiv(ModelText const& a, ModelText const& b) {
  if (!a || !b) {
    return !a && !b ? 1 : 0;
  }
  return modelHash(*a) == modelHash(*b) && a->size() == b->size() && visible(*a) == visible(*b) ? 1
                                                                                                : 0;
}

inline int digitOf(char c, int base) {
  static std::string const digits = "0123456789abcdef";
  char const lower = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
  std::size_t const value = digits.find(lower);
  return value < static_cast<std::size_t>(base) ? static_cast<int>(value) : -1;
}

// The number at the start of `text`, cut to the range of int: blanks, a sign and, for base 16, "0x"
// may precede the digits. -1 without any digit.
inline int modelNumber(std::string const& text, int base) {
  std::size_t i = text.find_first_not_of(" \t\n\v\f\r");
  if (i == std::string::npos) {
    return -1;
  }
  bool const negative = text[i] == '-';
  i += text[i] == '-' || text[i] == '+' ? 1 : 0;
  if (base == 16 && i + 2 < text.size() && text[i] == '0' && (text[i + 1] | 0x20) == 'x' &&
      digitOf(text[i + 2], 16) >= 0) {
    i += 2;
  }
  std::int64_t value = 0;
  std::size_t const first = i;
  for (; i < text.size() && digitOf(text[i], base) >= 0; ++i) {
    value = value * base + digitOf(text[i], base);
    value = value > 0x100000000 ? 0x100000000 : value;
  }
  if (i == first) {
    return -1;
  }
  value = negative ? -value : value;
  return static_cast<int>(value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : value);
}

inline std::string modelLower(std::string text) {
  for (char& c : text) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return text;
}

inline int modelInteger(ModelText const& text) {
  if (!text) {
    return -1;
  }
  std::string const whole = visible(*text);
  if (whole.empty()) {
    return 0;
  }
  std::size_t const start = whole.find_first_not_of(" \t\n\r");
  std::string const rest = start == std::string::npos ? "" : whole.substr(start);
  if (text->size() == rest.size()) {
    std::string const word = modelLower(rest);
    if (word == "#t" || word == "true") {
      return 1;
    }
    if (word == "#f" || word == "false") {
      return 0;
    }
  }
  if (rest.empty()) {
    return -1;
  }
  if (rest[0] == '$') {
    return modelNumber(rest.substr(1), 16);
  }
  if (modelLower(rest.substr(0, 2)) == "0x") {
    return modelNumber(rest.substr(2), 16);
  }
  return digitOf(rest[0], 10) >= 0 ? modelNumber(rest, 10) : -1;
}

}  // namespace test
