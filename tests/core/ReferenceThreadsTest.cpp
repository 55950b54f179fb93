// References to one object that several threads take and drop.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <mutex>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "support/Together.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using test::countOf;
using test::Gate;
using test::runTogether;
using test::string;
using test::textOf;

constexpr int Threads = 4;
constexpr int Rounds = 1500;

// Counts its ends, whichever threads they come in.
class SharedProbe : public lvReferencable {
 public:
  struct Log {
    std::atomic<int> finalized{0};
    std::atomic<int> destroyed{0};
  };

  explicit SharedProbe(Log& target) : log(target) {}
  ~SharedProbe() override { ++log.destroyed; }
  int finalize() override {
    ++log.finalized;
    return 0;
  }

 private:
  Log& log;
};

// Each test runs with one thread, too: what fails there is no matter of threads.
class ReferenceThreads : public ::testing::TestWithParam<int> {
 protected:
  SharedProbe::Log log;
};

std::string nameOf(::testing::TestParamInfo<int> const& run) {
  return run.param == 1 ? "InOneThread" : "InSeveralThreads";
}

INSTANTIATE_TEST_SUITE_P(Together, ReferenceThreads, ::testing::Values(1, Threads), nameOf);

TEST_P(ReferenceThreads, CopyingACellOfAllLeavesItsCountWhereItBegan) {
  lvArg const shared(*new SharedProbe(log));
  std::atomic<int> wrong{0};
  runTogether(GetParam(), [&](int) {
    for (int i = 0; i < Rounds; ++i) {
      lvArg const copy(shared);
      lvArg assigned;
      assigned = copy;
      wrong += assigned.eq(shared) ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(countOf(shared), 1);
  EXPECT_EQ(log.finalized, 0);
}

TEST_P(ReferenceThreads, HoldAsManyReferencesAsTheyKeptCells) {
  lvArg const shared(*new SharedProbe(log));
  auto const threads = static_cast<std::size_t>(GetParam());
  std::vector<std::vector<lvArg>> kept(threads);
  runTogether(GetParam(), [&](int thread) {
    std::vector<lvArg>& cells = kept[static_cast<std::size_t>(thread)];
    for (int i = 0; i < Rounds; ++i) {
      cells.push_back(shared);  // Moves the cells before it whenever it grows.
    }
  });
  EXPECT_EQ(countOf(shared), 1 + GetParam() * Rounds);
  kept.clear();
  EXPECT_EQ(countOf(shared), 1);
}

TEST_P(ReferenceThreads, OneFinalizesWhenAllDropTheLastReferences) {
  std::array<lvArg, Threads> cells;
  std::atomic<int> late{0};
  Gate gate(GetParam());
  runTogether(GetParam(), [&](int thread) {
    for (int i = 0; i < Rounds; ++i) {
      if (thread == 0) {
        late += log.finalized == i && log.destroyed == i ? 0 : 1;
        cells[0] = lvArg(*new SharedProbe(log));
        for (int other = 1; other < GetParam(); ++other) {
          cells[static_cast<std::size_t>(other)] = cells[0];
        }
      }
      gate.pass();
      cells[static_cast<std::size_t>(thread)].setNil();
      gate.pass();
    }
  });
  EXPECT_EQ(late, 0);
  EXPECT_EQ(log.finalized, Rounds);
  EXPECT_EQ(log.destroyed, Rounds);
}

TEST_P(ReferenceThreads, OneIsToldThatItsReferenceWasTheLast) {
  std::atomic<int> told{0};
  lvReferencable* object = nullptr;
  Gate gate(GetParam());
  runTogether(GetParam(), [&](int thread) {
    for (int i = 0; i < Rounds; ++i) {
      if (thread == 0) {
        object = new SharedProbe(log);
      }
      gate.pass();
      lvArg taken;
      taken.setReferencableFast(*object, lvArg::NilType);  // The thread's own to drop.
      gate.pass();
      told += object->__removeRef();
      gate.pass();
    }
  });
  EXPECT_EQ(told, Rounds);
  EXPECT_EQ(log.destroyed, Rounds);
}

// A cell that any thread may change.
class Exchange {
 public:
  void swapWith(lvArg& cell) {
    std::lock_guard<std::mutex> const lock(mutex);
    held.exchange(cell);
  }

 private:
  std::mutex mutex;
  lvArg held;
};

TEST_P(ReferenceThreads, HandingObjectsOnEndEachOfThemOnce) {
  {
    Exchange exchange;
    runTogether(GetParam(), [&](int) {
      lvArg cell;
      for (int i = 0; i < Rounds; ++i) {
        cell = lvArg(*new SharedProbe(log));
        lvArg const kept(cell);
        exchange.swapWith(cell);
      }
    });
  }
  EXPECT_EQ(log.finalized, GetParam() * Rounds);
  EXPECT_EQ(log.destroyed, GetParam() * Rounds);
}

TEST_P(ReferenceThreads, MovingOnesOwnCellsAboutTouchesNoCount) {
  lvArg const shared(*new SharedProbe(log));
  runTogether(GetParam(), [&](int) {
    std::array<lvArg, 3> cells;
    cells[0] = shared;
    for (std::size_t i = 0; i < Rounds; ++i) {
      cells[(i + 1) % 3] = std::move(cells[i % 3]);
    }
  });
  EXPECT_EQ(countOf(shared), 1);
  EXPECT_EQ(log.finalized, 0);
}

TEST_P(ReferenceThreads, WalkingAtRandomOverSharedStringsLeavesTheirCounts) {
  std::array<lvArg, 3> const shared = {string("a"), string("b"), string("c")};
  runTogether(GetParam(), [&](int thread) {
    std::mt19937 random(static_cast<unsigned>(thread) + 7);
    std::array<lvArg, 4> cells;
    for (int i = 0; i < Rounds; ++i) {
      lvArg& cell = cells[random() % cells.size()];
      lvArg& other = cells[random() % cells.size()];
      switch (random() % 5) {
        case 0:
          cell = shared[random() % shared.size()];
          break;
        case 1:
          cell = other;
          break;
        case 2:
          cell = std::move(other);
          break;
        case 3:
          cell.exchange(other);
          break;
        default:
          cell.setReferencable(*shared[random() % shared.size()].getReferencable());
          break;
      }
    }
  });
  for (lvArg const& cell : shared) {
    EXPECT_EQ(countOf(cell), 1) << textOf(cell) << ", seeds from 7 on";
  }
}

TEST_P(ReferenceThreads, NeverEndAnImmortalObject) {
  SharedProbe immortal(log);
  immortal.__makeImmortal();
  runTogether(GetParam(), [&](int) {
    for (int i = 0; i < Rounds; ++i) {
      lvArg const cell(immortal);
    }
  });
  EXPECT_EQ(countOf(immortal), 10000);
  EXPECT_EQ(log.finalized, 0);
}

TEST_P(ReferenceThreads, MakeTheKeyOfTheBaseClassOnce) {
  std::array<lvString const*, Threads> keys{};
  runTogether(GetParam(), [&](int thread) {
    keys[static_cast<std::size_t>(thread)] = &lvReferencable::getStaticClassDesc();
  });
  for (int thread = 0; thread < GetParam(); ++thread) {
    EXPECT_EQ(keys[static_cast<std::size_t>(thread)], &lvReferencable::getStaticClassDesc());
  }
  EXPECT_EQ(countOf(lvReferencable::getStaticClassDesc()), 1);
}

}  // namespace
