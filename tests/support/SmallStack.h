// Runs something on a thread with a small stack.
#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>

namespace test {

// What a small device gives a thread. Sanitizers put guards around everything on the stack.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t SmallStackSize = std::size_t{1024} * 1024;
#else
constexpr std::size_t SmallStackSize = std::size_t{64} * 1024;
#endif

// Runs `action` there and waits for its end. False when there was no such thread.
inline bool runOnSmallStack(std::function<void()> action) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_t thread;
  bool const started = pthread_attr_setstacksize(&attributes, SmallStackSize) == 0 &&
                       pthread_create(
                           &thread, &attributes,
                           [](void* run) -> void* {
                             (*static_cast<std::function<void()>*>(run))();
                             return nullptr;
                           },
                           &action) == 0;
  pthread_attr_destroy(&attributes);
  return started && pthread_join(thread, nullptr) == 0;
}

}  // namespace test
