#include "bench/Samples.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <random>

namespace bench {

namespace {

constexpr int FewCount = 100;
constexpr std::size_t SomeCount = 100000;

std::string formatted(char const* format, int number) {
  char text[64];
  std::snprintf(text, sizeof(text), format, number);
  return text;
}

}  // namespace

std::string nameOf(int number) { return formatted("sensor_%07d", number); }

std::string sameHashOf(int number) { return formatted("s%07d_of_the_same_rooms", number); }

std::vector<int> fewOf(int size) {
  int const count = std::min(size, FewCount);
  std::vector<int> few;
  for (int i = 0; i < count; ++i) {
    few.push_back(static_cast<int>(std::int64_t{size} * i / count));
  }
  return few;
}

std::vector<int> allOf(int size) {
  std::vector<int> all(static_cast<std::size_t>(size));
  std::iota(all.begin(), all.end(), 0);
  std::shuffle(all.begin(), all.end(), std::mt19937(1));
  return all;
}

std::vector<int> someOf(int size) {
  std::vector<int> some = allOf(size);
  some.resize(std::min(some.size(), SomeCount));
  return some;
}

}  // namespace bench
