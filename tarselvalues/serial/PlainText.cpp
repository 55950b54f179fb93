#include "tarselvalues/serial/PlainText.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/serial/TextForms.h"
#include "tarselvalues/serial/TextSyntax.h"

namespace tarselvalues {

namespace {

constexpr char Nil[] = "#nil";
constexpr int NilLength = sizeof(Nil) - 1;

// As copyAtOnce() with areUnescaped(), for a text of less than a ByteWord.
bool copyUnescaped(char* to, char const* text, int length) {
  int i = 0;
  for (; i < length && !isEscaped(text[i]); ++i) {
    to[i] = text[i];
  }
  return i == length;
}

}  // namespace

// ---- The writer's state ------------------------------------------------------------------------

// False if nothing can be written at once.
bool PlainText::begin() {
  if (writer.capacity_ - writer.length_ < AmpleRoom ||
      writer.hasFlag(lvtStringArgDest::TransferSizes)) {
    return false;
  }
  limit = writer.buffer_ + (writer.capacity_ - AmpleRoom);
  depth = writer.depth_;
  outer = open.size();
  return true;
}

void PlainText::end(char const* at, bool pending) {
  writer.length_ = static_cast<std::int32_t>(at - writer.buffer_);
  writer.setFlag(lvtStringArgDest::SeparatorPending, pending);
}

// Remembers a level that is open where writing has stopped: the innermost one first. There, `at` is
// behind what has been written, and `pending` whether that has an element already.
char* PlainText::stop(char* at, bool pending, TreeLevel const& level) {
  if (!hasStoppedInside()) {
    stoppedAt = at;
    isPending = pending;
  }
  open.push_back(level);
  return nullptr;
}

void PlainText::handOver() {
  for (std::size_t i = outer, j = open.size(); i < --j; ++i) {
    std::swap(open[i], open[j]);
  }
  for (std::size_t i = outer; i < open.size(); ++i) {
    writer.pushMapStack(open[i].kind == TreeLevel::Tuple);
  }
  end(stoppedAt, isPending);
}

// ---- Scalars -----------------------------------------------------------------------------------

char* PlainText::writeNil(char* at) {
  std::memcpy(at, Nil, NilLength);
  return at + NilLength;
}

char* PlainText::writeString(char* at, lvrString const& string) const {
  char const* const text = string.getText();
  int const length = string.getKnownLength();
  if (text == nullptr || length < 0 || length > limit - at || string.isBorrowing()) {
    return nullptr;  // A borrowed text may be shorter than it is said to be.
  }
  if (!writer.hasFlag(lvtStringArgDest::BareWords)) {
    return writeQuoted(at, text, length);
  }
  if (length >= ByteWordSize) {
    return writeLong(at, text, length);
  }
  int i = 0;
  if (isOfClass(*text, Letter | Underscore)) {
    do {
      at[i] = text[i];
      ++i;
    } while (isOfClass(text[i], WordClasses));  // Up to its NUL at most.
    if (i == length) {
      return at + length;
    }
  }
  return isLocal(text[i]) ? nullptr : writeQuoted(at, text, length);
}

// A text of a ByteWord or more.
char* PlainText::writeLong(char* at, char const* text, int length) {
  int const last = length - ByteWordSize;
  int next = 0;
  if (!isDigit(*text)) {
    for (;;) {
      ByteWord const bytes = loadBytes(text + next);
      if (!areWordBytes(bytes)) {
        break;
      }
      storeBytes(at + next, bytes);
      if (next == last) {
        return at + length;
      }
      next = std::min(next + ByteWordSize, last);  // The last bytes overlap those before.
    }
  }
  return areAscii(loadBytes(text + next)) ? writeQuoted(at, text, length) : nullptr;
}

char* PlainText::writeQuoted(char* at, char const* text, int length) {
  bool const ends = text[length] == '\0';
  if (!ends || (length >= ByteWordSize ? !copyAtOnce(at + 1, text, length, areUnescaped)
                                       : !copyUnescaped(at + 1, text, length))) {
    return nullptr;
  }
  at[0] = '"';
  at[length + 1] = '"';
  return at + length + 2;
}

// In line wherever there are values, since most are strings and integers.
inline char* PlainText::writeValue(char* at, lvArg const& value) {
  if (value.getType() == lvArg::StringType && value.getReferencable() != nullptr) {
    return writeString(at, static_cast<lvrString const&>(*value.getReferencable()));
  }
  return value.getType() == lvArg::IntType ? writeDecimal(at, value.getInt())
                                           : writeOther(at, value);
}

// ---- Containers --------------------------------------------------------------------------------

char* PlainText::writeMap(char* at, lvrHashMap const& map) {
  constexpr int levels = 2;  // Its own, and that of its tuples.
  if (depth + levels > lvtStringArgDest::MaxDepth) {
    return nullptr;
  }
  depth += levels;
  *at++ = '{';
  lvrHashMap::Walk entries(map);
  for (bool pending = false;; pending = true) {
    if (at > limit) {
      return stop(at, pending, TreeLevel::ofMap(map, entries));
    }
    lvrHashMap::HashEntry const* const entry = entries.nextUndisturbed();
    if (entry == nullptr) {
      break;
    }
    if (pending) {
      *at++ = ',';
    }
    at = writeEntry(at, *entry);
    if (at == nullptr) {
      return stop(at, pending, TreeLevel::ofMap(map, entries));
    }
  }
  depth -= levels;
  *at++ = '}';
  return at;
}

inline char* PlainText::writeEntry(char* at, lvrHashMap::HashEntry const& entry) {
  *at++ = '(';
  char* next = writeValue(at, entry.key);
  if (next == nullptr) {
    int const part = hasStoppedInside() ? 1 : 0;
    return stop(at, false, TreeLevel::ofTuple(entry.key, entry.value, part));
  }
  at = next;
  *next++ = '=';
  next = writeValue(next, entry.value);
  if (next == nullptr) {
    int const part = hasStoppedInside() ? 2 : 1;
    return stop(at, true, TreeLevel::ofTuple(entry.key, entry.value, part));
  }
  *next++ = ')';
  return next;
}

char* PlainText::writeVector(char* at, lvrVector const& vector) {
  if (depth == lvtStringArgDest::MaxDepth) {
    return nullptr;
  }
  ++depth;
  *at++ = '{';
  int const size = vector.lvrVector::getSize();
  for (int i = 0; i < size; ++i) {
    if (at > limit) {
      return stop(at, i > 0, TreeLevel::ofVector(vector, size, i));
    }
    char* next = at;
    if (i > 0) {
      *next++ = ',';
    }
    next = writeValue(next, vector.borrow(i));
    if (next == nullptr) {
      return stop(at, i > 0, TreeLevel::ofVector(vector, size, hasStoppedInside() ? i + 1 : i));
    }
    at = next;
  }
  --depth;
  *at++ = '}';
  return at;
}

// Writes what stands between the brackets of an object, and those.
char* PlainText::writeFields(char* at, lvReferencable const& object, lvrClass const& described,
                             int fields) {
  ++depth;
  *at++ = '{';
  for (int i = 0; i < fields; ++i) {
    lvArg const* const field = described.borrowField(object, i);
    if (at > limit || field == nullptr) {
      return stop(at, i > 0, TreeLevel::ofObject(object, described, fields, i));
    }
    char* next = at;
    if (i > 0) {
      *next++ = ',';
    }
    next = writeValue(next, *field);
    if (next == nullptr) {
      int const begun = hasStoppedInside() ? 1 : 0;
      return stop(at, i > 0, TreeLevel::ofObject(object, described, fields, i + begun));
    }
    at = next;
  }
  --depth;
  *at++ = '}';
  return at;
}

// A value that is neither string nor integer.
char* PlainText::writeOther(char* at, lvArg const& value) {
  lvReferencable const* const object = value.getReferencable();
  switch (value.getType()) {
    case lvArg::MapType:
      return object != nullptr && isExactly<lvrHashMap>(*object)
                 ? writeMap(at, static_cast<lvrHashMap const&>(*object))
                 : nullptr;
    case lvArg::ListType:
      return object != nullptr && isExactly<lvrVector>(*object)
                 ? writeVector(at, static_cast<lvrVector const&>(*object))
                 : nullptr;
    case lvArg::ObjectType:
      return object != nullptr ? nullptr : writeNil(at);
    default:
      return writeNil(at);
  }
}

// ---- Whole values ------------------------------------------------------------------------------

// What stands before the next element of the level that is open in the writer.
char* PlainText::writeSeparator(char* at) const {
  if (writer.hasFlag(lvtStringArgDest::SeparatorPending)) {
    *at++ = writer.isInTuple() ? '=' : ',';
  }
  return at;
}

bool PlainText::write(lvArg const& value) {
  if (!begin()) {
    return false;
  }
  char* const start = writer.buffer_ + writer.length_;
  char const before = *start;
  char const* const at = writeValue(writeSeparator(start), value);
  if (at != nullptr) {
    end(at, true);
  } else if (hasStoppedInside()) {
    handOver();
  } else {
    *start = before;  // The value may be refused: a text that was ended there stays as it was.
  }
  return at != nullptr;
}

bool PlainText::writeObject(lvReferencable const& object, lvrClass const& described) {
  int const fields = described.getNItems(lvrClass::Fields);
  lvArg const& name = described.borrowClassName();
  if (fields == 0 || name.getType() != lvArg::StringType || !begin() ||
      depth == lvtStringArgDest::MaxDepth) {
    return false;
  }
  char* at = writeSeparator(writer.buffer_ + writer.length_);
  *at++ = '*';
  at = writeValue(at, name);
  if (at == nullptr) {
    return false;
  }
  at = writeFields(at, object, described, fields);
  if (at != nullptr) {
    end(at, true);
  } else {
    handOver();
  }
  return at != nullptr;
}

}  // namespace tarselvalues
