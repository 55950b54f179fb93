// What work cannot do without: the lock around each change of a count; and, to find one of many
// things, the way to it through memory, which takes longer once they are more than the processor's
// caches hold.
#pragma once

#include <benchmark/benchmark.h>
#include <pthread.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Samples.h"

namespace bench {

inline void initRecursive(pthread_mutex_t& mutex) {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(&mutex, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

// A count, and the mutex around it.
class LockedCount {
 public:
  LockedCount() { initRecursive(mutex); }
  ~LockedCount() { pthread_mutex_destroy(&mutex); }
  LockedCount(LockedCount const&) = delete;
  LockedCount& operator=(LockedCount const&) = delete;

  void change(int by) {
    pthread_mutex_lock(&mutex);
    count += by;
    pthread_mutex_unlock(&mutex);
  }

 private:
  pthread_mutex_t mutex = {};
  int count = 0;
};

inline void countLocked(benchmark::State& state) {
  LockedCount count;
  for (auto _ : state) {
    count.change(1);
    benchmark::ClobberMemory();
    count.change(-1);
    benchmark::ClobberMemory();
  }
}

inline void countPlainly(benchmark::State& state) {
  int count = 0;
  benchmark::DoNotOptimize(&count);
  for (auto _ : state) {
    ++count;
    benchmark::ClobberMemory();
    --count;
    benchmark::ClobberMemory();
  }
}

// Touches what finding one of many entries, taking a reference to its value and dropping that does:
// a slot that leads to the entry, the object that is its key, and the count of its value.
class TouchedEntries {
 public:
  // Keys may lie in the entries.
  TouchedEntries(int count, bool keysAreObjects) {
    for (int i = 0; i < count; ++i) {
      entries.push_back(std::make_unique<Entry>());
      if (keysAreObjects) {
        entries.back()->key = std::make_unique<Object>();
      }
    }
  }

  void touch(int place) {
    Entry& entry = *entries[static_cast<std::size_t>(place)];
    Object* const key = entry.key.get();
    benchmark::DoNotOptimize(key != nullptr ? key->count : 0);
    int& count = entry.value->count;
    ++count;
    benchmark::DoNotOptimize(count);
    --count;
  }

 private:
  static constexpr std::size_t RestOfObject = 68;  // With the count, a string object.

  struct Object {
    int count = 0;
    char rest[RestOfObject] = {};
  };
  struct Entry {
    std::unique_ptr<Object> key;
    std::unique_ptr<Object> value = std::make_unique<Object>();
  };

  std::vector<std::unique_ptr<Entry>> entries;
};

// Touches things in random order.
inline void touchAny(benchmark::State& state, bool keysAreObjects) {
  TouchedEntries entries(sizeOf(state), keysAreObjects);
  std::vector<int> const places = allOf(sizeOf(state));
  for (auto _ : state) {
    for (int const place : places) {
      entries.touch(place);
    }
  }
  setWorkPerIteration(state, places.size());
}

// For work that takes one reference and drops one.
inline void addCountingFloors(std::string const& work) {
  add(work, "floor: two lock pairs", countLocked);
  add(work, "floor: up and down", countPlainly);
}

}  // namespace bench
