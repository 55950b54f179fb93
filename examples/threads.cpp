// Cells shared between threads: each thread has a cell of its own to the same object.

#include <tarselvalues/tarselvalues.h>

#include <cstdio>
#include <thread>
#include <vector>

namespace {

constexpr int ThreadCount = 4;
constexpr int Rounds = 1000;

// Strings may be read by any number of threads, and references taken and dropped.
void readShared(lvArg const& shared, int& total) {
  for (int i = 0; i < Rounds; ++i) {
    lvString const text(shared);  // Takes a reference, and drops it again.
    total += text.length();
  }
}

}  // namespace

int main() {
  lvArg const greeting = lvString("hello");
  std::vector<int> totals(ThreadCount, 0);
  std::vector<std::thread> threads;
  threads.reserve(ThreadCount);
  for (int& total : totals) {
    // The cell is copied into the thread: one thread at a time uses each cell.
    threads.emplace_back([cell = greeting, &total] { readShared(cell, total); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  int sum = 0;
  for (int const total : totals) {
    sum += total;
  }
  std::printf("%d threads read %d characters\n", ThreadCount, sum);
}
