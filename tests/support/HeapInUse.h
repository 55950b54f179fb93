// How much of the heap is in use.
#pragma once

#include <malloc.h>

#include <cstddef>

namespace test {

// Bytes that are allocated and not yet freed, by whomever. 0 under a sanitizer, which has a heap of
// its own and keeps accounts there of what is loaded and unloaded.
inline std::size_t heapInUse() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return 0;
#else
  struct mallinfo2 const info = mallinfo2();
  return info.uordblks + info.hblkhd;
#endif
}

}  // namespace test
