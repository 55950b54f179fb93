// A child that fork() makes of a program whose threads use the library.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "support/Cells.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

constexpr int Forks = 300;
constexpr int Threads = 3;
constexpr unsigned Patience = 60;  // seconds, for a child that does not come to its end

enum ChildStatus { Fine = 0, Wrong = 3 };

// Threads that share a vector and intern a few texts, until the object goes.
class BusyThreads {
 public:
  explicit BusyThreads(lvArg const& shared) {
    for (int i = 0; i < Threads; ++i) {
      threads_.emplace_back([this, cell = shared] {
        for (unsigned round = 0; !isOver_; ++round) {
          lvArg const copy(cell);
          lvString const text(("busy" + std::to_string(round % 4)).c_str());
          ++rounds_;
          std::this_thread::yield();  // Lets the thread that forks have the table's lock.
        }
      });
    }
    while (rounds_ < Threads) {
      std::this_thread::yield();
    }
  }
  ~BusyThreads() {
    isOver_ = true;
    for (std::thread& thread : threads_) {
      thread.join();
    }
  }
  BusyThreads(BusyThreads const&) = delete;
  BusyThreads& operator=(BusyThreads const&) = delete;

 private:
  std::atomic<bool> isOver_{false};
  std::atomic<int> rounds_{0};
  std::vector<std::thread> threads_;
};

// What the child does: everything that the threads of its parent may just have been doing.
ChildStatus useTheLibrary(lvArg const& shared) {
  for (int i = 0; i < 4; ++i) {
    lvArg const copy(shared);
    lvString const text(("busy" + std::to_string(i)).c_str());
    lvHashMap map(3);
    map->put(text, copy);
    if (!map->get(lvString(("busy" + std::to_string(i)).c_str())).eq(shared)) {
      return Wrong;
    }
  }
  return Fine;
}

// Forks, and returns the status of a child that runs `action`.
template <class Action>
int statusOfChild(Action action) {
  pid_t const child = fork();
  if (child == 0) {
    alarm(Patience);
    _exit(action());
  }
  int status = -1;
  EXPECT_EQ(child, waitpid(child, &status, 0));
  return status;
}

TEST(Fork, OfABusyProgramLeavesAUsableLibraryInTheChild) {
  lvVector const shared(1);
  BusyThreads const threads(shared);
  for (int i = 0; i < Forks; ++i) {
    ASSERT_EQ(Fine, statusOfChild([&] { return useTheLibrary(shared); })) << "fork " << i;
  }
}

TEST(Fork, LetsTheChildStartThreadsOfItsOwn) {
#ifdef RUN_BY_QEMU
  GTEST_SKIP() << "qemu itself fails when the child of a threaded program starts a thread";
#endif
  lvVector const shared(1);
  BusyThreads const threads(shared);
  for (int i = 0; i < Forks / 10; ++i) {
    ASSERT_EQ(Fine, statusOfChild([&] {
                std::atomic<int> wrong{0};
                std::vector<std::thread> own;
                for (int t = 0; t < Threads; ++t) {
                  own.emplace_back([&] { wrong += useTheLibrary(shared) != Fine ? 1 : 0; });
                }
                for (std::thread& thread : own) {
                  thread.join();
                }
                return wrong == 0 ? Fine : Wrong;
              }))
        << "fork " << i;
  }
}

TEST(Fork, OfAHolderOfTheTablesLockLeavesItHeldInBoth) {
  lvString::HashTable& table = *lvString::getHashTable();
  table.writeLock();
  int const status = statusOfChild([&] {
    table.unlock();
    return lvString("afterwards").length() == 10 ? Fine : Wrong;
  });
  table.unlock();
  EXPECT_EQ(Fine, status);
  EXPECT_EQ(10, lvString("afterwards").length());
}

}  // namespace
