// Which locks are taken for a count: none while the process has never had a second thread, one for
// each change from then on. The program wraps the functions that lock and unlock a mutex.

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/single_threaded.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "support/Cells.h"
#include "support/Together.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/containers/lviRealMapEnumerator.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

// Of the thread that counts.
struct Locks {
  int locked = 0;
  int unlocked = 0;
};

thread_local Locks locks;

}  // namespace

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __real_pthread_mutex_trylock(pthread_mutex_t* mutex);
int __real_pthread_mutex_unlock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
  ++locks.locked;
  return __real_pthread_mutex_lock(mutex);
}
int __wrap_pthread_mutex_trylock(pthread_mutex_t* mutex) {  // The child of a fork tries first.
  int const status = __real_pthread_mutex_trylock(mutex);
  locks.locked += status == 0 ? 1 : 0;
  return status;
}
int __wrap_pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ++locks.unlocked;
  return __real_pthread_mutex_unlock(mutex);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using test::countOf;

// How many mutexes `action` locks, and unlocks again.
int locksOf(std::function<void()> const& action) {
  locks = Locks();
  action();
  Locks const taken = locks;
  EXPECT_EQ(taken.locked, taken.unlocked);
  return taken.locked;
}

// What a program does with values, all in all.
void useTheLibrary(lvArg const& shared) {
  lvHashMap map(7);
  lvVector vector(-1);
  for (int i = 0; i < 200; ++i) {
    map->put(lvString::valueOf(i), shared);
    vector->insert(test::string(std::to_string(i)), 0);
  }
  map->put(test::string("vector"), vector);
  EXPECT_TRUE(map->get(lvString("7")).eq(shared));
  int consumed = 0;
  lvToolsFromString(lvToolsToString(vector), consumed);
  EXPECT_GT(consumed, 200);
}

// So that the process has had a second one.
void startAThread() {
  std::thread([] {}).join();
}

// Forks, and returns what the child ends with: the locks that `action` takes there.
int locksInChildOf(std::function<void()> const& action) {
  pid_t const child = fork();
  if (child == 0) {
    int const taken = locksOf(action);
#ifdef TARSELVALUES_COVERAGE
    std::exit(taken);
#else
    _exit(taken);
#endif
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  return WEXITSTATUS(status);
}

// The first test of the program, since the others start threads.
TEST(LoneThread, LocksNoObject) {
  ASSERT_NE(__libc_single_threaded, 0) << "another test has started a thread";
  lvVector const shared(1);
  EXPECT_EQ(locksOf([&] { useTheLibrary(shared); }), 0);
  EXPECT_EQ(countOf(shared), 1);
  EXPECT_EQ(locksInChildOf([&] { useTheLibrary(shared); }), 0);
}

class SecondThread : public ::testing::Test {
 protected:
  SecondThread() { startAThread(); }

  lvVector const shared{1};
};

TEST_F(SecondThread, HasEveryCopyLockItsObjectOnceAndEveryRelease) {
  lvArg copy;
  EXPECT_EQ(locksOf([&] { copy.assign(shared); }), 1);
  EXPECT_EQ(countOf(shared), 2);
  EXPECT_EQ(locksOf([&] { copy.setNil(); }), 1);
  EXPECT_EQ(countOf(shared), 1);
  EXPECT_EQ(locksOf([&] { lvArg const other(shared); }), 2);
}

TEST_F(SecondThread, HasTheLastReleaseLockItsObjectOnce) {
  lvArg only = test::string("only");
  EXPECT_EQ(locksOf([&] { only.setNil(); }), 1);
}

TEST_F(SecondThread, HasACursorLockItsMapOnceWhenItComesAndOnceWhenItGoes) {
  lvHashMap const map(7);
  std::unique_ptr<lviRealMapEnumerator> cursor;
  EXPECT_EQ(locksOf([&] { cursor.reset(map->getEnumerator()); }), 1);
  EXPECT_EQ(locksOf([&] { cursor.reset(); }), 1);
}

TEST_F(SecondThread, LeavesWhatNeedsNoCountUnlocked) {
  lvArg cell = shared;
  lvArg other;
  EXPECT_EQ(locksOf([&] {
              cell.assign(shared);
              other = std::move(cell);
              other.exchange(cell);  // NOLINT(bugprone-use-after-move): nil, which has no count.
              cell.eq(shared);
              cell.setReferencable(*shared.getReferencable());
            }),
            0);
}

TEST_F(SecondThread, HasTheChildOfAForkLockToo) {
  EXPECT_EQ(locksInChildOf([&] { lvArg const copy(shared); }), 2);
}

// The mutexes of all these were never locked before.
TEST(SecondThreadThatComesLate, SharesWhatWasThereBeforeIt) {
  lvVector const shared(1);
  lvArg const copy(shared);
  lvString const text("there before");
  test::runTogether(4, [&](int) {
    for (int i = 0; i < 2000; ++i) {
      lvArg const mine(shared);
      lvString const again("there before");
      EXPECT_EQ(again.getReferencable(), text.getReferencable());
    }
  });
  EXPECT_EQ(countOf(shared), 2);
  EXPECT_EQ(countOf(text), 1);
}

}  // namespace
