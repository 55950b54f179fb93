// A text writer over a heap block of exactly its capacity, so that AddressSanitizer sees every byte
// written outside of it, and canaries show which bytes inside were left alone.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/serial/LayoutAccess.h"
#include "tarselvalues/serial/lvtStringArgDest.h"

namespace test {

// The kinds of levels: as numbers, since programs rely on them, and as a class with a name.
inline lvArg const mapKind = integer(24);
inline lvArg const vectorKind = integer(25);
inline lvArg const tupleKind = integer(32);
inline lvClass classNamed(std::string const& name) { return lvClass(0, string(name), nullptr); }

// What a buffer holds where nothing was written.
inline constexpr char Untouched = '\xA5';

// The bits of the writer's flags.
inline constexpr unsigned OwnsBufferBit = 1;
inline constexpr unsigned TransferSizesBit = 2;
inline constexpr unsigned SeparatorPendingBit = 4;
inline constexpr unsigned BareWordsBit = 8;

inline unsigned flagsOf(lvtStringArgDest const& writer) {
  return lvLayoutAccess<lvtStringArgDest>::flags(writer);
}
inline unsigned depthOf(lvtStringArgDest const& writer) {
  return lvLayoutAccess<lvtStringArgDest>::depth(writer);
}
inline int capacityOf(lvtStringArgDest const& writer) {
  return lvLayoutAccess<lvtStringArgDest>::capacity(writer);
}

// What was written so far.
inline std::string textOf(lvtStringArgDest const& writer) {
  return std::string(writer.getStringData(), static_cast<std::size_t>(writer.getStringLength()));
}

class TextWriter : public lvtStringArgDest {
 public:
  // Large enough for what the tests write.
  TextWriter() : TextWriter(1000) {}

  explicit TextWriter(int capacity)
      : size_(static_cast<std::size_t>(capacity)), block_(std::make_unique<char[]>(size_)) {
    std::string(size_, Untouched).copy(block_.get(), size_);
    setStringBuffer(block_.get(), capacity);
  }

  std::string text() const { return textOf(*this); }

  // The whole buffer, and what of it was not written as text.
  std::string block() const { return std::string(block_.get(), size_); }
  std::string rest() const { return block().substr(static_cast<std::size_t>(getStringLength())); }
  bool isRestUntouched() const { return rest() == std::string(rest().size(), Untouched); }
  bool holdsItsBlock() const {
    return getStringData() == block_.get() && capacityOf(*this) == static_cast<int>(size_);
  }

  unsigned flags() const { return flagsOf(*this); }
  bool isSeparatorPending() const { return (flags() & SeparatorPendingBit) != 0; }
  unsigned depth() const { return depthOf(*this); }

  // The kinds of the open levels, true for a tuple; the stored bits above them mean nothing.
  std::vector<bool> levels() const {
    std::vector<bool> kinds;
    for (unsigned i = 0; i < depth(); ++i) {
      kinds.push_back(((lvLayoutAccess<lvtStringArgDest>::levelKinds(*this) >> i) & 1U) != 0);
    }
    return kinds;
  }

 private:
  std::size_t size_;
  std::unique_ptr<char[]> block_;
};

// A writer whose buffer is taken up to a room of so many bytes: those before the one that is kept
// for the NUL.
class WriterWithRoom : public TextWriter {
 public:
  enum Separator { NoSeparator, SeparatorPending };

  explicit WriterWithRoom(int room, Separator separator = NoSeparator) : TextWriter(room + 4) {
    if (separator == SeparatorPending) {
      putArg(lvArg::TrueValue);
      insertString("..", 2);
    } else {
      insertString("...", 3);
    }
  }

  // What was written into the room.
  std::string written() const { return text().substr(3); }
};

}  // namespace test
