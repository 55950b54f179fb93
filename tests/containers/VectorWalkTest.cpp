// Random walks of a vector.

#include "support/walks/VectorWalk.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int Steps = 20000;

class VectorWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  static std::string place(int step) {
    return "seed " + std::to_string(GetParam()) + ", step " + std::to_string(step);
  }

  test::SeededChoices choices{GetParam()};
  test::VectorWalk walk{choices};
};

TEST_P(VectorWalk, AgreesWithTheModel) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE(place(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    ASSERT_NO_FATAL_FAILURE(walk.compare());
  }
}

TEST_P(VectorWalk, IsSeenByACursorThatLivesThroughAllChanges) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE(place(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    ASSERT_NO_FATAL_FAILURE(walk.moveCursor());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, VectorWalk, ::testing::Values(1U, 20260U, 987654321U));

}  // namespace
