#include "tarselvalues/serial/PlainParser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/core/CellMove.h"
#include "tarselvalues/serial/ReaderLevel.h"
#include "tarselvalues/serial/StringCell.h"
#include "tarselvalues/serial/TextSyntax.h"

namespace tarselvalues {

namespace {

// More digits might be too large a number.
constexpr int MostDigits = 9;

bool isClosing(char c) { return c == '}' || c == ')'; }
bool isSeparator(char c) { return c == ',' || c == '='; }

}  // namespace

// ---- The parser's state ------------------------------------------------------------------------

// False if nothing can be read at once.
bool PlainParser::begin() {
  if (source.text_ == nullptr || source.offset_ < 0 || source.offset_ > source.length_ ||
      source.flags_ != 0) {
    return false;
  }
  end = source.text_ + source.length_;
  stand(source.text_ + source.offset_, source.state_);
  token = nullptr;
  tokenObject = nullptr;
  return state == lvtStringArgSource::ItemAfterSeparator || state == lvtStringArgSource::Item ||
         state == lvtStringArgSource::AfterItem;
}

inline void PlainParser::stand(char const* at, State now) {
  place = at;
  state = now;
}

// Runs `read`, which returns where to go on, or null when stopped.
template <class Read>
bool PlainParser::run(Read read) {
  if (!begin()) {
    return false;
  }
  std::size_t const outer = open.size();
  depth = 0;
  try {
    char const* const at = read();
    if (at != nullptr) {
      stand(at, lvtStringArgSource::AfterItem);
    }
    finish();
    std::reverse(open.begin() + static_cast<std::ptrdiff_t>(outer), open.end());
    return at != nullptr;
  } catch (...) {
    tokenObject = nullptr;  // What has been read is gone.
    finish();
    throw;
  }
}

// Gives the source its state, and the last token.
void PlainParser::finish() {
  if (token != nullptr) {
    keepToken();
  }
  source.offset_ = static_cast<std::int32_t>(place - source.text_);
  source.state_ = state;
}

void PlainParser::keepToken() {
  if (tokenObject != nullptr) {
    source.tokenValue_.setReferencable(*tokenObject);
  } else {
    source.offset_ = static_cast<std::int32_t>(token - source.text_);
    try {
      source.lvtStringArgSource::getNextToken(source.tokenValue_);
    } catch (std::bad_alloc const&) {
      source.tokenValue_.setNil();  // Nobody asks for it: all that was to be read has been read.
    }
  }
  token = nullptr;
  tokenObject = nullptr;
}

// Is told that a cell is to be dropped: the last token may be held by that, or by what is in it.
void PlainParser::leaveToken(lvArg const& dropped) {
  if (tokenObject != nullptr && dropped.getReferencable() != nullptr) {
    keepToken();
  }
}

inline char const* PlainParser::skipBlanks(char const* at) const {
  while (at != end && isOfClass(*at, Blank)) {
    ++at;
  }
  return at;
}

// Reads an item into a nil cell. In line wherever there are items, since most are words, strings
// and numbers.
inline char const* PlainParser::readValue(char const* at, lvArg& out) {
  if (isOfClass(*at, Letter | Underscore)) {
    return readWord(at, out);
  }
  if (isDigit(*at)) {
    return readNumber(at, out);
  }
  return *at == '"' ? readQuoted(at, out) : readOther(at, out);
}

// The same, over blanks before it.
inline char const* PlainParser::readNext(char const* at, lvArg& out) {
  at = skipBlanks(at);
  return at != end ? readValue(at, out) : nullptr;
}

bool PlainParser::readItem(lvArg& item) {
  return run([&]() -> char const* {
    char const* at = skipBlanks(place);
    if (state == lvtStringArgSource::AfterItem) {
      if (at == end || !isSeparator(*at)) {
        return nullptr;
      }
      ++at;
      stand(at, lvtStringArgSource::ItemAfterSeparator);
    }
    return readNext(at, item);
  });
}

bool PlainParser::readItems(lvrVector& vector) {
  return run([&] { return readItems(place, state, vector); });
}

bool PlainParser::readEntries(lvrHashMap& map) {
  return run([&] { return readEntries(place, state, map); });
}

// ---- Frames ------------------------------------------------------------------------------------

// Reads elements, each with `readElement`, to the bracket that ends their frame.
template <class ReadElement>
char const* PlainParser::readElements(char const* at, State now, ReadElement readElement) {
  for (;;) {
    stand(at, now);
    at = skipBlanks(at);
    if (at == end) {
      return nullptr;
    }
    if (isClosing(*at) && now != lvtStringArgSource::ItemAfterSeparator) {
      return at + 1;
    }
    if (now == lvtStringArgSource::AfterItem) {
      if (!isSeparator(*at)) {
        return nullptr;
      }
      ++at;
      now = lvtStringArgSource::ItemAfterSeparator;
      continue;
    }
    at = readElement(at);
    if (at == nullptr) {
      return nullptr;
    }
    now = lvtStringArgSource::AfterItem;
  }
}

char const* PlainParser::readItems(char const* at, State now, lvrVector& vector) {
  return readElements(at, now, [&](char const* begin) {
    lvArg item;
    char const* const behind = readValue(begin, item);
    if (behind != nullptr) {
      stand(behind, lvtStringArgSource::AfterItem);
      if (!vector.append(std::move(item))) {
        leaveToken(item);  // NOLINT(bugprone-use-after-move): it was not taken.
      }
    }
    return behind;
  });
}

char const* PlainParser::readEntries(char const* at, State now, lvrHashMap& map) {
  return readElements(at, now, [&](char const* begin) {
    return *begin == '(' ? readEntry(begin + 1, map) : nullptr;
  });
}

// Reads a tuple of a key, and perhaps a value, from behind its bracket.
char const* PlainParser::readEntry(char const* at, lvrHashMap& map) {
  lvArg key;
  lvArg value;
  ++openKeys;
  stand(at, lvtStringArgSource::Item);
  at = readNext(at, key);
  if (at == nullptr) {
    return stopInTuple(std::move(key), std::move(value), 0);
  }
  --openKeys;
  stand(at, lvtStringArgSource::AfterItem);
  at = skipBlanks(at);
  bool const hasValue = at != end && isSeparator(*at);
  if (hasValue) {
    stand(at + 1, lvtStringArgSource::ItemAfterSeparator);
    at = readNext(at + 1, value);
    if (at == nullptr) {
      return stopInTuple(std::move(key), std::move(value), 1);
    }
    stand(at, lvtStringArgSource::AfterItem);
    at = skipBlanks(at);
  }
  if (at == end || !isClosing(*at)) {
    return stopInTuple(std::move(key), std::move(value), hasValue ? 2 : 1);
  }
  stand(at + 1, lvtStringArgSource::AfterItem);
  map.putMoved(std::move(key), std::move(value));
  leaveToken(key);  // NOLINT(bugprone-use-after-move): it is not always taken.
  return at + 1;
}

char const* PlainParser::stopInTuple(lvArg&& key, lvArg&& value, int items) {
  ReaderLevel level = ReaderLevel::ofTuple();
  level.items = items;
  level.first = std::move(key);
  level.second = std::move(value);
  open.push_back(std::move(level));
  return nullptr;
}

// An item that is neither word nor string nor positive number.
char const* PlainParser::readOther(char const* at, lvArg& out) {
  switch (*at) {
    case '{':
      return readFrame(at, out);
    case '#':
      return readNil(at);
    case '-':
      return readNegative(at, out);
    case '*':
      return readClassName(at);
    default:
      return nullptr;
  }
}

// The one byte behind the bracket tells a map from a vector.
char const* PlainParser::readFrame(char const* at, lvArg& out) {
  char const* const inside = skipBlanks(at + 1);
  if (inside == end || isLocal(*inside) || depth == MaxDepth) {  // The locale may call it a blank.
    return nullptr;
  }
  ++depth;
  char const* const behind = *inside == '(' ? readMap(inside, out) : readVector(at + 1, out);
  --depth;
  return behind;
}

char const* PlainParser::readMap(char const* at, lvArg& out) {
  stand(at, lvtStringArgSource::TupleOpens);
  lvHashMap made(FrameSizeHint);
  auto& map = static_cast<lvrHashMap&>(*made.getReferencable());
  char const* const behind = readEntries(at, lvtStringArgSource::Item, map);
  if (behind == nullptr) {
    open.push_back(ReaderLevel::ofMap(std::move(made), true));
    return nullptr;
  }
  moveIntoNil(out, std::move(made));
  return behind;
}

char const* PlainParser::readVector(char const* at, lvArg& out) {
  stand(at, lvtStringArgSource::Item);
  lvVector made(FrameSizeHint);
  auto& vector = static_cast<lvrVector&>(*made.getReferencable());
  char const* const behind = readItems(at, lvtStringArgSource::Item, vector);
  if (behind == nullptr) {
    open.push_back(ReaderLevel::ofVector(std::move(made)));
    return nullptr;
  }
  if (openKeys > 0) {
    vector.hashCode();  // See TreeReader.
  }
  moveIntoNil(out, std::move(made));
  return behind;
}

// ---- Scalars -----------------------------------------------------------------------------------

// Null where the locale decides whether the word goes on.
inline char const* PlainParser::findWordEnd(char const* at) const {
  char const* const last = end;
  while (at != last && isOfClass(*at, WordClasses)) {
    ++at;
  }
  return at != last && isLocal(*at) ? nullptr : at;
}

char const* PlainParser::readWord(char const* at, lvArg& out) {
  char const* const behind = findWordEnd(at);
  if (behind != nullptr) {
    moveIntoNil(out, makeString(at, static_cast<std::size_t>(behind - at)));
    token = at;
    tokenObject = out.getReferencable();
  }
  return behind;
}

char const* PlainParser::readNumber(char const* at, lvArg& out) {
  char const* const first = at;
  int value = 0;
  for (; at != end && isDigit(*at); ++at) {
    if (at - first == MostDigits) {
      return nullptr;
    }
    value = value * 10 + (*at - '0');
  }
  out.setInt(value);
  token = first;
  tokenObject = nullptr;
  return at;
}

char const* PlainParser::readNegative(char const* at, lvArg& out) {
  at = skipBlanks(at + 1);
  if (at == end || !isDigit(*at)) {
    return nullptr;
  }
  at = readNumber(at, out);
  if (at != nullptr) {
    out.setInt(-out.getInt());
  }
  return at;
}

// An object is made by the program, so its beginning is the end. Always null.
char const* PlainParser::readClassName(char const* at) {
  at = skipBlanks(at + 1);
  if (at == end || !(isOfClass(*at, Letter | Underscore) || *at == '"')) {
    return nullptr;
  }
  lvArg name;
  at = readValue(at, name);
  if (at == nullptr) {
    return nullptr;
  }
  at = skipBlanks(at);
  if (at != end && *at == '{') {
    stand(at + 1, lvtStringArgSource::Item);
    className = std::move(name);
  } else {
    leaveToken(name);
  }
  return nullptr;
}

char const* PlainParser::readNil(char const* at) {
  at = skipBlanks(at + 1);
  if (at == end || !isOfClass(*at, Letter | Underscore)) {
    return nullptr;
  }
  char const* const behind = findWordEnd(at);
  if (behind != nullptr) {
    token = at;
    tokenObject = nullptr;
  }
  return behind;
}

char const* PlainParser::readQuoted(char const* at, lvArg& out) {
  char const* const first = at + 1;
  char const* behind = findSpecial(first, end);
  if (behind != end && *behind == '"') {
    moveIntoNil(out, makeString(first, static_cast<std::size_t>(behind - first)));
    ++behind;
  } else {
    source.offset_ = static_cast<std::int32_t>(at - source.text_);
    source.lvtStringArgSource::getNextToken(out);
    behind = source.text_ + source.offset_;
  }
  token = at;
  tokenObject = out.getReferencable();
  return behind;
}

}  // namespace tarselvalues
