// Values as text of any length, and back.
//
// Ownership: texts are copied; the cell that is returned holds what was read.
// Threads:   one thread at a time for a value that is written and all that is in it.
// Errors:    out of memory, or a text longer than an int can tell, is std::bad_alloc.
// Cost:      as the writer and the parser. A text of more than 1024 bytes is written again, into four
//            times the room, until it fits. There is no record of what was written already: what is
//            referred to twice is written twice, so that a value which contains itself twice has no
//            text that fits into memory. lvWalk() tells such values.
#pragma once

#include <climits>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>

#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

// Returns the text of `value`. What the writer has no text for (a linked or sorted list, a stack, an
// object of an unknown class, the 33rd level) ends the level that it stands in, which is then closed
// twice; alone it has an empty text. Two things are read back as others: a backslash, which is
// written as it stands, as an escape; and an empty map, "{}", as an empty list.
// One thread at a time.
inline std::string lvToText(lvArg const& value) {
  constexpr int firstCapacity = 1024;
  constexpr int growth = 4;
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);
  char onStack[firstCapacity];
  lvtStringArgDest writer(onStack, firstCapacity);
  for (int capacity = firstCapacity;; capacity *= growth) {
    serializer->serializeAtomInto(writer, value);
    if (writer.hasFitted()) {
      return {writer.getStringData(), static_cast<std::size_t>(writer.getStringLength())};
    }
    if (capacity > INT_MAX / growth) {
      throw std::bad_alloc();
    }
    writer.setStringBuffer(nullptr, capacity * growth);
  }
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
