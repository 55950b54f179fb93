#include "tarselvalues/serial/lvtStringArgSource.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "tarselvalues/core/lvrString.h"
#include "tarselvalues/serial/StringCell.h"
#include "tarselvalues/serial/TextSyntax.h"
#include "tarselvalues/serial/lvArgDest.h"

namespace {

using tarselvalues::continuesWord;
using tarselvalues::isBlank;
using tarselvalues::isDigit;
using tarselvalues::isHexDigit;
using tarselvalues::isPunctuation;
using tarselvalues::makeString;
using tarselvalues::startsWord;

constexpr int Measure = -1;
constexpr int OutOfRange = -1;

// What a step of the state machine answers when it has no result yet.
constexpr int ReadOn = -1;

// Strings of up to this many bytes are unescaped on the stack.
constexpr std::size_t LocalSize = 500;

unsigned hexValue(char digit) {
  return static_cast<unsigned>(isDigit(digit) ? digit - '0' : (digit | 0x20) - 'a' + 10);
}

// What an escaped character stands for.
char translate(char c) {
  switch (c) {
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    default:
      return c;
  }
}

}  // namespace

// ---- Set-up ------------------------------------------------------------------------------------

lvtStringArgSource::lvtStringArgSource()
    : length_(0),
      offset_(0),
      text_(nullptr),
      state_(ItemAfterSeparator),
      flags_(0),
      errorCount_(0),
      lastToken_(TOKEN_END) {
  initOnce();
  initParse();
}

lvtStringArgSource::lvtStringArgSource(char const* newText, int newLength) : lvtStringArgSource() {
  setSource(newText, newLength);
}

lvtStringArgSource::lvtStringArgSource(lvString const& newText) : lvtStringArgSource() {
  setSource(newText);
}

lvtStringArgSource::~lvtStringArgSource() = default;

int lvtStringArgSource::initOnce() { return 0; }

int lvtStringArgSource::initParse() {
  state_ = ItemAfterSeparator;
  flags_ = 0;
  tokenValue_.setNil();
  pendingClassName_.setNil();
  return 0;
}

int lvtStringArgSource::setSource(char const* newText, int newLength) {
  initParse();
  text_ = newText;
  length_ = newLength == Measure && newText != nullptr ? static_cast<int>(std::strlen(newText))
                                                       : newLength;
  offset_ = 0;
  sourceString_.setNil();
  return 0;
}

int lvtStringArgSource::setSource(lvString const& newText) {
  initParse();
  sourceString_ = newText;
  text_ = newText;
  length_ = newText.length();
  offset_ = 0;
  return 0;
}

int lvtStringArgSource::setParseOffset(int newOffset) {
  if (newOffset > length_) {
    return OutOfRange;
  }
  offset_ = newOffset;
  return 0;
}

// ---- Tokens ------------------------------------------------------------------------------------

bool lvtStringArgSource::hasByte(std::int32_t position) const {
  return text_ != nullptr && position >= 0 && position < length_;
}

int lvtStringArgSource::getNextToken(lvArg& out) {
  while (hasByte(offset_) && isBlank(text_[offset_])) {
    ++offset_;
  }
  if (!hasByte(offset_)) {
    return TOKEN_END;
  }
  if (startsWord(text_[offset_])) {
    return readWord(out);
  }
  if (isDigit(text_[offset_])) {
    return readNumber(out);
  }
  if ((flags_ & ImpliedQuote) != 0) {
    return readQuoted(offset_, out);
  }
  if (text_[offset_] == '"') {
    return readQuoted(offset_ + 1, out);
  }
  return readPunctuation();
}

int lvtStringArgSource::readPunctuation() {
  char const c = text_[offset_++];
  return isPunctuation(c) ? c : int{TOKEN_UNKNOWN};
}

int lvtStringArgSource::readWord(lvArg& out) {
  std::int32_t end = offset_;
  while (hasByte(end) && continuesWord(text_[end])) {
    ++end;
  }
  out = makeString(text_ + offset_, static_cast<std::size_t>(end - offset_));
  offset_ = end;
  return TOKEN_STRING;
}

