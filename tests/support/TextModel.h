// A slow model of the parser: the same answers from plain strings, one byte at a time.
//
// Answers and values are written down as TextReading.h does it.
#pragma once

#include <cctype>
#include <cstdint>
#include <string>
#include <utility>

#include "support/TextReading.h"

namespace test {

class TextModel {
 public:
  explicit TextModel(std::string source) : text(std::move(source)) {}

  std::string arg() {
    while (state != 9) {
      Token const token = again ? last : read();
      again = false;
      last = token;
      if (!token.value.empty()) {
        value = token.value;
      }
      std::string answer = act(token.name);
      if (!answer.empty()) {
        return answer;
      }
    }
    return "end";
  }

  std::string token() {
    Token const token = read();
    if (token.name == "overflow") {
      return "overflow(nil)";
    }
    return token.value.empty() ? token.name : token.value;
  }

  void expectQuotedString() { quoteBehind = true; }
  void initParse() {
    state = 0;
    again = false;
    quoteBehind = false;
    value = "nil";
    className = "nil";
  }
  bool setOffset(int offset) {
    if (offset > static_cast<int>(text.size())) {
      return false;
    }
    position = offset;
    return true;
  }

  int offset() const { return position; }
  int errors() const { return skipped % 65536; }
  int currentState() const { return state; }

 private:
  // `name` is "integer", "string", "overflow", "unknown", "end" or the punctuation; `value` is what
  // the token stores, if it stores anything.
  struct Token {
    std::string name;
    std::string value;
  };

  // The byte at a position, -1 where there is none.
  int at(int i) const {
    return i < 0 || i >= static_cast<int>(text.size())
               ? -1
               : static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
  }
  static bool isDigit(int c) { return c >= '0' && c <= '9'; }
  static bool isLetter(int c) { return c == '_' || (c >= 0 && std::isalpha(c) != 0); }

  Token read() {
    while (at(position) >= 0 && std::isspace(at(position)) != 0) {
      ++position;
    }
    int const first = at(position);
    if (first < 0) {
      return {"end", ""};
    }
    if (isLetter(first)) {
      return readWord();
    }
    if (isDigit(first)) {
      return readNumber();
    }
    if (quoteBehind) {
      quoteBehind = false;
      return readQuoted();
    }
    ++position;
    if (first == '"') {
      return readQuoted();
    }
    std::string const known = "{}#()*,-=[]";
    bool const isKnown = known.find(static_cast<char>(first)) != std::string::npos;
    return {isKnown ? std::string(1, static_cast<char>(first)) : "unknown", ""};
  }

  Token readWord() {
    std::string word;
    while (isLetter(at(position)) || isDigit(at(position))) {
      word += static_cast<char>(at(position++));
    }
    return {"string", "'" + word + "'"};
  }

  Token readNumber() {
    std::uint64_t sum = 0;
    bool shrank = false;
    while (isDigit(at(position))) {
      std::uint64_t const before = sum;
      sum = (sum * 10 + static_cast<std::uint64_t>(at(position++) - '0')) % 4294967296U;
      shrank = shrank || sum < before;
    }
    if (shrank) {
      return {"overflow", "nil"};
    }
    std::int64_t const number = static_cast<std::int64_t>(sum);
    return {"integer", std::to_string(number > 2147483647 ? number - 4294967296 : number)};
  }

  Token readQuoted() {
    std::string bytes;
    for (;;) {
      int const c = at(position);
      if (c <= 0) {
        break;
      }
      ++position;
      if (c == '"') {
        break;
      }
      int const next = at(position);
      if (next < 0 || (c != '\\' && c != '%')) {
        bytes += static_cast<char>(c);
      } else if (c == '%' && std::isxdigit(next) != 0) {
        readHex(bytes);
      } else {
        ++position;
        bytes += next == 'n' ? '\n' : next == 't' ? '\t' : next == 'r' ? '\r' : char(next);
      }
    }
    return {"string", "'" + bytes + "'"};
  }

  void readHex(std::string& bytes) {
    std::string digits(1, static_cast<char>(at(position++)));
    if (at(position) >= 0 && std::isxdigit(at(position)) != 0) {
      digits += static_cast<char>(at(position++));
    }
    int const byte = std::stoi(digits, nullptr, 16);
    if (byte != 0) {
      bytes += static_cast<char>(byte);
    }
  }

  // Acts on a token; an empty answer means: read on.
  std::string act(std::string const& token) {
    bool const opens = token == "(";
    bool const closes = token == ")" || token == "}";
    bool const separates = token == "," || token == "=";
    bool const ends = token == "end";
    switch (state) {
      case 0:
      case 1:
        return actWhereItemIsExpected(token, closes, separates);
      case 2:
        if (token == "integer") {
          return go(8, negated(value));
        }
        again = true;
        return skipAnd(1);
      case 3:
        return go(8, "nil");
      case 4:
        again = true;
        return opens ? go(5, "begin(24)") : go(1, "begin(25)");
      case 5:
        return go(1, "begin(32)");
      case 6:
        className = value;
        return ends ? go(9, "end") : go(7, "");
      case 7:
        if (token == "{") {
          std::string const name = className;
          className = "nil";
          return go(1, "begin(" + name + ")");
        }
        return ends ? go(9, "end") : skipAnd(7);
      default:
        if (closes) {
          return go(8, "close(nil)");
        }
        if (ends) {
          return go(9, "end");
        }
        return separates ? go(0, "") : skipAnd(8);
    }
  }

  std::string actWhereItemIsExpected(std::string const& token, bool closes, bool separates) {
    if (closes) {
      skipped += state == 0 ? 1 : 0;
      return go(8, "close(same)");
    }
    if (separates) {
      return go(1, "nil");
    }
    if (token == "integer" || token == "string") {
      return go(8, value);
    }
    if (token == "end") {
      return go(9, "end");
    }
    again = token == "(";
    int const next = token == "#"   ? 3
                     : token == "(" ? 5
                     : token == "*" ? 6
                     : token == "-" ? 2
                     : token == "{" ? 4
                                    : -1;
    return next >= 0 ? go(next, "") : skipAnd(state);
  }

  std::string go(int next, std::string const& answer) {
    state = next;
    return answer;
  }
  std::string skipAnd(int next) {
    ++skipped;
    return go(next, "");
  }
  static std::string negated(std::string const& integer) {
    std::int64_t const number = -std::stoll(integer);
    return std::to_string(number == 2147483648 ? -number : number);
  }

  std::string text;
  int position = 0;
  int state = 0;
  int skipped = 0;
  bool again = false;
  bool quoteBehind = false;
  Token last;
  std::string value = "nil";
  std::string className = "nil";
};

}  // namespace test
