// lvtStringArgDest: the text writer, a sink that writes the text format into a fixed buffer.
//
// It never grows its buffer: what does not fit is answered with ROOM_ERROR, and what was written
// before stays. It keeps a stack of up to 32 open levels, so that it knows which separator and
// which bracket to write. One byte of the buffer is kept free for the NUL of terminate(), but the
// last element written may take it: the length may reach the capacity, and never passes it.
//
//   char text[256];
//   lvtStringArgDest writer(text, sizeof(text));
//   writer.putArg(value);
//   writer.terminate();
//
// Ownership: an adopted buffer stays the caller's and must outlive its use; one that the writer
//            made is freed by cleanup() and by the destructor.
// Threads:   one thread at a time per writer.
// Errors:    ROOM_ERROR, or -1 where named. Only making a buffer of its own allocates, which may be
//            std::bad_alloc and then leaves the writer as it was.
// Layout:    on 32-bit ARM: buffer 4, capacity 8, length 12, flags 16, depth 18, level kinds 20,
//            size 24.
#pragma once

#include <cstdint>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/serial/lvArgDest.h"

class lvrString;

namespace tarselvalues {
class PlainText;
}  // namespace tarselvalues

class TARSELVALUES_API lvtStringArgDest : public lvArgDest {
 public:
  // The status of whatever does not fit.
  static constexpr int ROOM_ERROR = -3072;

  // The most levels that can be open.
  static constexpr int MaxDepth = 32;

  // Writes into the caller's buffer, as setStringBuffer() has it.
  lvtStringArgDest(char* buf, int size);
  // Has no buffer: everything answers ROOM_ERROR or -1 until setStringBuffer() is called.
  lvtStringArgDest();
  ~lvtStringArgDest() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Stores a NUL after the text, if the buffer has a byte left. The length stays. Returns 0.
  int terminate() override;
  // Opens a level: "(" for a tuple, "{" for anything else, after "*" and the class name for an
  // object. A `size` that is not negative demands 15 bytes of room, whether or not it is written;
  // keeping the figure keeps where texts are cut. ROOM_ERROR, with no level opened, for a 33rd
  // level too, and when a class name took the bracket's place; what was written before the bracket
  // stays. A size prefix that such a name left no room for is left out whole.
  int enter(lvArg const& kind, int size) override;
  // Closes the innermost level. ROOM_ERROR, with nothing changed, when fewer than 2 bytes are left.
  int leave() override;
  // As leave(), through the virtual function, but always returns 0. The elements written stay.
  int abortLevel() override;
  // Ignored: the text carries no mark of it. Returns 0.
  int sourceError(sourceError_t error) override;
  // Writes an integer, a string (bare if it is an identifier and that is allowed, else quoted), or
  // "#nil" for anything else. Needs 2 bytes of room. On ROOM_ERROR a separator may have been
  // written. A string that only escaping makes too long is cut, closed with its quote, and answers
  // 0.
  int putArg(lvArg const& value) override;
  // Starts a new text in `buf` (a negative `size` counts as 0); with null, in a new buffer of
  // `size` bytes that the writer owns (as it does when it is given the buffer that it owns). A
  // buffer owned before is freed.
  void setStringBuffer(char* buf, int size) override;
  // Forgets open levels and the separator; the text stays. Returns 0.
  int init() override;
  // Sets the settings of a new writer: bare words, no size prefixes, no buffer of its own (one that
  // it owned is the caller's from then on, to be freed with delete[]). Returns 0.
  int initOnce() override;
  // Frees the buffer if the writer owns it; there is no text and no room then. Returns 0.
  int cleanup() override;
  // Does nothing. Returns 0.
  int cleanupOnce() override;

  // Borrows what was written; not NUL-terminated before terminate().
  char const* getStringData() const { return buffer_; }
  // Returns its length in bytes.
  int getStringLength() const { return length_; }
  // Whether everything has had room since the buffer was set, which no other answer tells for sure:
  // a string may be cut with success, a class name left out, and the serializer closes a level in
  // which something was missing. A text that takes the buffer's last bytes may count as cut.
  bool hasFitted() const { return !isOverfull_; }

  // Moves the place where the next byte goes; -1 unless 0 <= offset < capacity.
  int setStringOffset(int offset);

  // Whether frames are opened with "[size]". The parser does not understand it: such text is for
  // other readers. Off in a new writer.
  void setTransferSizes(bool on);

  // The next element gets no separator.
  void omitSeparator();

  // Writes `value` in decimal at *cursor, advances it and lowers *room; ROOM_ERROR, with nothing
  // written, if *room is too small.
  int outputInteger(char** cursor, int* room, int value);

  // Writes up to `count` bytes of `text` (negative: all) up to a NUL, escaped, without quotes.
  // Stops when *room reaches 0 and returns 0; an escaped byte needs 4 bytes of room and stops with
  // ROOM_ERROR where there are fewer. A null text counts as empty.
  int outputQuotedString(char** cursor, int* room, char const* text, int count);

  // Puts a level on the stack of open levels, which is a tuple or not; -1 when the stack is full.
  int pushMapStack(bool tuple);
  // Whether the innermost open level is a tuple; false when no level is open.
  bool peekMapStack() const;
  // The same, and takes that level off the stack.
  bool popMapStack();

  // Appends a byte as it stands; -1 when it does not fit. It may take the buffer's last byte.
  int insertChar(int c);
  // Appends bytes as they stand; -1 when they do not fit with one byte left free. A negative `count`
  // measures; a null text counts as empty.
  int insertString(char const* text, int count);

 private:
  template <class T>
  friend struct lvLayoutAccess;
  friend class tarselvalues::PlainText;

  // Bits of `flags_`.
  enum Flag : std::uint16_t {
    OwnsBuffer = 1,
    TransferSizes = 2,
    SeparatorPending = 4,  // the innermost level has an element already
    BareWords = 8,
  };

  bool hasFlag(Flag flag) const { return (flags_ & flag) != 0; }
  void setFlag(Flag flag, bool on) {
    flags_ = static_cast<std::uint16_t>(on ? flags_ | unsigned{flag} : flags_ & ~unsigned{flag});
  }
  bool isInTuple() const { return depth_ > 0 && ((levelKinds_ >> (depth_ - 1)) & 1U) != 0; }
  TARSELVALUES_INTERNAL int refuse();
  int roomBeforeNul() const { return capacity_ - length_ - 1; }
  void append(char c) { buffer_[length_++] = c; }
  void separate();
  void writeObjectName(lvArg const& kind);
  void writeSize(int size);
  int putInteger(int value, int room);
  int putString(lvrString const& string, int room);
  int putNil(int room);

  char* buffer_;
  std::int32_t capacity_;
  std::int32_t length_;
  std::uint16_t flags_;
  std::uint8_t depth_;
  bool isOverfull_;           // something has had no room
  std::uint32_t levelKinds_;  // bit i: level i (0 is the outermost) is a tuple
};
