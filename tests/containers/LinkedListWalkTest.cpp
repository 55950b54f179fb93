// Random walks of a linked list and its cursors.

#include "support/walks/LinkedListWalk.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int Steps = 5000;

class LinkedListWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  test::SeededChoices choices{GetParam()};
  test::LinkedListWalk walk{choices};
};

TEST_P(LinkedListWalk, AgreesWithTheModelAsDoCursorsThatLiveThroughAllChanges) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    ASSERT_NO_FATAL_FAILURE(walk.compare());
    ASSERT_NO_FATAL_FAILURE(walk.compareCursors());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, LinkedListWalk, ::testing::Values(1U, 20260U, 987654321U));

}  // namespace
