#include "CheckedSource.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <utility>

#include "Utf8.h"

namespace {

// The kind of an object's frame; other frames have the kinds of lvArgDest::FrameKind.
constexpr int ObjectFrame = 0;

char const* nameOf(int kind) {
  switch (kind) {
    case lvArgDest::MapFrame:
      return "map";
    case lvArgDest::VectorFrame:
      return "vector";
    case lvArgDest::TupleFrame:
      return "entry";
    default:
      return "object";
  }
}

int kindOf(lvArg const& frame) {
  return frame.getType() == lvArg::IntType ? frame.getInt() : ObjectFrame;
}

std::string textOf(lvArg const& string) {
  char const* const text = lvValue(string).getString(nullptr);
  return text != nullptr ? text : "";
}

// How many fields objects of a class have.
int fieldsOf(lvArg const& frame) {
  lvClass const described(lvtClassRegistry::getInstance()->getClass(frame));
  return described.isNil() ? 0 : described->getNItems(lvrClass::Fields);
}

std::string quoteByte(char c) {
  char text[8];
  bool const printable = std::isprint(static_cast<unsigned char>(c)) != 0;
  std::snprintf(text, sizeof(text), printable ? "'%c'" : "'\\x%02X'",
                static_cast<unsigned char>(c));
  return text;
}

// A piece of the text as a report shows it: of some length, on one line.
std::string shown(std::string const& piece) {
  std::size_t end = std::min(std::size_t{40}, piece.size());
  while (end < piece.size() && isContinuation(piece[end])) {
    ++end;
  }
  std::string result = piece.substr(0, end);
  std::replace_if(
      result.begin(), result.end(),
      [](char c) { return std::iscntrl(static_cast<unsigned char>(c)) != 0; }, '?');
  return end < piece.size() ? result + "..." : result;
}

}  // namespace

CheckedSource::CheckedSource(Input& input)
    : lvtStringArgSource(input.text.data(), static_cast<int>(input.text.size())),
      content(input.text),
      progress(input.progress),
      problems(input.problems),
      seenErrors(getErrorCount()) {}

void CheckedSource::report(int offset, std::string const& reason) {
  problems.report(static_cast<std::size_t>(offset), reason);
}

// ---- Tokens ------------------------------------------------------------------------------------

int CheckedSource::getNextToken(lvArg& out) {
  reportSkipped();
  previous = last;
  last.offset = skipBlanks(getParseOffset());
  progress.reach(static_cast<std::size_t>(last.offset));
  last.code = lvtStringArgSource::getNextToken(out);
  last.accounted = false;
  checkAfterPrefix(out);
  if (last.code == TOKEN_STRING && isOpenString(last, out)) {
    report(last.offset, "the string is not closed");
  }
  return last.code;
}

// Whether the token, which is not the last one, has this code and was not skipped.
bool CheckedSource::isTaken(Token const& token, int code) const {
  return token.code == code && !token.accounted;
}

// A prefix takes the token that follows, whatever it is.
void CheckedSource::checkAfterPrefix(lvArg const& value) {
  if (isTaken(previous, '#')) {
    last.accounted = true;
    if (last.code != TOKEN_STRING || textOf(value) != "nil") {
      report(previous.offset, "'#" + shown(textOfLast()) + "' is read as #nil");
    }
  } else if (isTaken(previous, '*')) {
    last.accounted = true;
    lastStar = previous.offset;
    starIsOpen = true;
    starIsNamed = last.code == TOKEN_STRING;
    if (!starIsNamed && last.code != TOKEN_END) {
      report(lastStar, "'*' without the name of a class; the object is skipped");
    }
  }
}

std::string CheckedSource::textOfLast() const {
  return content.substr(static_cast<std::size_t>(last.offset),
                        static_cast<std::size_t>(getParseOffset() - last.offset));
}

int CheckedSource::skipBlanks(int from) const {
  auto i = static_cast<std::size_t>(from);
  while (i < content.size() && std::isspace(static_cast<unsigned char>(content[i])) != 0) {
    ++i;
  }
  return static_cast<int>(i);
}

// Whether a quoted string has run into the end of the text. Only a quote that closes it can be left
// out without changing the value.
bool CheckedSource::isOpenString(Token const& token, lvArg const& value) const {
  int const end = getParseOffset();
  if (content[static_cast<std::size_t>(token.offset)] != '"' ||
      end != static_cast<int>(content.size())) {
    return false;
  }
  if (content.back() != '"' || end - token.offset == 1) {
    return true;
  }
  lvtStringArgSource shorter(content.data() + token.offset, end - token.offset - 1);
  lvArg again;
  shorter.getNextToken(again);
  return again.equiv(value) == 0;
}

// Reports the tokens that were counted as errors since the last call.
void CheckedSource::reportSkipped() {
  int errors = (getErrorCount() - seenErrors) & 0xFFFF;
  seenErrors = getErrorCount();
  if (errors > 0 && previous.code == '-' && !previous.accounted) {
    report(previous.offset, "'-' without a number is skipped");
    previous.accounted = true;
    --errors;
  }
  if (errors > 0) {
    report(last.offset, describeSkipped(last));
    last.accounted = true;
  }
}

