// Random walks of a stack.

#include "support/walks/StackWalk.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int Steps = 4000;

class StackWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  test::SeededChoices choices{GetParam()};
  test::StackWalk walk{choices};
};

TEST_P(StackWalk, AgreesWithTheModel) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    ASSERT_NO_FATAL_FAILURE(walk.compare());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StackWalk, ::testing::Values(1U, 20260U, 987654321U));

}  // namespace
