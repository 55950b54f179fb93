#include "tarselvalues/serial/lvtStringArgDest.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "tarselvalues/core/lvrString.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/serial/TextForms.h"
#include "tarselvalues/serial/TextSyntax.h"

namespace {

constexpr int NoRoom = -1;

constexpr int LeastPutRoom = 2;
constexpr int NilRoom = 4;
constexpr int LeaveRoom = 2;
constexpr int UnsizedEnterRoom = 1;
constexpr int SizedEnterRoom = 15;

bool isIdentifier(char const* text, int length) {
  return length > 0 && tarselvalues::startsWord(*text) &&
         std::all_of(text + 1, text + length, tarselvalues::continuesWord);
}

}  // namespace

lvtStringArgDest::lvtStringArgDest(char* buf, int size) : lvtStringArgDest() {
  lvtStringArgDest::setStringBuffer(buf, size);
}

lvtStringArgDest::lvtStringArgDest()
    : buffer_(nullptr),
      capacity_(0),
      length_(0),
      flags_(0),
      depth_(0),
      isOverfull_(false),
      levelKinds_(0) {
  lvtStringArgDest::initOnce();
  lvtStringArgDest::init();
}

lvtStringArgDest::~lvtStringArgDest() { lvtStringArgDest::cleanup(); }

// ---- Set-up ------------------------------------------------------------------------------------

void lvtStringArgDest::setStringBuffer(char* buf, int size) {
  int const usable = std::max(size, 0);
  bool const owned = buf == nullptr || (hasFlag(OwnsBuffer) && buf == buffer_);
  // Made before the old one goes: without memory everything stays as it was.
  char* const target = owned ? new char[static_cast<std::size_t>(usable)] : buf;
  cleanup();
  init();
  buffer_ = target;
  capacity_ = usable;
  length_ = 0;
  setFlag(OwnsBuffer, owned);
  isOverfull_ = false;
}

int lvtStringArgDest::initOnce() {
  setFlag(OwnsBuffer, false);
  setFlag(TransferSizes, false);
  setFlag(BareWords, true);
  return 0;
}

int lvtStringArgDest::init() {
  setFlag(SeparatorPending, false);
  depth_ = 0;
  levelKinds_ = 0;
  return 0;
}

int lvtStringArgDest::cleanup() {
  if (hasFlag(OwnsBuffer)) {
    delete[] buffer_;
    buffer_ = nullptr;
    capacity_ = 0;
    length_ = 0;
    setFlag(OwnsBuffer, false);
  }
  return 0;
}

int lvtStringArgDest::cleanupOnce() { return 0; }

int lvtStringArgDest::setStringOffset(int offset) {
  if (offset < 0 || offset >= capacity_) {
    return NoRoom;
  }
  length_ = offset;
  return 0;
}

void lvtStringArgDest::setTransferSizes(bool on) { setFlag(TransferSizes, on); }

void lvtStringArgDest::omitSeparator() { setFlag(SeparatorPending, false); }

// Remembers that something had no room.
int lvtStringArgDest::refuse() {
  isOverfull_ = true;
  return ROOM_ERROR;
}

// ---- Levels ------------------------------------------------------------------------------------

int lvtStringArgDest::pushMapStack(bool tuple) {
  if (depth_ >= MaxDepth) {
    return NoRoom;
  }
  std::uint32_t const bit = std::uint32_t{1} << depth_;
  levelKinds_ = tuple ? levelKinds_ | bit : levelKinds_ & ~bit;
  ++depth_;
  return 0;
}

bool lvtStringArgDest::peekMapStack() const { return isInTuple(); }

bool lvtStringArgDest::popMapStack() {
  bool const tuple = peekMapStack();
  if (depth_ > 0) {
    --depth_;
  }
  return tuple;
}

int lvtStringArgDest::enter(lvArg const& kind, int size) {
  int const needed =
      size < 0 ? UnsizedEnterRoom : SizedEnterRoom + (hasFlag(SeparatorPending) ? 1 : 0);
  if (roomBeforeNul() < needed) {
    return refuse();
  }
  bool const tuple = kind.getType() == lvArg::IntType && kind.getInt() == TupleFrame;
  separate();
  if (kind.getType() == lvArg::ClassType) {
    writeObjectName(kind);
    if (length_ >= capacity_) {  // The name took the bracket's place.
      return refuse();
    }
  }
  if (pushMapStack(tuple) != 0) {
    return ROOM_ERROR;
  }
  append(tuple ? '(' : '{');
  if (size >= 0 && hasFlag(TransferSizes)) {
    writeSize(size);
  }
  setFlag(SeparatorPending, false);
  return 0;
}

// Writes what stands between two elements of the innermost level.
void lvtStringArgDest::separate() {
  if (hasFlag(SeparatorPending)) {
    append(peekMapStack() ? '=' : ',');
  }
  setFlag(SeparatorPending, true);
}

void lvtStringArgDest::writeObjectName(lvArg const& kind) {
  append('*');
  setFlag(SeparatorPending, false);
  putArg(lvClass(kind).getClassDesc());
  setFlag(SeparatorPending, true);
}

