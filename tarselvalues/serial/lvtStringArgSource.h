// lvtStringArgSource: the text parser, a source that reads the text format.
//
// It never fails hard: what does not fit the grammar is skipped and counted, and reading goes on.
// It reports brackets as they come and does not match them; the consumer counts frames. Numbers
// from 2147483648 to 4294967295 read as negative integers; larger ones are skipped when the 32-bit
// sum becomes smaller on the way, and read as what is left of them when it does not.
//
//   lvtStringArgSource parser("{1,2}", -1);
//   lvArg item;
//   while (parser.getArg(item) != lvArgSource::SOURCE_END) { ... }
//
// Ownership: a text given as a pointer stays the caller's and must outlive its use; one given as a
//            lvString is kept alive. Nothing is read outside of it; a null text, a negative length
//            other than -1, and a negative offset read as the end of the input.
// Threads:   one thread at a time per parser.
// Errors:    -1 where named. Out of memory is std::bad_alloc; the parser then still stands before
//            the token, and reading may be tried again.
// Cost:      linear. A string of up to 500 bytes is unescaped on the stack and copied once; of a
//            longer one the rest is measured, and the text goes into its string without a copy.
// Layout:    on 32-bit ARM: length 4, offset 8, text 12, source string 16, state 24, flags 28,
//            error count 30, token value 32, pending class name 40, last token 48, size 52.
#pragma once

#include <cstdint>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/serial/lvArgSource.h"

namespace tarselvalues {
class PlainParser;
}  // namespace tarselvalues

class TARSELVALUES_API lvtStringArgSource : public lvArgSource {
 public:
  // What getNextToken() answers, besides the code of a punctuation character: # ( ) * , - = [ ] { }
  // Compiled programs rely on the numbers.
  enum : int {
    TOKEN_END = 256,       // no characters left
    TOKEN_INTEGER = 257,   // a number, now in `out`
    TOKEN_STRING = 258,    // a word or a quoted string, now in `out`
    TOKEN_OVERFLOW = 259,  // a number that is too large; `out` is nil
    TOKEN_UNKNOWN = -1,    // a character outside the grammar, which was consumed
  };

  // Read `length` bytes of `text` (-1 measures it), or the whole of an interned string.
  lvtStringArgSource(char const* text, int length);
  explicit lvtStringArgSource(lvString const& text);
  // Has no text yet, which reads as the end of the input.
  lvtStringArgSource();
  ~lvtStringArgSource() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Reads the next item, frame begin or frame end. `out` is left alone at the end of the input and
  // by an end of frame where an item was expected; other ends of frame set nil.
  // Once the end was answered it is answered again until initParse() or setSource().
  int getArg(lvArg& out) override;
  // Reads the next token. `out` is set for integers, strings and overflows only.
  int getNextToken(lvArg& out) override;

  // Starts on a text. Returns 0. The count of errors stays.
  int setSource(char const* newText, int newLength);
  int setSource(lvString const& newText);
  // Starts anew at the position in the text. Returns 0. The count of errors stays.
  int initParse();
  // Nothing to do; kept as the counterpart of the writer's.
  int initOnce();

  // Moves to a byte offset, the length included; -1 beyond it. The state stays: initParse() resets
  // that.
  int setParseOffset(int newOffset);
  // Returns the byte offset just after the last token that was read.
  int getParseOffset() const { return offset_; }

  // Returns how many tokens were skipped since the parser was made, modulo 65536.
  int getErrorCount() const { return errorCount_; }

 protected:
  // The next token that does not begin with a letter, "_" or a digit is read as a quoted string
  // whose opening quote is already behind.
  void expectQuotedString() { flags_ |= ImpliedQuote; }

 private:
  template <class T>
  friend struct lvLayoutAccess;
  friend class tarselvalues::PlainParser;

  enum State : std::int32_t {
    ItemAfterSeparator = 0,
    Item = 1,
    AfterMinus = 2,
    AfterHash = 3,
    AfterBrace = 4,
    TupleOpens = 5,
    AfterStar = 6,
    ClassNameRead = 7,
    AfterItem = 8,
    UsedUp = 9,
  };

  // Bits of `flags_`.
  static constexpr std::uint8_t PushedBack = 1;  // the last token is read again
  static constexpr std::uint8_t ImpliedQuote = 2;

  struct Unescaped;

  bool hasByte(std::int32_t position) const;
  bool endsString(std::int32_t position) const;
  int readWord(lvArg& out);
  int readNumber(lvArg& out);
  int readQuoted(std::int32_t position, lvArg& out);
  int readPunctuation();
  Unescaped unescape(std::int32_t position) const;
  std::size_t countVerbatim(std::int32_t position) const;
  std::size_t countUnescaped(std::int32_t position) const;

  int readToken();
  void pushBack() { flags_ |= PushedBack; }
  int step(int token, lvArg& out);
  int stepAtItem(int token, lvArg& out);
  int stepAfterMinus(int token, lvArg& out);
  int stepAfterBrace(int token, lvArg& out);
  int stepAtClassName(int token, lvArg& out);
  int stepAfterItem(int token, lvArg& out);
  int skip();
  int readOnAs(State next);
  int answer(int result, State next);

  std::int32_t length_;
  std::int32_t offset_;
  char const* text_;
  lvArg sourceString_;  // the lvString whose characters `text_` is, or nil
  State state_;
  std::uint8_t flags_;
  std::uint16_t errorCount_;
  lvArg tokenValue_;        // of the last word, number or string
  lvArg pendingClassName_;  // read after "*", until "{" comes
  std::int32_t lastToken_;
};
