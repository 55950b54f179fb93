// Values as text of any length, and back.
//
// Ownership: texts are copied; the cell that is returned holds what was read.
// Threads:   any thread, each call with values of its own.
// Errors:    out of memory, or a text longer than an int can tell, is std::bad_alloc.
#pragma once

#include <climits>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>

#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvValue.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace tarselvalues {

// A writer that tells whether its buffer was too small. The plain one does not tell when it cuts a
// string or leaves a class name out, nor the serializer when a level failed that could be closed.
class FitWriter : public lvtStringArgDest {
 public:
  // Writes into `buffer`.
  explicit FitWriter(std::string& buffer)
      : lvtStringArgDest(buffer.data(), static_cast<int>(buffer.size())), size_(buffer.size()) {}

  // Whether a larger buffer would not get more.
  bool fits() const { return fits_; }

  int enter(lvArg const& kind, int count) override {
    if (open_ == MaxDepth) {
      return ROOM_ERROR;
    }
    lvArg const className = lvClass(kind).getClassDesc();
    int const status = hasRoomFor(className) ? lvtStringArgDest::enter(kind, count) : ROOM_ERROR;
    open_ += status == 0 ? 1 : 0;
    return check(status);
  }
  int leave() override {
    int const status = lvtStringArgDest::leave();
    open_ -= status == 0 && open_ > 0 ? 1 : 0;
    return check(status);
  }
  int putArg(lvArg const& value) override {
    return check(hasRoomFor(value) ? lvtStringArgDest::putArg(value) : ROOM_ERROR);
  }

 private:
  // The most bytes that a byte of a string takes, and what may stand around it: separator, star,
  // quotes, bracket, NUL.
  static constexpr long long EscapedLength = 3;
  static constexpr long long AroundString = 6;

  // Whether there is room for a string however it is escaped; what is no string needs little.
  bool hasRoomFor(lvArg const& value) const {
    int length = 0;
    lvValue(value).getString(&length);
    auto const room = static_cast<long long>(size_) - getStringLength();
    return room >= EscapedLength * length + AroundString;
  }

  int check(int status) {
    fits_ = fits_ && status == 0;
    return status;
  }

  std::size_t size_;
  int open_ = 0;
  bool fits_ = true;
};

}  // namespace tarselvalues

// Returns the text of `value`. What the writer has no text for (a linked or sorted list, a stack, an
// object of an unknown class, the 33rd level) ends the level that it stands in, which is then closed
// twice; alone it has an empty text. Any thread.
inline std::string lvToText(lvArg const& value) {
  constexpr std::size_t firstCapacity = 512;
  constexpr std::size_t lastCapacity = INT_MAX / 2;
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);
  for (std::size_t capacity = firstCapacity; capacity <= lastCapacity; capacity *= 2) {
    std::string text(capacity, '\0');
    tarselvalues::FitWriter writer(text);
    serializer->serializeAtomInto(writer, value);
    if (writer.fits()) {
      text.resize(static_cast<std::size_t>(writer.getStringLength()));
      return text;
    }
  }
  throw std::bad_alloc();
}

// Returns the first value in `text`, with all that is in it; nil if there is none. What does not fit
// is skipped. `consumed`, where not null, receives the offset just after what was read. Any thread.
inline lvArg lvFromText(std::string_view text, std::size_t* consumed = nullptr) {
  if (text.size() > INT_MAX) {
    throw std::bad_alloc();
  }
  lvtStringArgSource source(text.data(), static_cast<int>(text.size()));
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);
  lvArg value;
  serializer->deserializeItemInto(value, source);
  if (consumed != nullptr) {
    *consumed = static_cast<std::size_t>(source.getParseOffset());
  }
  return value;
}
