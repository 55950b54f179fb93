#include "tarselvalues/core/ObjectLock.h"

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace tarselvalues {

namespace {

// Whether fork() has made this process.
std::atomic<bool> isChild{false};

// Held while a mutex is made anew.
pthread_mutex_t recovery = PTHREAD_MUTEX_INITIALIZER;

void beginAsChild() {
  isChild.store(true, std::memory_order_relaxed);
  recovery = PTHREAD_MUTEX_INITIALIZER;
}

[[maybe_unused]] int const registered = pthread_atfork(nullptr, nullptr, beginAsChild);

// The thread that holds a mutex; 0 if it is free, or about to be taken or freed. glibc notes it
// down for recursive mutexes, and asks for nothing else to tell it.
int holderOf(pthread_mutex_t const& mutex) {
  return __atomic_load_n(&mutex.__data.__owner, __ATOMIC_RELAXED);
}

bool isGone(int thread) { return syscall(SYS_tgkill, getpid(), thread, 0) != 0 && errno == ESRCH; }

void makeAnew(pthread_mutex_t& mutex, int lostHolder) {
  pthread_mutex_lock(&recovery);
  if (pthread_mutex_trylock(&mutex) == 0) {
    pthread_mutex_unlock(&mutex);  // Another thread of the child was here before.
  } else if (holderOf(mutex) == lostHolder) {
    initObjectMutex(mutex);
  }
  pthread_mutex_unlock(&recovery);
}

void lockInChild(pthread_mutex_t& mutex) {
  // A live thread stands between taking a mutex and noting that down for no longer than this.
  constexpr int patience = 1000;
  int withoutHolder = 0;
  while (pthread_mutex_trylock(&mutex) != 0) {
    int const holder = holderOf(mutex);
    withoutHolder = holder == 0 ? withoutHolder + 1 : 0;
    if (withoutHolder > patience || (holder != 0 && isGone(holder))) {
      makeAnew(mutex, holder);
      withoutHolder = 0;
    } else {
      sched_yield();
    }
  }
}

}  // namespace

void lockObject(pthread_mutex_t& mutex) noexcept {
  if (isChild.load(std::memory_order_relaxed)) {
    lockInChild(mutex);
  } else {
    pthread_mutex_lock(&mutex);
  }
}

}  // namespace tarselvalues
