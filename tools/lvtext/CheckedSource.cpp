#include "CheckedSource.h"

#include <cctype>
#include <cstdio>

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

}  // namespace

CheckedSource::CheckedSource(std::string const& text, Problems& problems)
    : lvtStringArgSource(text.data(), static_cast<int>(text.size())),
      content(text),
      report(problems),
      seenErrors(getErrorCount()) {}

// ---- Tokens ------------------------------------------------------------------------------------

int CheckedSource::getNextToken(lvArg& out) {
  reportSkipped();
  previous = last;
  last.offset = skipBlanks(getParseOffset());
  last.code = lvtStringArgSource::getNextToken(out);
  last.accounted = previous.code == '#' || previous.code == '*';
  if (last.code == '*' && !last.accounted) {
    lastStar = last.offset;
  }
  if (last.code == TOKEN_STRING && isOpenString(last, out)) {
    report.report(last.offset, "the string is not closed");
  }
  return last.code;
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
    report.report(previous.offset, "'-' without a number is skipped");
    previous.accounted = true;
    --errors;
  }
  if (errors > 0) {
    report.report(last.offset, describeSkipped(last));
    last.accounted = true;
  }
}

std::string CheckedSource::describeSkipped(Token const& token) const {
  auto const begin = static_cast<std::size_t>(token.offset);
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
      return "'" + content.substr(begin, static_cast<std::size_t>(getParseOffset()) - begin) +
             "' is skipped: there is no separator before it";
    default:
      break;
  }
  return quoteByte(content[begin]) + " is skipped: it does not fit here";
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
          endFrame();
          return result;
        }
        report.report(last.offset, quoteByte(static_cast<char>(last.code)) + " closes nothing");
        break;
      default:
        return frames.empty() ? result : closeAtEnd();
    }
  }
}

bool CheckedSource::acceptItem(lvArg const& item) {
  if (inFrame(lvArgDest::MapFrame)) {
    report.report(last.offset, "a value outside of an entry is not kept in a map");
    return false;
  }
  return countItem(last.offset, item.isNil());
}

bool CheckedSource::acceptFrame(lvArg const& kind) {
  int const offset = frameOffset(kind);
  std::string const reason = refuseFrame(kind);
  if (!reason.empty()) {
    report.report(offset, reason);
    return false;
  }
  bool const kept = kindOf(kind) == lvArgDest::TupleFrame || countItem(offset, false);
  if (kept) {
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
    report.report(offset, "an entry takes one key and one value; this one is skipped");
    return false;
  }
  if (frame.kind == lvArgDest::VectorFrame && frame.items == lvrVector::MaxSize) {
    report.report(offset, "a vector takes 65535 values; this one is skipped");
    return false;
  }
  if (frame.kind == ObjectFrame && frame.items == frame.fields) {
    report.report(
        offset, "the class has " + std::to_string(frame.fields) + " fields; this value is skipped");
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
      return "class '" + textOf(kind) + "' is not known; the object is skipped";
    }
    if (described->getNItems(lvrClass::Fields) == 0) {
      return "class '" + textOf(kind) + "' has no fields; the object is skipped";
    }
  }
  if ((frame == lvArgDest::TupleFrame) != inFrame(lvArgDest::MapFrame)) {
    return frame == lvArgDest::TupleFrame
               ? "an entry outside of a map is skipped"
               : std::string("a ") + nameOf(frame) + " outside of an entry is not kept in a map";
  }
  if (frames.size() == static_cast<std::size_t>(lvtStringArgDest::MaxDepth)) {
    return std::string("the ") + nameOf(frame) + " is nested deeper than 32 levels and skipped";
  }
  return "";
}

// Where a frame that has just begun opens. The token after the "{" of a map or vector is read
// already.
int CheckedSource::frameOffset(lvArg const& kind) const {
  switch (kindOf(kind)) {
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
    depth += result == SOURCE_FRAME_BEGIN ? 1 : 0;
    depth -= result == SOURCE_FRAME_END ? 1 : 0;
  }
}

void CheckedSource::endFrame() {
  Frame const& frame = frames.back();
  if (frame.kind == lvArgDest::TupleFrame && (frame.items < 2 || frame.lastIsNil)) {
    report.report(frame.offset, "an entry without a value is not kept in a map");
  }
  frames.pop_back();
}

// Closes the innermost frame that the end of the text left open. One report for all of them.
int CheckedSource::closeAtEnd() {
  Frame const frame = frames.back();
  frames.pop_back();
  if (!endReported) {
    endReported = true;
    report.report(static_cast<int>(content.size()), std::string("the text ends inside the ") +
                                                        nameOf(frame.kind) + " that opens at " +
                                                        report.place(frame.offset));
  }
  return SOURCE_FRAME_END;
}
