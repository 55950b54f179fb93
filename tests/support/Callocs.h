// As Mallocs.h, for programs that wrap calloc too. Include it in its place.
#pragma once

#include "support/Mallocs.h"

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
}
// NOLINTEND(bugprone-reserved-identifier)

void* __wrap_calloc(std::size_t count, std::size_t size) {
  if (test::Mallocs::isOut()) {
    return nullptr;
  }
  void* const block = __real_calloc(count, size);
  test::Mallocs::alive += block != nullptr ? 1 : 0;
  return block;
}
