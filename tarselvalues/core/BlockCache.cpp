#include "tarselvalues/core/BlockCache.h"

#include <pthread.h>

#include <cstdlib>
#include <utility>

// Null unless the program defines it.
extern "C" [[gnu::weak, gnu::visibility("default")]] char const tarselvaluesKeepsNoBlocks;

namespace tarselvalues {

// Tells when a thread ends, if blocks are to be kept at all. With a key, and not with a
// thread_local object: what that needs is allocated by its first use, which ends the process where
// there is no memory.
class BlockCache::Ends {
 public:
  Ends()
      : willTell_(&tarselvaluesKeepsNoBlocks == nullptr &&
                  pthread_key_create(&key_, closeAtEndOfThread) == 0) {}

  bool note(BlockCache& cache) const { return willTell_ && pthread_setspecific(key_, &cache) == 0; }

 private:
  pthread_key_t key_ = 0;
  bool willTell_;
};

// Returns whether there is room now, which is so the first time at most.
bool BlockCache::open() {
  static_assert(MostBytes >= Largest);
  static Ends const ends;
  if (state_ != State::New) {
    return false;
  }
  state_ = State::Closed;
  if (ends.note(*this)) {
    state_ = State::Open;
    room_ = MostBytes;
  }
  return room_ != 0;
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