std::string CheckedSource::describeSkipped(Token const& token) const {
  if (starIsOpen) {
    return "'" + shown(textOfLast()) + "' is skipped: '{' is expected";
  }
  switch (token.code) {
    case ')':
    case '}':
      if (previous.code == ',' || previous.code == '=') {
        return std::string("no value between '") + static_cast<char>(previous.code) + "' and '" +
               static_cast<char>(token.code) + "'";
      }
      break;
    case TOKEN_OVERFLOW:
      return "a number beyond 32 bits is skipped";
    case '{':
    case '(':
    case '*':
    case '#':
    case '-':
    case TOKEN_INTEGER:
    case TOKEN_STRING:
      return "'" + shown(textOfLast()) + "' is skipped: there is no separator before it";
    default:
      break;
  }
  return quoteByte(content[static_cast<std::size_t>(token.offset)]) +
         " is skipped: it does not fit here";
}

// ---- Items and frames --------------------------------------------------------------------------

int CheckedSource::getArg(lvArg& out) {
  for (;;) {
    int const result = lvtStringArgSource::getArg(out);
    reportSkipped();
    switch (result) {
      case SOURCE_ITEM:
        if (acceptItem(out)) {
          return result;
        }
        break;
      case SOURCE_FRAME_BEGIN:
        if (acceptFrame(out)) {
          return result;
        }
        skipFrame();
        break;
      case SOURCE_FRAME_END:
        if (!frames.empty()) {
          checkBracket();
          endFrame();
          return result;
        }
        report(last.offset, quoteByte(static_cast<char>(last.code)) + " closes nothing");
        break;
      default:
        return endText();
    }
  }
}

bool CheckedSource::acceptItem(lvArg const& item) {
  if (inFrame(lvArgDest::MapFrame)) {
    report(last.offset, "a value outside of an entry is not kept in a map");
    return false;
  }
  bool const hasPrefix = isTaken(previous, '#') || isTaken(previous, '-');
  itemStart = hasPrefix ? previous.offset : last.offset;
  if (!countItem(itemStart, item.isNil())) {
    return false;
  }
  if (inFrame(lvArgDest::TupleFrame) && frames.back().items == 1) {
    frames.back().key = item;
  }
  if (last.code == TOKEN_INTEGER && item.getType() == lvArg::IntType) {
    checkNumber(item.getInt());
  } else if (last.code == TOKEN_STRING && item.getType() == lvArg::StringType) {
    checkString();
  }
  return true;
}

// Reports a number that the library does not read as it stands. Its sign is a token of its own.
void CheckedSource::checkNumber(int value) {
  std::string const written = textOfLast();
  std::size_t const first = std::min(written.find_first_not_of('0'), written.size() - 1);
  std::string const digits = written.substr(first);
  bool const isNegative = isTaken(previous, '-');
  std::string const most = isNegative ? "2147483648" : "2147483647";
  if (digits.size() > most.size() || (digits.size() == most.size() && digits > most)) {
    report(itemStart, (isNegative ? "-" : "") + written + " is beyond 32 bits and reads as " +
                          std::to_string(value));
  }
}

// Reports each escaped byte 0 in a quoted string: the library reads over them.
void CheckedSource::checkString() {
  std::string const written = textOfLast();
  auto const isHex = [&](std::size_t i) {
    return i < written.size() && std::isxdigit(static_cast<unsigned char>(written[i])) != 0;
  };
  for (std::size_t i = 1; written[0] == '"' && i < written.size(); ++i) {
    if (written[i] == '\\') {
      ++i;
    } else if (written[i] == '%' && isHex(i + 1)) {
      std::size_t const digits = isHex(i + 2) ? 2 : 1;
      if (written.find_first_not_of('0', i + 1) >= i + 1 + digits) {
        report(last.offset + static_cast<int>(i),
               written.substr(i, digits + 1) + " is skipped: a string holds no byte 0");
      }
      i += digits;
    }
  }
}

bool CheckedSource::acceptFrame(lvArg const& kind) {
  bool const isObject = starIsOpen;
  starIsOpen = false;
  if (isObject && !starIsNamed) {
    return false;
  }
  int const offset = frameOffset(kindOf(kind));
  std::string const reason = refuseFrame(kind);
  if (!reason.empty()) {
    report(offset, reason);
    return false;
  }
  bool const kept = kindOf(kind) == lvArgDest::TupleFrame || countItem(offset, false);
  if (kept) {
    itemStart = offset;
    if (inFrame(lvArgDest::TupleFrame) && frames.back().items == 1) {
      frames.back().keyIsAtom = false;
    }
    frames.push_back({kindOf(kind), offset, fieldsOf(kind)});
  }
  return kept;
}

