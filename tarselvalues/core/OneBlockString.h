// Strings whose text stands in one block of memory with them: made inline. Not for users.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "tarselvalues/core/BlockCache.h"
#include "tarselvalues/core/ObjectLock.h"
#include "tarselvalues/core/Tuning.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"

// Whether a text of `length` bytes that is stored by `mode` may stand in one block with its string.
// Not a long one: a string that is set anew keeps the room.
inline bool lvrString::fitsOneBlock(std::size_t length, int mode) {
  constexpr std::size_t longest = 128;
  return tarselvalues::Tuned && length - 1 < longest && (mode & CopyAndOwn) != 0;
}

inline lvReferencable::lvReferencable(Kind kind, unsigned ownBits) noexcept
    : typeByte_(static_cast<std::uint8_t>((unsigned{kind} << KindShift) | ownBits)),
      ownNumber_(0),
      count_(0) {
  tarselvalues::initObjectMutex(mutex_);
}

// What fits one block has a length that is stored.
inline lvrString::lvrString(char const* textBehind, std::size_t length) noexcept
    : lvReferencable(StringKind, OneBlockBit),
      text_(textBehind),
      length_(static_cast<std::uint16_t>(length)),
      flags_(0),
      cachedHash_(0) {}

inline lvString::StringEntry::StringEntry(char const* textBehind, std::size_t length) noexcept
    : lvrString(textBehind, length), next_(nullptr) {}

// Makes a string, or what is derived from it, with a copy of these bytes and a NUL in one block of
// memory with the object. The block is larger than the object, so the destructors of the string
// classes are compiled without sized deallocation. Throws std::bad_alloc.
template <class String>
String* lvrString::make(char const* bytes, std::size_t length) {
  void* const block =
      tarselvalues::BlockCache::take<tarselvalues::FromNew>(sizeof(String) + length + 1);
  char* const text = static_cast<char*>(block) + sizeof(String);
  std::memcpy(text, bytes, length);
  text[length] = '\0';
  return ::new (block) String(text, length);
}
