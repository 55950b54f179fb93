// What looks like a mistake in the hash map, and is not.

#include <gtest/gtest.h>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvMapRWIterator.h"

namespace {

using test::Held;
using test::integer;
using test::keysOf;
using test::string;
using Layout = lvLayoutAccess<lvrHashMap>;

TEST(HashMapOddities, AllMapsOfTheProcessTakeTurnsAtHeadsAndTails) {
  test::startAlternation();
  Held<lvrHashMap> const map(1U);
  Held<lvrHashMap> const other(1U);
  for (int i = 1; i <= 3; ++i) {
    map->put(integer(i), integer(i));    // Always to the tail,
    other->put(integer(i), integer(i));  // always to the head.
  }
  EXPECT_EQ(keysOf(*map), "1 2 3 ");
  EXPECT_EQ(keysOf(*other), "3 2 1 ");
}

TEST(HashMapOddities, TheNumberOfBucketsNeverGrows) {
  Held<lvrHashMap> const map(2U);
  for (int i = 0; i < 1000; ++i) {
    map->put(integer(i), integer(i));
  }
  EXPECT_EQ(Layout::hashSize(*map), 2U);
  EXPECT_EQ(map->getSize(), 1000);
}

TEST(HashMapOddities, SettingTheHashSizeFromZeroToZeroLeavesZero) {
  Held<lvrHashMap> const map(0U);
  EXPECT_EQ(map->setHashSize(0), 0);
  EXPECT_EQ(Layout::hashSize(*map), 0U);
  EXPECT_EQ(map->put(integer(1), integer(1)), -22);
}

TEST(HashMapOddities, AReplacedValueKeepsTheFirstKeyCell) {
  Held<lvrHashMap> const map(1U);
  lvArg const first = string("key");
  map->put(first, integer(1));
  map->put(string("key"), integer(2));
  lvMapEnumerator const entry(*map);
  entry->next();
  EXPECT_TRUE(entry->getKey().eq(first));
}

TEST(HashMapOddities, AnOldCellThatIsTheValueKeepsTheEntryAsItWas) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  lvArg cell = integer(11);
  EXPECT_EQ(map->put(integer(1), cell, &cell), 0);
  EXPECT_EQ(cell.getInt(), 10);
  EXPECT_EQ(map->get(integer(1)).getInt(), 10);
}

TEST(HashMapOddities, AnOldCellThatIsANilValueRemovesNothing) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  lvArg cell;
  EXPECT_EQ(map->put(integer(1), cell, &cell), 0);
  EXPECT_EQ(cell.getInt(), 10);
  EXPECT_EQ(map->get(integer(1)).getInt(), 10);
}

TEST(HashMapOddities, OnlyTheReadOnlyCursorIsOffered) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), integer(10));
  EXPECT_EQ(map->getIterator(), nullptr);
  EXPECT_EQ(map->getRWIterator(), nullptr);
}

TEST(HashMapOddities, IteratorHandlesWorkWithoutAnIterator) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), integer(10));
  map->put(integer(2), integer(20));
  lvMapIterator const iterator(*map);
  lvMapRWIterator const readWrite(*map);
  ASSERT_NE(iterator.getCursor(), nullptr);
  ASSERT_NE(readWrite.getCursor(), nullptr);
  std::string const entries = test::entriesOf(*map);
  EXPECT_EQ(test::restOf(*iterator.getCursor()), entries);
  EXPECT_EQ(test::restOf(*readWrite.getCursor()), entries);
}

TEST(HashMapOddities, EntriesAreNotMetInTheOrderOfInsertion) {
  test::startAlternation();
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(1));
  map->put(integer(2), integer(2));
  EXPECT_EQ(keysOf(*map), "2 1 ");
}

}  // namespace
