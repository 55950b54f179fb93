// Texts for the parser, mostly of no value, that make it do everything it can.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/walks/Choices.h"

namespace test {

inline std::string randomBytes(Choices& dice) {
  std::string text;
  for (unsigned n = dice.below(40U); n > 0; --n) {
    text += static_cast<char>(dice.below(256));
  }
  return text;
}

// Bytes that mean something, so that they meet.
inline std::string meaningfulBytes(Choices& dice) {
  static char const meaningful[] = "#()*,-=[]{}\"\"\\%0019anrtxzAFG_ \t\n\0\x7F\x80\xE9\xFF$:";
  static std::string const bytes(meaningful, sizeof(meaningful) - 1);
  std::string text;
  for (unsigned n = dice.below(40U); n > 0; --n) {
    text += bytes[dice.below(static_cast<unsigned>(bytes.size()))];
  }
  return text;
}

inline std::string tokenSoup(Choices& dice) {
  static std::vector<std::string> const tokens = {
      "#",          "(",          ")",          "*",    ",",          "-",
      "=",          "[",          "]",          "{",    "}",          "$",
      "nil",        "word",       "_x9",        "0",    "17",         "2147483648",
      "4294967295", "4294967296", "9999999999", "\"\"", "\"a b\"",    "\"%41\\n\"",
      "\"%00%\"\"", "\"open",     " ",          "\n",   "99999999999"};
  std::string text;
  for (unsigned n = dice.below(16U); n > 0; --n) {
    text += dice.pick(tokens);
    text += dice.oneIn(4) ? " " : "";
  }
  return text;
}

inline std::string validText(Choices& dice, unsigned depth) {
  std::string items;
  switch (depth == 0 ? dice.below(4) : dice.below(7)) {
    case 0:
      return std::to_string(static_cast<int>(dice.below(4294967295U)));
    case 1:
      return "word";
    case 2:
      return "\"say %22hi%22%3A 100%25\"";
    case 3:
      return "#nil";
    case 4:
      for (unsigned n = dice.below(4U); n > 0; --n) {
        items += validText(dice, depth - 1) + (n > 1 ? "," : "");
      }
      return "{" + items + "}";
    case 5:
      for (unsigned n = 1 + dice.below(3U); n > 0; --n) {
        items += "(k=" + validText(dice, depth - 1) + ")" + (n > 1 ? "," : "");
      }
      return "{" + items + "}";
    default:
      return "*Point{" + validText(dice, depth - 1) + "," + validText(dice, depth - 1) + "}";
  }
}

inline std::string mutatedText(Choices& dice) {
  std::string text = validText(dice, 3);
  for (unsigned n = dice.below(4U); n > 0 && !text.empty(); --n) {
    std::size_t const at = dice.below(static_cast<unsigned>(text.size()));
    std::string const other = dice.oneIn(2) ? meaningfulBytes(dice).substr(0, 1) : "";
    text.replace(at, dice.oneIn(2) ? 1 : 0, other);
  }
  return text;
}

// A string that ends somewhere around the end of the stack area, of plain bytes and escapes.
inline std::string longString(Choices& dice) {
  static std::vector<std::string> const pieces = {"\\n", "\\\"", "\\\\", "%22", "%\"", "%\\",
                                                  "%4",  "%00",  "%0",   "%z",  "\\%", "%%"};
  unsigned const rarely = 1 + dice.below(100U);
  std::string text(1, '"');
  for (unsigned n = 480 + dice.below(40U); n > 0; --n) {
    text += dice.oneIn(rarely) ? dice.pick(pieces) : "a";
  }
  for (unsigned n = dice.below(300U); n > 0; --n) {
    text += dice.oneIn(3) ? dice.pick(pieces) : "b";
  }
  return text + dice.pick<std::string>({"\"", "", "\\", "%", "\",1", std::string("\0,2", 3)});
}

}  // namespace test
