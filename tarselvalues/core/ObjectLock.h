// The mutex of a counted object, and how it is locked. Not for users.
//
// A child process that fork() makes of a program with several threads has the mutexes as they were,
// those too that one of the other threads, which the child does not have, was holding. In such a
// child a mutex whose holder does not exist is made anew. What it guards is one count: the holder
// had changed that or not.
#pragma once

#include <pthread.h>

#include "tarselvalues/core/Export.h"

namespace tarselvalues {

// Makes a recursive mutex.
TARSELVALUES_INTERNAL void initObjectMutex(pthread_mutex_t& mutex);

// Holds a mutex.
class TARSELVALUES_INTERNAL ObjectLock {
 public:
  explicit ObjectLock(pthread_mutex_t& guarded) noexcept;
  ~ObjectLock() { pthread_mutex_unlock(&mutex); }
  ObjectLock(ObjectLock const&) = delete;
  ObjectLock& operator=(ObjectLock const&) = delete;

 private:
  pthread_mutex_t& mutex;
};

}  // namespace tarselvalues
