// Threads that start their work together.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

namespace test {

// Lets threads through when all of them have come; then it is closed again, for the next round.
class Gate {
 public:
  explicit Gate(int threads) : size(threads) {}

  void pass() {
    std::unique_lock<std::mutex> lock(mutex);
    int const mine = round;
    if (++waiting == size) {
      waiting = 0;
      ++round;
      opened.notify_all();
    }
    opened.wait(lock, [&] { return round != mine; });
  }

 private:
  int const size;
  std::mutex mutex;
  std::condition_variable opened;
  int waiting = 0;
  int round = 0;
};

// Runs work(0) to work(threads - 1), each in a thread of its own that waits for the others before
// it starts, and returns when all are done. One thread is no thread: work(0) runs in the caller's.
template <class Work>
void runTogether(int threads, Work const& work) {
  if (threads == 1) {
    work(0);
    return;
  }
  Gate gate(threads);
  std::vector<std::thread> running;
  running.reserve(static_cast<std::size_t>(threads));
  for (int i = 0; i < threads; ++i) {
    running.emplace_back([&gate, &work, i] {
      gate.pass();
      work(i);
    });
  }
  for (std::thread& thread : running) {
    thread.join();
  }
}

}  // namespace test
