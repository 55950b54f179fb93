// What is allocated while one of these lives may leak: for behaviour that leaks by design.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace test {

class IgnoreLeaks {
 public:
#if defined(__SANITIZE_ADDRESS__)
  IgnoreLeaks() { __lsan_disable(); }
  ~IgnoreLeaks() { __lsan_enable(); }
#else
  IgnoreLeaks() {}   // Not defaulted: an unused
  ~IgnoreLeaks() {}  // variable would be warned of.
#endif
  IgnoreLeaks(IgnoreLeaks const&) = delete;
  IgnoreLeaks& operator=(IgnoreLeaks const&) = delete;
};

}  // namespace test