int lvtStringArgSource::readNumber(lvArg& out) {
  std::uint32_t value = 0;
  bool overflow = false;
  for (; hasByte(offset_) && isDigit(text_[offset_]); ++offset_) {
    std::uint32_t const next = value * 10 + static_cast<std::uint32_t>(text_[offset_] - '0');
    overflow = overflow || next < value;
    value = next;
  }
  if (overflow) {
    out.setNil();
    return TOKEN_OVERFLOW;
  }
  out.setInt(static_cast<int>(value));
  return TOKEN_INTEGER;
}

// One step through a quoted string: the byte that it yields, if any, and where to go on.
struct lvtStringArgSource::Unescaped {
  std::int32_t next;
  char byte;
  bool yields;
};

bool lvtStringArgSource::endsString(std::int32_t position) const {
  return !hasByte(position) || text_[position] == '"' || text_[position] == '\0';
}

lvtStringArgSource::Unescaped lvtStringArgSource::unescape(std::int32_t position) const {
  char const c = text_[position];
  if ((c != '\\' && c != '%') || !hasByte(position + 1)) {
    return {position + 1, c, true};
  }
  char const escaped = text_[position + 1];
  if (c == '\\' || !isHexDigit(escaped)) {
    return {position + 2, translate(escaped), true};
  }
  unsigned value = hexValue(escaped);
  std::int32_t next = position + 2;
  if (hasByte(next) && isHexDigit(text_[next])) {
    value = value * 16 + hexValue(text_[next]);
    ++next;
  }
  return {next, static_cast<char>(value), value != 0};
}

// Returns how many bytes from here on stand for themselves.
std::size_t lvtStringArgSource::countVerbatim(std::int32_t position) const {
  char const* const first = text_ + position;
  return static_cast<std::size_t>(tarselvalues::findSpecial(first, text_ + length_) - first);
}

// Returns how many bytes the rest of the string yields.
std::size_t lvtStringArgSource::countUnescaped(std::int32_t position) const {
  std::size_t count = 0;
  while (!endsString(position)) {
    std::size_t const verbatim = countVerbatim(position);
    count += verbatim;
    position += static_cast<std::int32_t>(verbatim);
    if (verbatim == 0) {
      Unescaped const unit = unescape(position);
      count += unit.yields ? 1 : 0;
      position = unit.next;
    }
  }
  return count;
}

int lvtStringArgSource::readQuoted(std::int32_t position, lvArg& out) {
  char local[LocalSize];
  std::unique_ptr<char, void (*)(void*)> heap(nullptr, std::free);
  char* bytes = local;
  std::size_t count = 0;
  while (!endsString(position)) {
    std::size_t const verbatim = countVerbatim(position);
    Unescaped const unit = verbatim != 0 ? Unescaped{} : unescape(position);
    std::size_t const yield = verbatim != 0 ? verbatim : (unit.yields ? 1 : 0);
    if (heap == nullptr && count + yield > LocalSize) {
      heap.reset(static_cast<char*>(std::malloc(count + countUnescaped(position) + 1)));
      if (heap == nullptr) {
        throw std::bad_alloc();
      }
      std::memcpy(heap.get(), local, count);
      bytes = heap.get();
    }
    std::memcpy(bytes + count, verbatim != 0 ? text_ + position : &unit.byte, yield);
    count += yield;
    position = verbatim != 0 ? position + static_cast<std::int32_t>(verbatim) : unit.next;
  }
  if (heap == nullptr) {
    out = makeString(local, count);
  } else {
    auto* const string = new lvrString;
    heap.get()[count] = '\0';
    string->adoptBufferFast(heap.release(), count);
    out.setReferencable(*string);
  }
  bool const closed = hasByte(position) && text_[position] == '"';
  offset_ = closed ? position + 1 : position;
  flags_ = static_cast<std::uint8_t>(flags_ & ~unsigned{ImpliedQuote});
  return TOKEN_STRING;
}

// ---- Items -------------------------------------------------------------------------------------

int lvtStringArgSource::getArg(lvArg& out) {
  int result = ReadOn;
  while (result == ReadOn) {
    result = step(state_ == UsedUp ? int{TOKEN_END} : readToken(), out);
  }
  return result;
}

