#include "support/Allocations.h"

#include <cstdlib>
#include <new>

#include "support/EveryBlock.h"

namespace {

void* countedNew(std::size_t size) {
  test::Allocations& counts = test::Allocations::instance();
  if (counts.failAfter == 0) {
    throw std::bad_alloc();
  }
  if (counts.failAfter > 0) {
    --counts.failAfter;
  }
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  ++counts.made;
  counts.lastSize = size;
  return block;
}

void countedDelete(void* block) noexcept {
  if (block != nullptr) {
    ++test::Allocations::instance().freed;
    std::free(block);
  }
}

}  // namespace

void* operator new(std::size_t size) { return countedNew(size); }
void* operator new[](std::size_t size) { return countedNew(size); }
void operator delete(void* block) noexcept { countedDelete(block); }
void operator delete[](void* block) noexcept { countedDelete(block); }
void operator delete(void* block, std::size_t) noexcept { countedDelete(block); }
void operator delete[](void* block, std::size_t) noexcept { countedDelete(block); }
