// Counts what goes through operator new and delete, the library's included, and lets it fail.
// Allocations.cpp replaces the operators: a program that links it runs by itself.
#pragma once

#include <cstddef>

namespace test {

// The calls since the last reset(), and how the next ones fare.
struct Allocations {
  int made = 0;
  int freed = 0;
  std::size_t lastSize = 0;
  int failAfter = -1;  // so many more succeed; negative: all do

  static Allocations& instance() {
    static Allocations counts;
    return counts;
  }

  static void reset() { instance() = Allocations(); }
  int alive() const { return made - freed; }
};

}  // namespace test
