// lvListOf(), lvListBuilder and lvMapBuilder.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/ValueTrees.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvBuilders.h"

namespace {

using test::described;

std::uint32_t bucketsOf(lvArg const& map) {
  return lvLayoutAccess<lvrHashMap>::hashSize(
      static_cast<lvrHashMap const&>(*map.getReferencable()));
}

TEST(ListOf, TakesWhatProgramsHaveAtHand) {
  EXPECT_EQ(described(lvListOf(1, "two", std::string("three"), true, lvArg(), lvListOf())),
            "[1,'two','three',1,nil,[]]");
}

TEST(ListOf, OfOneListIsAListInAList) { EXPECT_EQ(described(lvListOf(lvListOf(1))), "[[1]]"); }

TEST(ListBuilder, AppendsInOrder) {
  lvListBuilder builder;
  for (int i = 0; i < 3; ++i) {
    builder.add(i);
  }
  EXPECT_EQ(described(builder.add("end").list()), "[0,1,2,'end']");
  EXPECT_TRUE(builder.isWhole());
}

TEST(ListBuilder, LeavesOutWhatTheListDoesNotTakeAndTells) {
  lvListBuilder builder;
  for (int i = 0; i < lvrVector::MaxSize; ++i) {
    builder.add(i);
  }
  EXPECT_TRUE(builder.isWhole());
  EXPECT_FALSE(builder.add(0).isWhole());
  EXPECT_EQ(builder.list()->getSize(), lvrVector::MaxSize);
}

TEST(MapBuilder, StoresEntries) {
  EXPECT_EQ(described(lvMapBuilder()
                          .put("name", "pump room")
                          .put("ports", lvListOf(502, 503))
                          .put(7, true)
                          .map()),
            "{'name'='pump room','ports'=[502,503],7=1}");
}

TEST(MapBuilder, InternsKeysAndNotValues) {
  lvHashMap const map = lvMapBuilder().put("key", "value").map();
  for (lvMapEnumerator entry(*map.getMap()); entry->next();) {
    EXPECT_TRUE(entry->getKey().eq(lvString("key")));
    EXPECT_FALSE(entry->getValue().eq(lvString("value")));
  }
}

TEST(MapBuilder, ALaterEntryReplacesAnEarlierOne) {
  EXPECT_EQ(described(lvMapBuilder().put("a", 1).put("a", 2).map()), "{'a'=2}");
}

TEST(MapBuilder, DoesNotStoreNil) {
  lvMapBuilder builder;
  EXPECT_EQ(described(builder.put("a", 1).put("a", lvArg()).map()), "{}");
}

TEST(MapBuilder, MakesAMapOfAsManyBucketsAsItIsTold) {
  EXPECT_EQ(bucketsOf(lvMapBuilder().map()), 7U);
  EXPECT_EQ(bucketsOf(lvMapBuilder(31).map()), 31U);
}

TEST(MapBuilder, TakesANegativeNumberOfBucketsForNone) {
  lvMapBuilder builder(-1);
  EXPECT_EQ(bucketsOf(builder.map()), 0U);
  EXPECT_FALSE(builder.put("a", 1).isWhole());
}

TEST(MapBuilder, ACopyPutsIntoTheSameMap) {
  lvMapBuilder builder;
  lvMapBuilder copy = builder;
  copy.put("a", 1);
  EXPECT_EQ(described(builder.map()), "{'a'=1}");
}

TEST(MapBuilder, TellsWhenTheMapDidNotTakeAnEntry) {
  lvMapBuilder builder(0);
  EXPECT_TRUE(builder.isWhole());
  EXPECT_FALSE(builder.put("a", 1).isWhole());
  EXPECT_EQ(described(builder.map()), "{}");
}

}  // namespace