// Returns the next token, or the last one again if it was pushed back.
int lvtStringArgSource::readToken() {
  if ((flags_ & PushedBack) != 0) {
    flags_ = static_cast<std::uint8_t>(flags_ & ~unsigned{PushedBack});
  } else {
    lastToken_ = getNextToken(tokenValue_);
  }
  return lastToken_;
}

int lvtStringArgSource::skip() {
  ++errorCount_;
  return ReadOn;
}

int lvtStringArgSource::readOnAs(State next) {
  state_ = next;
  return ReadOn;
}

int lvtStringArgSource::answer(int result, State next) {
  state_ = next;
  return result;
}

int lvtStringArgSource::step(int token, lvArg& out) {
  switch (state_) {
    case ItemAfterSeparator:
      if (token == ')' || token == '}') {
        ++errorCount_;
      }
      return stepAtItem(token, out);
    case Item:
      return stepAtItem(token, out);
    case AfterMinus:
      return stepAfterMinus(token, out);
    case AfterHash:  // Whatever the token is, the end of the input included.
      out.setNil();
      return answer(SOURCE_ITEM, AfterItem);
    case AfterBrace:
      return stepAfterBrace(token, out);
    case TupleOpens:
      out.setInt(lvArgDest::TupleFrame);
      return answer(SOURCE_FRAME_BEGIN, Item);
    case AfterStar:
      if (token == TOKEN_END) {
        return answer(SOURCE_END, UsedUp);
      }
      pendingClassName_ = tokenValue_;
      return readOnAs(ClassNameRead);
    case ClassNameRead:
      return stepAtClassName(token, out);
    case AfterItem:
      return stepAfterItem(token, out);
    default:  // UsedUp
      return SOURCE_END;
  }
}

int lvtStringArgSource::stepAtItem(int token, lvArg& out) {
  switch (token) {
    case '#':
      return readOnAs(AfterHash);
    case '(':
      pushBack();
      return readOnAs(TupleOpens);
    case ')':
    case '}':
      return answer(SOURCE_FRAME_END, AfterItem);
    case '*':
      return readOnAs(AfterStar);
    case ',':
    case '=':
      out.setNil();
      return answer(SOURCE_ITEM, Item);
    case '-':
      return readOnAs(AfterMinus);
    case '{':
      return readOnAs(AfterBrace);
    case TOKEN_END:
      return answer(SOURCE_END, UsedUp);
    case TOKEN_INTEGER:
    case TOKEN_STRING:
      out = tokenValue_;
      return answer(SOURCE_ITEM, AfterItem);
    default:
      return skip();
  }
}

int lvtStringArgSource::stepAfterMinus(int token, lvArg& out) {
  if (token != TOKEN_INTEGER) {
    pushBack();
    state_ = Item;
    return skip();
  }
  out.setInt(static_cast<int>(0 - static_cast<std::uint32_t>(tokenValue_.getInt())));
  return answer(SOURCE_ITEM, AfterItem);
}

// The one token after "{" tells a map from a vector.
int lvtStringArgSource::stepAfterBrace(int token, lvArg& out) {
  pushBack();
  bool const map = token == '(';
  out.setInt(map ? lvArgDest::MapFrame : lvArgDest::VectorFrame);
  return answer(SOURCE_FRAME_BEGIN, map ? TupleOpens : Item);
}

int lvtStringArgSource::stepAtClassName(int token, lvArg& out) {
  if (token == TOKEN_END) {
    return answer(SOURCE_END, UsedUp);
  }
  if (token != '{') {
    return skip();
  }
  out = std::move(pendingClassName_);
  return answer(SOURCE_FRAME_BEGIN, Item);
}

int lvtStringArgSource::stepAfterItem(int token, lvArg& out) {
  switch (token) {
    case ')':
    case '}':
      out.setNil();
      return SOURCE_FRAME_END;
    case ',':
    case '=':
      return readOnAs(ItemAfterSeparator);
    case TOKEN_END:
      return answer(SOURCE_END, UsedUp);
    default:
      return skip();
  }
}