void lvtStringArgDest::writeSize(int size) {
  char digits[tarselvalues::MostDecimalDigits];
  auto const count = static_cast<int>(tarselvalues::writeDecimal(digits, size) - digits);
  if (capacity_ - length_ >= count + 2) {  // The name of an object may have taken the room.
    append('[');
    std::memcpy(buffer_ + length_, digits, static_cast<std::size_t>(count));
    length_ += count;
    append(']');
  } else {
    refuse();
  }
}

int lvtStringArgDest::leave() {
  if (capacity_ - length_ < LeaveRoom) {
    return refuse();
  }
  append(popMapStack() ? ')' : '}');
  setFlag(SeparatorPending, true);
  return 0;
}

int lvtStringArgDest::abortLevel() {
  leave();
  return 0;
}

int lvtStringArgDest::sourceError(sourceError_t /*error*/) { return 0; }

int lvtStringArgDest::terminate() {
  if (length_ < capacity_) {
    buffer_[length_] = '\0';
  }
  return 0;
}

// ---- Scalars -----------------------------------------------------------------------------------
// The room that decides is the one before the separator was written. So an element that just fits
// behind a separator takes the byte kept for the NUL.

int lvtStringArgDest::putArg(lvArg const& value) {
  int const room = roomBeforeNul();
  if (room < LeastPutRoom) {
    return refuse();
  }
  separate();
  if (value.getType() == lvArg::IntType) {
    return putInteger(value.getInt(), room);
  }
  if (value.getType() == lvArg::StringType && value.getReferencable() != nullptr) {
    auto const& string = static_cast<lvrString const&>(*value.getReferencable());
    return putString(string, room);
  }
  return putNil(room);
}

int lvtStringArgDest::putInteger(int value, int room) {
  char* cursor = buffer_ + length_;
  int const status = outputInteger(&cursor, &room, value);
  length_ = static_cast<std::int32_t>(cursor - buffer_);
  return status == 0 ? 0 : refuse();
}

int lvtStringArgDest::putString(lvrString const& string, int room) {
  bool const hasText = string.getText() != nullptr;
  char const* const text = hasText ? string.getText() : lvrString::strEmpty;
  int const textLength = hasText ? string.getLength() : 0;
  if (textLength >= room - 1) {
    return refuse();
  }
  if (hasFlag(BareWords) && isIdentifier(text, textLength)) {
    std::memcpy(buffer_ + length_, text, static_cast<std::size_t>(textLength));
    length_ += textLength;
    return 0;
  }
  append('"');
  char* cursor = buffer_ + length_;
  int quotedRoom = room - 1;
  // A borrowed text may be shorter than it is said to be.
  int const readable = string.isBorrowing() ? 0 : textLength;
  tarselvalues::writeEscaped(&cursor, &quotedRoom, text, INT_MAX, readable);
  if (quotedRoom < tarselvalues::EscapeRoom) {
    refuse();  // It may have been cut.
  }
  if (cursor == buffer_ + capacity_) {
    // Behind a separator the escapes took the closing quote's place. The byte that filled the room
    // is a plain one, since an escape leaves room for one more.
    --cursor;
  }
  *cursor++ = '"';
  length_ = static_cast<std::int32_t>(cursor - buffer_);
  return 0;
}

int lvtStringArgDest::putNil(int room) {
  if (room < NilRoom) {
    return refuse();
  }
  std::memcpy(buffer_ + length_, "#nil", NilRoom);
  length_ += NilRoom;
  return 0;
}

int lvtStringArgDest::outputInteger(char** cursor, int* room, int value) {
  char digits[tarselvalues::MostDecimalDigits];
  auto const count = static_cast<int>(tarselvalues::writeDecimal(digits, value) - digits);
  if (*room < count) {
    return ROOM_ERROR;
  }
  std::memcpy(*cursor, digits, static_cast<std::size_t>(count));
  *cursor += count;
  *room -= count;
  return 0;
}

int lvtStringArgDest::outputQuotedString(char** cursor, int* room, char const* text, int count) {
  if (text == nullptr) {
    return 0;
  }
  return tarselvalues::writeEscaped(cursor, room, text, count < 0 ? INT_MAX : count, 0);
}

int lvtStringArgDest::insertChar(int c) {
  if (length_ >= capacity_) {
    refuse();
    return NoRoom;
  }
  append(static_cast<char>(c));
  return 0;
}

int lvtStringArgDest::insertString(char const* text, int count) {
  if (text == nullptr) {
    count = 0;
  }
  std::size_t const bytes = count < 0 ? std::strlen(text) : static_cast<std::size_t>(count);
  if (length_ >= capacity_ || bytes >= static_cast<std::size_t>(capacity_ - length_)) {
    refuse();
    return NoRoom;
  }
  if (bytes != 0) {
    std::memcpy(buffer_ + length_, text, bytes);
    length_ += static_cast<std::int32_t>(bytes);
  }
  return 0;
}
