// Counts every block that the program and the library in it get, and lets them run out of memory.
//
// For programs that link the static library and wrap malloc, realloc and free
// (-Wl,--wrap=malloc and so on). It replaces operator new and delete too: include it in one source.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

#include "support/EveryBlock.h"

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);
void* __wrap_malloc(std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
void __wrap_free(void* block);
}

namespace test {

// One thread at a time.
struct Mallocs {
  static constexpr int Never = -1;

  static inline int alive = 0;          // blocks that were not freed
  static inline std::size_t cutTo = 0;  // what the last realloc() asked for
  static inline int failAfter = Never;  // so many more calls succeed
  static inline bool failOnce = false;  // and then only one fails
  static inline int failed = 0;         // calls that did

  // Whether the next call is to fail; it is counted.
  static bool isOut() {
    if (failAfter == 0) {
      ++failed;
      failAfter = failOnce ? Never : 0;
      return true;
    }
    failAfter -= failAfter > 0 ? 1 : 0;
    return false;
  }

  // Behind all exit handlers: what counts the lines that were run needs memory to write that down.
  ~Mallocs() { failAfter = Never; }
};

inline Mallocs const mallocsOfTheProgram;

// Has the calls fail, after so many, until it is left.
class OutOfMemory {
 public:
  explicit OutOfMemory(int after = 0) { Mallocs::failAfter = after; }
  ~OutOfMemory() { Mallocs::failAfter = Mallocs::Never; }
  OutOfMemory(OutOfMemory const&) = delete;
  OutOfMemory& operator=(OutOfMemory const&) = delete;
};

}  // namespace test

void* __wrap_malloc(std::size_t size) {
  if (test::Mallocs::isOut()) {
    return nullptr;
  }
  void* const block = __real_malloc(size);
  test::Mallocs::alive += block != nullptr ? 1 : 0;
  return block;
}

void* __wrap_realloc(void* block, std::size_t size) {
  if (test::Mallocs::isOut()) {
    return nullptr;
  }
  test::Mallocs::cutTo = size;
  void* const moved = __real_realloc(block, size);
  test::Mallocs::alive += block == nullptr && moved != nullptr ? 1 : 0;
  return moved;
}

void __wrap_free(void* block) {
  test::Mallocs::alive -= block != nullptr ? 1 : 0;
  __real_free(block);
}

void* operator new(std::size_t size) {
  for (;;) {
    if (void* const block = __wrap_malloc(size != 0 ? size : 1)) {
      return block;
    }
    std::new_handler const handler = std::get_new_handler();
    if (handler == nullptr) {
      throw std::bad_alloc();
    }
    handler();
  }
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* block) noexcept { __wrap_free(block); }
void operator delete[](void* block) noexcept { __wrap_free(block); }
void operator delete(void* block, std::size_t) noexcept { __wrap_free(block); }
void operator delete[](void* block, std::size_t) noexcept { __wrap_free(block); }
// NOLINTEND(bugprone-reserved-identifier)
