#include "tarselvalues/core/lvArg.h"

#include <gtest/gtest.h>

#include "support/Cells.h"

namespace {

using test::integer;

TEST(ArgHashCode, OfSmallIntegersAndNilIsAsDescribed) {
  EXPECT_EQ(integer(0).hashCode(), 69845U);
  EXPECT_EQ(integer(1).hashCode(), 46389U);
  EXPECT_EQ(lvArg().hashCode(), 19567U);
}

}  // namespace
