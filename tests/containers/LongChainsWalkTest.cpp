// Random walks of a hash map with few buckets and many keys, which the map finds by its index.

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "support/walks/LongChainsWalk.h"

namespace {

using Mix = test::ChangingKeys::Mix;

constexpr int Steps = 3000;

class LongChainsWalk : public ::testing::TestWithParam<std::tuple<unsigned, Mix, unsigned>> {
 protected:
  test::SeededChoices choices{std::get<2>(GetParam())};
  test::LongChainsWalk walk{choices, std::get<0>(GetParam()), std::get<1>(GetParam())};
};

TEST_P(LongChainsWalk, AnswersAsAWalkOfTheChainsDoes) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(std::get<2>(GetParam())) + ", step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(walk.step());
    if (i % 100 == 0) {
      ASSERT_NO_FATAL_FAILURE(walk.compare());
    }
  }
  ASSERT_NO_FATAL_FAILURE(walk.compare());
  EXPECT_GT(walk.largest(), 200) << "chains are not long";
}

INSTANTIATE_TEST_SUITE_P(Seeds, LongChainsWalk,
                         ::testing::Combine(::testing::Values(1U, 2U, 7U),
                                            ::testing::Values(Mix::Own, Mix::OwnAndBorrowed,
                                                              Mix::OwnAndForeign),
                                            ::testing::Values(20260U)));

}  // namespace
