// The mutex of a counted object, and how it is locked. Not for users.
//
// A child process that fork() makes of a program with several threads has the mutexes as they were,
// those too that one of the other threads, which the child does not have, was holding. In such a
// child a mutex whose holder does not exist is made anew. What it guards is one count: the holder
// had changed that or not.
#pragma once

#include <pthread.h>
#include <sys/single_threaded.h>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/Tuning.h"

namespace tarselvalues {

// Whether this thread is the only one, so that no lock is needed.
inline bool isOnlyThread() { return Tuned && __libc_single_threaded != 0; }

// Makes a recursive mutex.
inline void initObjectMutex(pthread_mutex_t& mutex) {
  // The same as pthread_mutex_init() makes, without the calls for an attribute.
  mutex = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;
}

// Locks a mutex that initObjectMutex() made.
TARSELVALUES_INTERNAL void lockObject(pthread_mutex_t& mutex) noexcept;

// Holds a mutex; leaves it alone while there is one thread. What goes on under it starts no other.
class TARSELVALUES_INTERNAL ObjectLock {
 public:
  explicit ObjectLock(pthread_mutex_t& guarded) noexcept
      : mutex(isOnlyThread() ? nullptr : &guarded) {
    if (mutex != nullptr) {
      lockObject(*mutex);  // NOLINT(misc-non-copyable-objects): it is not copied.
    }
  }
  ~ObjectLock() {
    if (mutex != nullptr) {
      pthread_mutex_unlock(mutex);
    }
  }
  ObjectLock(ObjectLock const&) = delete;
  ObjectLock& operator=(ObjectLock const&) = delete;

 private:
  pthread_mutex_t* const mutex;
};

}  // namespace tarselvalues
