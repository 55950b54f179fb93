// Random walks of a sorted list, and of cursors over it.

#include "support/walks/SortedListWalk.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int Steps = 2000;

struct WalkCase {
  unsigned seed;
  unsigned duplicates;
};

class SortedListWalk : public ::testing::TestWithParam<WalkCase> {
 protected:
  static std::string place(int step) {
    return "seed " + std::to_string(GetParam().seed) + ", step " + std::to_string(step);
  }

  test::SeededChoices choices{GetParam().seed};
  test::SortedListWalk walk{choices, GetParam().duplicates};
};

TEST_P(SortedListWalk, AgreesWithTheModel) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE(place(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    ASSERT_NO_FATAL_FAILURE(walk.compare());
  }
}

TEST_P(SortedListWalk, IsSeenByCursorsThatLiveThroughAllChanges) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE(place(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    ASSERT_NO_FATAL_FAILURE(walk.moveCursors());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SortedListWalk,
                         ::testing::Values(WalkCase{1, 1}, WalkCase{20260, 0},
                                           WalkCase{987654321, 1}, WalkCase{77, 0}));

}  // namespace
