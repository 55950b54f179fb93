// Strings whose text stands in one block of memory with them. Not for users.
#pragma once

#include <cstddef>
#include <cstring>
#include <new>

#include "tarselvalues/core/Tuning.h"
#include "tarselvalues/core/lvrString.h"

// Whether a text of `length` bytes that is stored by `mode` may stand in one block with its string.
// Not a long one: a string that is set anew keeps the room.
inline bool lvrString::fitsOneBlock(std::size_t length, int mode) {
  constexpr std::size_t longest = 128;
  return tarselvalues::Tuned && length - 1 < longest && (mode & CopyAndOwn) != 0;
}

// Makes a string, or what is derived from it, with a copy of these bytes and a NUL in one block of
// memory with the object. The block is larger than the object, so the destructors of the string
// classes are compiled without sized deallocation. Throws std::bad_alloc.
template <class String>
String* lvrString::make(char const* bytes, std::size_t length) {
  void* const block = ::operator new(sizeof(String) + length + 1);
  auto* const string = ::new (block) String;
  char* const text = static_cast<char*>(block) + sizeof(String);
  std::memcpy(text, bytes, length);
  text[length] = '\0';
  string->storeText(text, length, false);
  string->setOwnBit(OneBlockBit);
  return string;
}