// Counts an item of the innermost frame; false if there is no room for it there.
bool CheckedSource::countItem(int offset, bool isNil) {
  if (frames.empty()) {
    return true;
  }
  Frame& frame = frames.back();
  if (frame.kind == lvArgDest::TupleFrame && frame.items == 2) {
    report(offset, "an entry takes one key and one value; this one is skipped");
    return false;
  }
  if (frame.kind == lvArgDest::VectorFrame && frame.items == lvrVector::MaxSize) {
    report(offset, "a vector takes 65535 values; this one is skipped");
    return false;
  }
  if (frame.kind == ObjectFrame && frame.items == frame.fields) {
    report(offset,
           "the class has " + std::to_string(frame.fields) + " fields; this value is skipped");
    return false;
  }
  ++frame.items;
  frame.lastIsNil = isNil;
  return true;
}

// Says why a frame cannot be kept where it stands; empty if it can.
std::string CheckedSource::refuseFrame(lvArg const& kind) const {
  int const frame = kindOf(kind);
  if (frame == ObjectFrame) {
    lvClass const described(lvtClassRegistry::getInstance()->getClass(kind));
    if (described.isNil()) {
      return "class '" + shown(textOf(kind)) + "' is not known; the object is skipped";
    }
    if (described->getNItems(lvrClass::Fields) == 0) {
      return "class '" + shown(textOf(kind)) + "' has no fields; the object is skipped";
    }
  }
  if ((frame == lvArgDest::TupleFrame) != inFrame(lvArgDest::MapFrame)) {
    return frame == lvArgDest::TupleFrame
               ? "an entry outside of a map is skipped"
               : std::string(frame == ObjectFrame ? "an " : "a ") + nameOf(frame) +
                     " outside of an entry is not kept in a map";
  }
  if (frames.size() == static_cast<std::size_t>(lvtStringArgDest::MaxDepth)) {
    return std::string("the ") + nameOf(frame) + " is nested deeper than 32 levels and skipped";
  }
  return "";
}

// Where a frame that has just begun opens. The token after the "{" of a map or vector is read
// already.
int CheckedSource::frameOffset(int kind) const {
  switch (kind) {
    case lvArgDest::MapFrame:
    case lvArgDest::VectorFrame:
      return previous.offset;
    case lvArgDest::TupleFrame:
      return last.offset;
    default:
      return lastStar;
  }
}

// Reads over the rest of a frame that has just begun, and all that is in it.
void CheckedSource::skipFrame() {
  int depth = 1;
  while (depth > 0) {
    lvArg ignored;
    int const result = lvtStringArgSource::getArg(ignored);
    reportSkipped();
    if (result == SOURCE_END) {
      return;
    }
    if (result == SOURCE_FRAME_BEGIN) {
      ++depth;
      starIsOpen = false;
    }
    depth -= result == SOURCE_FRAME_END ? 1 : 0;
  }
}

// The library takes either bracket for the end of any frame.
void CheckedSource::checkBracket() {
  Frame const& frame = frames.back();
  char const own = frame.kind == lvArgDest::TupleFrame ? ')' : '}';
  if (last.code != own) {
    report(last.offset, quoteByte(static_cast<char>(last.code)) + " closes the " +
                            nameOf(frame.kind) + " that opens at " + placeOf(frame.offset));
  }
}

void CheckedSource::endFrame() {
  Frame const& frame = frames.back();
  if (frame.kind == lvArgDest::TupleFrame && frame.items > 0 && !hasValue(frame)) {
    report(frame.offset, "an entry without a value is not kept in a map");
  }
  popFrame();
}

void CheckedSource::popFrame() {
  Frame const frame = std::move(frames.back());
  frames.pop_back();
  if (frame.kind == lvArgDest::TupleFrame) {
    addEntry(frame);
  }
}

// An entry takes the place of one with the same key, and a missing value takes that out.
void CheckedSource::addEntry(Frame const& entry) {
  Frame& map = frames.back();
  lastEntry = map.entryCount;
  if (entry.keyIsAtom) {
    auto const [place, isNew] =
        map.entries.insert({entry.key, Entry{lastEntry, entry.offset, hasValue(entry)}});
    Entry& earlier = place->second;
    lastEntry = earlier.index;
    if (!isNew && earlier.kept) {
      report(entry.offset, std::string("the key is there already; this entry ") +
                               (hasValue(entry) ? "replaces" : "takes out") + " that at " +
                               placeOf(earlier.offset));
    }
    earlier.offset = entry.offset;
    earlier.kept = hasValue(entry);
  }
  map.entryCount = std::max(map.entryCount, lastEntry + 1);
}

// Closes the innermost frame that the end of the text left open, if there is one.
int CheckedSource::endText() {
  if (starIsOpen) {
    reportEnd(nameOf(ObjectFrame), lastStar);
  }
  if (frames.empty()) {
    return SOURCE_END;
  }
  reportEnd(nameOf(frames.back().kind), frames.back().offset);
  popFrame();
  return SOURCE_FRAME_END;
}

// One report for all that is left open.
void CheckedSource::reportEnd(char const* name, int offset) {
  if (!endReported) {
    endReported = true;
    report(static_cast<int>(content.size()),
           std::string("the text ends inside the ") + name + " that opens at " + placeOf(offset));
  }
}

std::string CheckedSource::placeOf(int offset) const {
  return problems.place(static_cast<std::size_t>(offset));
}
