// Checks for programs that are tests by themselves, because what they check happens before main()
// or after it.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace test {

// How many checks failed so far. Needs no initialiser, so that it serves in every one.
inline int failedChecks = 0;

inline void check(bool holds, char const* what, char const* when) {
  if (!holds) {
    ++failedChecks;
    std::fprintf(stderr, "%s: this does not hold: %s\n", when, what);
  }
}

// For the last handler: ends the process with status 1 if a check failed, else lets it end.
inline void judge() {
  if (failedChecks != 0) {
    std::fflush(nullptr);
    std::_Exit(1);
  }
}

}  // namespace test

#define LV_CHECK(condition, when) ::test::check((condition), #condition, (when))
