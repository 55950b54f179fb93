#include "tarselvalues/core/BlockCache.h"

#include <pthread.h>

#include <cstdlib>
#include <utility>

// Null unless the program defines it.
extern "C" [[gnu::weak, gnu::visibility("default")]] char const tarselvaluesKeepsNoBlocks;

namespace tarselvalues {

namespace {

// Tells when a thread ends, if blocks are to be kept at all. With a key, and not with a thread_local
// object: what that needs is allocated by its first use, which ends the process where there is no
// memory. Made by pthread_once(), which a child begins anew if fork() came in between.
pthread_once_t keyOnce = PTHREAD_ONCE_INIT;
pthread_key_t key;
bool hasKey = false;

}  // namespace

void BlockCache::makeKey() {
  hasKey =
      &tarselvaluesKeepsNoBlocks == nullptr && pthread_key_create(&key, closeAtEndOfThread) == 0;
}

// Returns whether there is room now. Blocks of other sizes go for the first of a size.
bool BlockCache::makeRoom(bool isFirstOfItsSize) {
  static_assert(MostBytes >= sizeFor(Largest));
  if (state_ == State::New) {
    open();
    return room_ != 0;
  }
  if (state_ == State::Closed || !isFirstOfItsSize) {
    return false;
  }
  freeAll<FromNew>();
  freeAll<FromCalloc>();
  room_ = MostBytes;
  return true;
}

void BlockCache::open() {
  state_ = State::Closed;  // What follows may allocate.
  pthread_once(&keyOnce, makeKey);
  if (hasKey && pthread_setspecific(key, this) == 0) {
    state_ = State::Open;
    room_ = MostBytes;
  }
}

void BlockCache::close() {
  state_ = State::Closed;
  room_ = 0;
  freeAll<FromNew>();
  freeAll<FromCalloc>();
}

template <class Source>
void BlockCache::freeAll() {
  for (Kept*& first : kept_[Source::index]) {
    while (first != nullptr) {
      Kept* const next = first->next;
      Source::deallocate(std::exchange(first, next));
    }
  }
}

void BlockCache::closeAtEndOfThread(void* cache) { static_cast<BlockCache*>(cache)->close(); }

}  // namespace tarselvalues
