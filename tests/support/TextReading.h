// Reading texts with the parser, and writing down what it answers.
//
// Answers of getArg():      3, 'abc', nil           an item
//                           begin(25) begin('P')    a frame begins
//                           close(nil) close(same)  a frame ends
//                           end                     the input is used up
// Answers of getNextToken(): 3, 'abc', overflow(nil), unknown, end, and punctuation as it stands
//
// "same" stands for an output value that was left alone.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "support/Cells.h"
#include "tarselvalues/serial/LayoutAccess.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace test {

// What an output value holds before a read.
inline constexpr std::uintptr_t UntouchedAddress = 0x5A5A;

inline std::string shown(lvArg const& value) {
  switch (value.getType()) {
    case lvArg::NilType:
      return "nil";
    case lvArg::IntType:
      return std::to_string(value.getInt());
    case lvArg::StringType:
      return "'" + textOf(value) + "'";
    default:
      return value.eq(pointer(UntouchedAddress)) ? "same" : "<unexpected value>";
  }
}

inline std::string unlessSame(std::string const& name, std::string const& value) {
  return value == "same" ? name : name + "(" + value + ")";
}

inline std::string shownAnswer(int answer, std::string const& value) {
  switch (answer) {
    case lvArgSource::SOURCE_ITEM:
      return value;
    case lvArgSource::SOURCE_FRAME_BEGIN:
      return "begin(" + value + ")";
    case lvArgSource::SOURCE_FRAME_END:
      return "close(" + value + ")";
    case lvArgSource::SOURCE_END:
      return unlessSame("end", value);
    default:
      return "<answer " + std::to_string(answer) + ">";
  }
}

inline std::string shownToken(int token, std::string const& value) {
  switch (token) {
    case lvtStringArgSource::TOKEN_INTEGER:
    case lvtStringArgSource::TOKEN_STRING:
      return value;
    case lvtStringArgSource::TOKEN_OVERFLOW:
      return "overflow(" + value + ")";
    case lvtStringArgSource::TOKEN_UNKNOWN:
      return unlessSame("unknown", value);
    case lvtStringArgSource::TOKEN_END:
      return unlessSame("end", value);
    default:
      return unlessSame(token > 0 && token < 128 ? std::string(1, static_cast<char>(token))
                                                 : "<token " + std::to_string(token) + ">",
                        value);
  }
}

// A text in a heap block of exactly its size, without a NUL: AddressSanitizer sees every read
// outside of it.
class ExactText {
 public:
  explicit ExactText(std::string_view text)
      : bytes(new char[text.size()]), count(static_cast<int>(text.size())) {
    if (!text.empty()) {
      std::memcpy(bytes.get(), text.data(), text.size());
    }
  }
  char const* data() const { return bytes.get(); }
  int size() const { return count; }

 private:
  std::unique_ptr<char[]> bytes;
  int count;
};

// A parser that can be told that an opening quote is behind.
class QuoteParser : public lvtStringArgSource {
 public:
  using lvtStringArgSource::expectQuotedString;
  using lvtStringArgSource::lvtStringArgSource;
};

// A parser over a text, which tells what it reads.
class TextReader {
 public:
  using Access = lvLayoutAccess<lvtStringArgSource>;

  explicit TextReader(std::string_view content)
      : text(content), source(text.data(), text.size()), limit(2 * text.size() + 10) {}

  QuoteParser& parser() { return source; }

  std::string arg() {
    lvArg out = pointer(UntouchedAddress);
    int const answer = source.getArg(out);
    return shownAnswer(answer, shown(out));
  }

  std::string token() {
    lvArg out = pointer(UntouchedAddress);
    int const code = source.getNextToken(out);
    return shownToken(code, shown(out));
  }

  // All that is left, with " skipped:N" after it when tokens were skipped.
  std::string allArgs() {
    std::string all = arg();
    for (int i = 0; i < limit && !endsWithEnd(all); ++i) {
      all += ' ' + arg();
    }
    int const errors = source.getErrorCount();
    return errors == 0 ? all : all + " skipped:" + std::to_string(errors);
  }

  std::string allTokens() {
    std::string all = token();
    for (int i = 0; i < limit && !endsWithEnd(all); ++i) {
      all += ' ' + token();
    }
    return all;
  }

  int offset() const { return source.getParseOffset(); }
  int errors() const { return source.getErrorCount(); }
  int state() const { return Access::state(source); }
  unsigned flags() const { return Access::flags(source); }

 private:
  static bool endsWithEnd(std::string const& all) {
    return all == "end" || (all.size() > 4 && all.compare(all.size() - 4, 4, " end") == 0);
  }

  ExactText text;
  QuoteParser source;
  int limit;  // so many reads must bring the end
};

inline std::string argsOf(std::string_view text) { return TextReader(text).allArgs(); }
inline std::string tokensOf(std::string_view text) { return TextReader(text).allTokens(); }

}  // namespace test
