// Releasing what is nested deep, in several threads at once. What lies deeper than releases nest
// waits for its end; each thread sees to its own.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <utility>

#include "support/Nested.h"
#include "support/Objects.h"
#include "support/StringTable.h"
#include "support/Together.h"

namespace {

using test::acting;
using test::Gate;
using test::runTogether;

constexpr int Threads = 4;
constexpr int Rounds = 30;

// Deeper than releases nest.
constexpr int Depth = 400;

constexpr test::Wrap wraps[] = {test::inVector,    test::inMap,   test::inLink,
                                test::inTupleSet,  test::inStack, test::inLinkedList,
                                test::inSortedList};

lvArg buried(lvArg value, int depth = Depth) {
  for (int i = 0; i < depth; ++i) {
    value = wraps[static_cast<std::size_t>(i) % std::size(wraps)](value);
  }
  return value;
}

// The number of threads; with 1 the same work runs without any.
class DeepReleaseOfThreads : public ::testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Threads, DeepReleaseOfThreads, ::testing::Values(1, Threads));

TEST_P(DeepReleaseOfThreads, IsOverForEachThreadWhenItsOwnReturns) {
  std::atomic<int> late{0};
  runTogether(GetParam(), [&](int /*thread*/) {
    for (int i = 0; i < Rounds; ++i) {
      test::Probe::Log log;
      lvArg value = buried(lvArg(*new test::Probe(log)));
      value.setNil();
      late += log.finalized == 1 && log.destroyed == 1 ? 0 : 1;
    }
  });
  EXPECT_EQ(late, 0);
}

TEST_P(DeepReleaseOfThreads, EndsWhatAllHoldInOneOfThem) {
  std::atomic<int> gone{0};
  std::atomic<int> wrong{0};
  std::array<lvArg, Threads> holders;
  Gate gate(GetParam());
  runTogether(GetParam(), [&](int thread) {
    for (int i = 0; i < Rounds; ++i) {
      if (thread == 0) {
        holders.fill(buried(acting([&gone] { ++gone; })));
      }
      gate.pass();
      for (int own = thread; own < Threads; own += GetParam()) {
        holders.at(static_cast<std::size_t>(own)).setNil();
      }
      gate.pass();
      wrong += gone == i + 1 ? 0 : 1;
      gate.pass();
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST_P(DeepReleaseOfThreads, EndsWhatLiesBelowSeveralValuesWithTheLastOfThem) {
  std::atomic<int> gone{0};
  std::atomic<int> wrong{0};
  lvArg tail;
  Gate gate(GetParam());
  runTogether(GetParam(), [&](int thread) {
    for (int i = 0; i < Rounds; ++i) {
      if (thread == 0) {
        tail = buried(acting([&gone] { ++gone; }));
      }
      gate.pass();
      lvArg own = buried(tail, 90 + 10 * thread);  // Its end meets the shared part at any depth.
      gate.pass();
      if (thread == 0) {
        tail.setNil();
      }
      own.setNil();
      gate.pass();
      wrong += gone == i + 1 ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

// Far down, interned texts end at once, while other threads look them up.
TEST_P(DeepReleaseOfThreads, LeavesInternedTextsToWhoFindsThem) {
  std::size_t const before = test::entryCount();
  std::array<std::string, 3> const texts = {"buried a", "buried b", "buried c"};
  std::atomic<int> wrong{0};
  runTogether(GetParam(), [&](int thread) {
    for (int i = 0; i < 2 * Rounds; ++i) {
      std::string const& text = texts.at(static_cast<std::size_t>(thread + i) % texts.size());
      buried(lvString(text.c_str()), Depth / 2).setNil();
      lvString const found(text.c_str());
      lvString const again(text.c_str());
      wrong += test::textOf(found) == text && again.eq(found) ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(test::entryCount(), before);
}

}  // namespace
