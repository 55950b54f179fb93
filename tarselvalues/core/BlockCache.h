// Keeps small blocks that a thread has freed for the next ones that it asks for. Not for users.
//
// Reading a text makes strings and entries by the thousand, and releasing what was read frees them:
// each takes a few instructions here, and many times as long with malloc(). What is kept are single
// blocks of a source, so any thread may give back what another has taken, and whoever does not know
// the size of a block may free it where it came from. A thread keeps no more than MostBytes; what is
// beyond that is freed, and all the rest when the thread ends, or when the room is taken by other
// sizes than those that come now.
//
// A program that defines `extern "C" char const tarselvaluesKeepsNoBlocks`, visible to the library,
// has nothing kept, so that tools see every block come and go. The same is so with
// AddressSanitizer.
//
// Source:   `int index`, which tells the sources apart; `void* allocate(size_t)` and `void
//           deallocate(void*)`.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/Tuning.h"

namespace tarselvalues {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool KeepsBlocks = false;
#elif defined(__clang__)
constexpr bool KeepsBlocks = Tuned && !__has_feature(address_sanitizer);
#else
constexpr bool KeepsBlocks = Tuned;
#endif

// Throws std::bad_alloc.
struct FromNew {
  static constexpr int index = 0;
  static void* allocate(std::size_t bytes) { return ::operator new(bytes); }
  static void deallocate(void* block) { ::operator delete(block); }
};

// Null without memory. No std::new_handler runs.
struct FromCalloc {
  static constexpr int index = 1;
  static void* allocate(std::size_t bytes) { return std::calloc(1, bytes); }
  static void deallocate(void* block) { std::free(block); }
};

class TARSELVALUES_INTERNAL BlockCache {
 public:
  static constexpr std::size_t MostBytes = 16384 * sizeof(void*);

  // Whether a block of so many bytes may have been kept: it is not as its source makes it then.
  static constexpr bool mayKeep(std::size_t bytes) { return KeepsBlocks && bytes <= Largest; }

  // Returns a block of so many bytes, at least one; what is in it is anything.
  template <class Source>
  static void* take(std::size_t bytes);

  // Gives back a block that take() returned for so many bytes.
  template <class Source>
  static void give(void* block, std::size_t bytes);

 private:
  struct Kept {
    Kept* next;
  };

  // Blocks of up to so many bytes are kept, by sizes that leave nothing over where malloc() counts
  // in units of two words: multiples of these, less the word that it needs for itself.
  static constexpr std::size_t Largest = 216;
  static constexpr std::size_t Word = sizeof(void*);
  static constexpr std::size_t Unit = 2 * Word;
  static constexpr std::size_t Sizes = (Largest + Word) / Unit + 1;
  static constexpr int Sources = 2;

  // Keeps nothing until it is certain that the end of the thread will be noticed, nor after it.
  enum class State { New, Open, Closed };

  static constexpr std::size_t sizeFor(std::size_t bytes) {
    return (bytes + Word + Unit - 1) / Unit * Unit - Word;
  }
  template <class Source>
  Kept*& firstOf(std::size_t size) {
    return kept_[Source::index][size / Unit];
  }
  bool makeRoom(bool isFirstOfItsSize);
  void open();
  void close();
  template <class Source>
  void freeAll();
  static void makeKey();
  static void closeAtEndOfThread(void* cache);

  static thread_local BlockCache ofThread_;

  Kept* kept_[Sources][Sizes] = {};
  std::size_t room_ = 0;  // how many bytes may still be added
  State state_ = State::New;
};

// Reached without a call, which might allocate.
__attribute__((tls_model("initial-exec"))) inline thread_local BlockCache BlockCache::ofThread_;

template <class Source>
void* BlockCache::take(std::size_t bytes) {
  if (!mayKeep(bytes)) {
    return Source::allocate(bytes);
  }
  BlockCache& cache = ofThread_;
  std::size_t const size = sizeFor(bytes);
  Kept*& first = cache.firstOf<Source>(size);
  if (first == nullptr) {
    return Source::allocate(size);
  }
  cache.room_ += size;
  return std::exchange(first, first->next);
}

template <class Source>
void BlockCache::give(void* block, std::size_t bytes) {
  if (!mayKeep(bytes)) {
    Source::deallocate(block);
    return;
  }
  BlockCache& cache = ofThread_;
  std::size_t const size = sizeFor(bytes);
  Kept*& first = cache.firstOf<Source>(size);
  if (cache.room_ < size && !cache.makeRoom(first == nullptr)) {
    Source::deallocate(block);
    return;
  }
  cache.room_ -= size;
  first = ::new (block) Kept{first};
}

}  // namespace tarselvalues
