#include <gtest/gtest.h>

#include "tarselvalues/core/lvVersion.h"

namespace {

TEST(Version, OfTheLibraryIsThatOfItsHeaders) {
  int major = -1;
  int minor = -1;
  int patch = -1;
  lvGetVersion(major, minor, patch);
  EXPECT_EQ(major, TARSELVALUES_VERSION_MAJOR);
  EXPECT_EQ(minor, TARSELVALUES_VERSION_MINOR);
  EXPECT_EQ(patch, TARSELVALUES_VERSION_PATCH);
}

}  // namespace
