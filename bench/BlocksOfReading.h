// The blocks of memory that reading each document takes and releasing it gives back, as
// RecordBlocks.cpp saw them when the benchmarks were built.
#pragma once

#include <cstddef>

namespace bench {

// A block is allocated with its size, or freed when that is 0.
struct BlockEvent {
  std::size_t block;
  std::size_t size;
};

struct BlockEvents {
  std::size_t blockCount;
  BlockEvent const* begin;
  BlockEvent const* end;
};

// In the order of documents(): the blocks that the library takes, and those that it takes when each
// object and each text has one of its own.
extern BlockEvents const OwnBlocks[];
extern BlockEvents const ObjectBlocks[];

}  // namespace bench
