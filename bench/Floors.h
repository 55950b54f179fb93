// What counting cannot do without: the lock around each change of a count.
#pragma once

#include <benchmark/benchmark.h>
#include <pthread.h>

#include <string>

#include "bench/Bench.h"

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

// For work that takes one reference and drops one.
inline void addCountingFloors(std::string const& work) {
  add(work, "floor: two lock pairs", countLocked);
  add(work, "floor: up and down", countPlainly);
}

}  // namespace bench
