// A child that fork() makes of a program whose threads use the library.

#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "support/Cells.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/core/LayoutAccess.h"

namespace {

using test::countOf;

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

// A thread that holds the mutex of a cell's object from the start, until the holder goes.
class HoldingThread {
 public:
  explicit HoldingThread(lvArg const& cell)
      : thread_([this, &mutex = lvLayoutAccess<lvReferencable>::mutex(*cell.getReferencable())] {
          pthread_mutex_lock(&mutex);
          held_.set_value();
          over_.get_future().wait();
          pthread_mutex_unlock(&mutex);
        }) {
    held_.get_future().wait();
  }
  ~HoldingThread() {
    over_.set_value();
    thread_.join();
  }
  HoldingThread(HoldingThread const&) = delete;
  HoldingThread& operator=(HoldingThread const&) = delete;

 private:
  std::promise<void> held_;
  std::promise<void> over_;
  std::thread thread_;
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

// Ends a child. Where lines are counted that takes its exit handlers, which write the counts.
[[noreturn]] void endChild(ChildStatus status) {
#ifdef TARSELVALUES_COVERAGE
  std::exit(status);
#else
  _exit(status);
#endif
}

// Forks, and returns the status of a child that runs `action`.
template <class Action>
int statusOfChild(Action action) {
  pid_t const child = fork();
  if (child == 0) {
    alarm(Patience);
    endChild(action());
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
#elif defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "AddressSanitizer may leave its allocator locked in the child";
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

TEST(Fork, FreesAnObjectInTheChildThatAThreadOfItsParentHadLocked) {
  lvVector const shared(1);
  HoldingThread const holder(shared);
  EXPECT_EQ(Fine, statusOfChild([&] {
              ChildStatus const status = useTheLibrary(shared);
              return countOf(shared) == 1 ? status : Wrong;
            }));
}

TEST(Fork, FreesAnObjectInTheChildThatAThreadOfItsParentWasAboutToLock) {
  lvVector const shared(1);
  std::thread([] {}).join();  // Without a second thread nothing is locked.
  EXPECT_EQ(Fine, statusOfChild([&] {
              // Taken, and not yet noted down by whom.
              lvLayoutAccess<lvReferencable>::mutex(*shared.getReferencable()).__data.__lock = 1;
              return useTheLibrary(shared);
            }));
}

TEST(Fork, LeavesAnObjectToTheThreadOfTheChildThatHasLockedIt) {
#ifdef RUN_BY_QEMU
  GTEST_SKIP() << "qemu itself fails when the child of a threaded program starts a thread";
#endif
  lvVector const shared(1);
  EXPECT_EQ(Fine, statusOfChild([&] {
              constexpr int longerThanALockIsWithoutHolder = 5000;
              std::atomic<bool> isTrying{false};
              std::atomic<bool> isCopied{false};
              bool isCopiedTooSoon = false;
              std::thread copying;
              {
                HoldingThread const holder(shared);
                copying = std::thread([&] {
                  isTrying = true;
                  lvArg const copy(shared);
                  isCopied = true;
                });
                for (int i = 0; !isTrying || i < longerThanALockIsWithoutHolder; ++i) {
                  sched_yield();
                }
                isCopiedTooSoon = isCopied;
              }
              copying.join();
              return isCopied && !isCopiedTooSoon && countOf(shared) == 1 ? Fine : Wrong;
            }));
}

}  // namespace
