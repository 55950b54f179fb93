// What is allocated while one of these lives may leak: for behaviour that leaks by design.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace test {

class IgnoreLeaks {
 public:
  IgnoreLeaks() { setIgnored(true); }
  ~IgnoreLeaks() { setIgnored(false); }
  IgnoreLeaks(IgnoreLeaks const&) = delete;
  IgnoreLeaks& operator=(IgnoreLeaks const&) = delete;

 private:
  static void setIgnored([[maybe_unused]] bool ignored) {
#if defined(__SANITIZE_ADDRESS__)
    if (ignored) {
      __lsan_disable();
    } else {
      __lsan_enable();
    }
#endif
  }
};

}  // namespace test
