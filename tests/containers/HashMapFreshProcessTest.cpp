// The only test of its program, so that no other one inserts into a map before it.

#include <gtest/gtest.h>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "tarselvalues/containers/lvHashMap.h"

namespace {

TEST(HashMapInAFreshProcess, PutsItsFirstEntryToTheTailAndItsSecondToTheHead) {
  lvHashMap const map(1);
  for (int i = 1; i <= 4; ++i) {
    map->put(test::integer(i), test::integer(i));
  }
  EXPECT_EQ(test::keysOf(*map.getMap()), "4 2 1 3 ");
}

}  // namespace
