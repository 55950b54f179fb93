// Random walks of a tuple set and its cursors.

#include "support/walks/TupleSetWalk.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

constexpr int Steps = 2000;

// The seed, and whether equal keys are inserted.
class TupleSetWalk : public ::testing::TestWithParam<std::tuple<unsigned, bool>> {
 protected:
  test::SeededChoices choices{std::get<0>(GetParam())};
  test::TupleSetWalk walk{choices, std::get<1>(GetParam())};
};

TEST_P(TupleSetWalk, AgreesWithTheModelAndSoDoItsCursors) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(std::get<0>(GetParam())) + ", step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(walk.changeSet());
    ASSERT_NO_FATAL_FAILURE(walk.moveCursor());
    ASSERT_NO_FATAL_FAILURE(walk.compare());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, TupleSetWalk,
                         ::testing::Combine(::testing::Values(1U, 20260U, 987654321U),
                                            ::testing::Bool()));

}  // namespace
