#include "tarselvalues/core/lvArg.h"

#include <optional>

#include "tarselvalues/core/Address.h"
#include "tarselvalues/core/Counting.h"
#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/lvReferencable.h"

namespace {

constexpr unsigned int NilHash = 19567;

// The mix behind the hash of integers and addresses, with 32-bit wrap-around.
constexpr unsigned int mixHash(std::uint32_t word) {
  constexpr std::uint32_t factor = static_cast<std::uint32_t>(-23456);
  constexpr std::uint32_t summand = 69845;
  return word * factor + summand;
}

std::uintptr_t wordOf(lvReferencable const& object) {
  return reinterpret_cast<std::uintptr_t>(&object);
}

// Drops the reference that a cell has just given up, if it held one.
int drop(lvReferencable* old) {
  if (old != nullptr) {
    tarselvalues::Counting::drop(*old);
  }
  return 0;
}

// Keeps two objects, which cells hold, alive while they are compared: a function of the program
// that runs meanwhile may empty the cells.
class BothKept {
 public:
  BothKept(lvReferencable const& a, lvReferencable const& b) {
    if (tarselvalues::mayRunProgram(a) || tarselvalues::mayRunProgram(b)) {
      first.emplace(a);
      second.emplace(b);
    }
  }

 private:
  std::optional<tarselvalues::KeptAlive> first;
  std::optional<tarselvalues::KeptAlive> second;
};

unsigned int hashOf(lvReferencable const& object) {
  std::optional<tarselvalues::KeptAlive> kept;
  if (tarselvalues::mayRunProgram(object)) {
    kept.emplace(object);
  }
  return object.hashCode();
}

lvArg::ValueType tagOf(lvReferencable const& object) {
  return static_cast<lvArg::ValueType>(unsigned{object.getKind()} | lvArg::ReferenceFlag);
}

}  // namespace

// Constant initialisation: the constants are there before any initialiser runs.
lvArg const lvArg::NilValue;
lvArg const lvArg::TrueValue(IntType, 1);
lvArg const lvArg::FalseValue(IntType, 0);

lvArg::lvArg(lvReferencable const& object) : lvArg() { setReferencableFast(object); }

lvArg::lvArg(lvArg const& other) : tagWord_(other.tagWord_), payload_(other.payload_) {
  if (isReference()) {
    if (payload_ != 0) {
      tarselvalues::Counting::take(*object());
    }
  } else if (getType() != IntType && getType() != PointerType) {
    setTag(NilType);
    payload_ = 0;
  }
}

bool lvArg::eq(lvArg const& other) const { return isSame(other); }

int lvArg::equiv(lvArg const& other) const {
  if (this == &other) {
    return 1;
  }
  if (getType() != other.getType()) {
    return 0;
  }
  if (getType() == StringType && payload_ != 0 && other.payload_ != 0) {
    lvReferencable const& mine = *object();
    lvReferencable const& theirs = *other.object();
    BothKept const kept(mine, theirs);
    return mine.equiv(theirs);
  }
  return isNil() || payload_ == other.payload_ ? 1 : 0;
}

int lvArg::compareTo(lvArg const& other) const {
  if (this == &other) {
    return 0;
  }
  if (getType() != other.getType()) {
    return static_cast<int>(getType()) - static_cast<int>(other.getType());
  }
  if (isNil()) {
    return 0;
  }
  if (getType() == IntType) {
    return static_cast<int>(static_cast<std::uint32_t>(payload_) -
                            static_cast<std::uint32_t>(other.payload_));
  }
  if (isReference() && payload_ != other.payload_ && payload_ != 0 && other.payload_ != 0) {
    lvReferencable const& mine = *object();
    lvReferencable const& theirs = *other.object();
    BothKept const kept(mine, theirs);
    return mine.compareTo(theirs);
  }
  return tarselvalues::wordDifference(static_cast<std::intptr_t>(payload_),
                                      static_cast<std::intptr_t>(other.payload_));
}

unsigned int lvArg::hashCode() const {
  switch (getType()) {
    case NilType:
      return NilHash;
    case IntType:
      return mixHash(static_cast<std::uint32_t>(payload_));
    case PointerType:
      return mixHash(static_cast<std::uint32_t>(static_cast<std::intptr_t>(payload_) >> 3));
    default:
      return isReference() && payload_ != 0 ? hashOf(*object()) : 0;
  }
}

lvArg& lvArg::operator=(lvArg&& other) noexcept {
  if (this != &other) {
    lvReferencable* const old = detach();
    set(other.getType(), other.payload_);
    other.setTag(NilType);
    drop(old);
  }
  return *this;
}

int lvArg::assign(lvArg const& src) {
  if (isReference() && src.isReference() && payload_ != 0 && payload_ == src.payload_) {
    setTag(src.getType());
    return 0;
  }
  lvReferencable* const old = detach();
  assignFast(src);
  return drop(old);
}

int lvArg::releaseData() { return drop(detach()); }

int lvArg::setNil() {
  lvReferencable* const old = detach();
  setTag(NilType);
  return drop(old);
}

int lvArg::setInt(int value) {
  lvReferencable* const old = detach();
  set(IntType, static_cast<std::uint32_t>(value));
  return drop(old);
}

int lvArg::setPointer(void* address) {
  lvReferencable* const old = detach();
  set(PointerType, reinterpret_cast<std::uintptr_t>(address));
  return drop(old);
}

int lvArg::setReferencable(lvReferencable const& object) {
  lvReferencable* const old = getReferencable();
  if (old == &object) {
    return 0;
  }
  setReferencableFast(object);
  return drop(old);
}

void lvArg::exchange(lvArg& other) noexcept {
  std::uint32_t const word = tagWord_;
  std::uintptr_t const content = payload_;
  tagWord_ = other.tagWord_;
  payload_ = other.payload_;
  other.tagWord_ = word;
  other.payload_ = content;
}

int lvArg::assignFast(lvArg const& src) {
  if (src.isReference()) {
    if (src.payload_ != 0) {
      tarselvalues::Counting::take(*src.object());
    }
    set(src.getType(), src.payload_);
  } else if (src.getType() == IntType || src.getType() == PointerType) {
    set(src.getType(), src.payload_);
  } else {
    setTag(NilType);
  }
  return 0;
}

int lvArg::setReferencableFast(lvReferencable const& object) {
  return setReferencableFast(object, tagOf(object));
}

int lvArg::setReferencableFast(lvReferencable const& object, ValueType type) {
  tarselvalues::Counting::take(object);
  set(type, wordOf(object));
  return 0;
}

lvReferencable* lvArg::detach() noexcept {
  lvReferencable* const held = getReferencable();
  if (held != nullptr) {
    payload_ = 0;  // What runs during the release must not see the object again.
  }
  return held;
}
