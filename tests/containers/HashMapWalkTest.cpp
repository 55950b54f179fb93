// Random walks of a hash map.

#include "support/walks/HashMapWalk.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int Steps = 20000;

class HashMapWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  static std::string place(int step) {
    return "seed " + std::to_string(GetParam()) + ", step " + std::to_string(step);
  }

  test::SeededChoices choices{GetParam()};
  test::HashMapWalk walk{choices};
};

TEST_P(HashMapWalk, AgreesWithTheModel) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE(place(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    ASSERT_NO_FATAL_FAILURE(walk.compare());
  }
}

TEST_P(HashMapWalk, IsSafeForCursorsThatAreUsedAllTheTime) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE(place(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    ASSERT_NO_FATAL_FAILURE(walk.useACursor());
  }
  EXPECT_GT(walk.entriesMet(), Steps / 10);
  ASSERT_NO_FATAL_FAILURE(walk.dropCursors());
  ASSERT_NO_FATAL_FAILURE(walk.compare());
}

INSTANTIATE_TEST_SUITE_P(Seeds, HashMapWalk, ::testing::Values(1U, 20260U, 987654321U));

}  // namespace
