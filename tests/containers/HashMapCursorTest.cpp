#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvrHashMap.h"

namespace {

using test::acting;
using test::countOf;
using test::entriesOf;
using test::Held;
using test::integer;
using test::keyWithHash;
using test::restOf;
using test::string;
using Cursor = std::unique_ptr<lviRealMapEnumerator>;

Cursor cursorOf(lvrHashMap const& map) { return Cursor(map.getEnumerator()); }

bool standsOnNothing(lviRealMapEnumerator const& cursor) {
  return cursor.getKey().isNil() && cursor.getValue().isNil();
}

void fill(lvrHashMap& map, int size) {
  for (int i = 1; i <= size; ++i) {
    map.put(integer(i), integer(10 * i));
  }
}

TEST(HashMapCursor, StandsBeforeTheFirstEntry) {
  Held<lvrHashMap> const map(7U);
  fill(*map, 3);
  EXPECT_TRUE(standsOnNothing(*cursorOf(*map)));
}

TEST(HashMapCursor, MeetsEveryEntryOnce) {
  Held<lvrHashMap> const map(7U);
  fill(*map, 100);
  std::set<int> keys;
  Cursor const cursor = cursorOf(*map);
  for (int i = 0; i < 100; ++i) {
    ASSERT_TRUE(cursor->next());
    EXPECT_EQ(cursor->getValue().getInt(), 10 * cursor->getKey().getInt());
    keys.insert(cursor->getKey().getInt());
  }
  EXPECT_FALSE(cursor->next());
  EXPECT_EQ(keys.size(), 100U);
  EXPECT_EQ(*keys.begin(), 1);
  EXPECT_EQ(*keys.rbegin(), 100);
}

TEST(HashMapCursor, OfAMapWithoutEntriesStepsNowhere) {
  Held<lvrHashMap> const map(7U);
  EXPECT_FALSE(cursorOf(*map)->next());
  fill(*map, 1);
  map->clear();
  EXPECT_FALSE(cursorOf(*map)->next());
  EXPECT_FALSE(cursorOf(*Held<lvrHashMap>(0U))->next());
}

TEST(HashMapCursor, StandsOnNothingAfterTheLastEntry) {
  Held<lvrHashMap> const map(7U);
  fill(*map, 2);
  Cursor const cursor = cursorOf(*map);
  restOf(*cursor);
  EXPECT_TRUE(standsOnNothing(*cursor));
  EXPECT_FALSE(cursor->next());
  EXPECT_FALSE(cursor->next());
}

TEST(HashMapCursor, StaysWhereItIsWhileItIsAsked) {
  Held<lvrHashMap> const map(1U);
  fill(*map, 2);
  Cursor const cursor = cursorOf(*map);
  cursor->next();
  int const key = cursor->getKey().getInt();
  EXPECT_EQ(cursor->getKey().getInt(), key);
  EXPECT_EQ(cursor->getValue().getInt(), 10 * key);
  EXPECT_EQ(cursor->getValue().getInt(), 10 * key);
}

TEST(HashMapCursor, MovesByItself) {
  Held<lvrHashMap> const map(3U);
  fill(*map, 5);
  Cursor const first = cursorOf(*map);
  first->next();
  first->next();
  EXPECT_EQ(restOf(*cursorOf(*map)), entriesOf(*map));
}

TEST(HashMapCursor, GivesCopiesWithReferencesOfTheirOwn) {
  Held<lvrHashMap> const map(1U);
  lvArg const key = string("key");
  lvArg const value = string("value");
  map->put(key, value);
  Cursor const cursor = cursorOf(*map);
  cursor->next();
  EXPECT_EQ(countOf(key), 2);
  lvArg const keyCopy = cursor->getKey();
  lvArg const valueCopy = cursor->getValue();
  EXPECT_EQ(countOf(key), 3);
  EXPECT_EQ(countOf(value), 3);
}

TEST(HashMapCursor, HoldsOneReferenceToItsMap) {
  Held<lvrHashMap> const map(7U);
  Cursor cursor = cursorOf(*map);
  EXPECT_EQ(countOf(*map), 2);
  cursor->next();
  EXPECT_EQ(countOf(*map), 2);
  cursor.reset();
  EXPECT_EQ(countOf(*map), 1);
}

TEST(HashMapCursor, KeepsItsMapAlive) {
  bool gone = false;
  Cursor cursor;
  {
    Held<lvrHashMap> const map(7U);
    map->put(integer(1), acting([&gone] { gone = true; }));
    cursor = cursorOf(*map);
  }
  EXPECT_FALSE(gone);
  EXPECT_TRUE(cursor->next());
  EXPECT_EQ(cursor->getKey().getInt(), 1);
  cursor.reset();
  EXPECT_TRUE(gone);
}

TEST(HashMapCursor, SeesValuesThatAreReplaced) {
  Held<lvrHashMap> const map(1U);
  fill(*map, 1);
  Cursor const cursor = cursorOf(*map);
  cursor->next();
  map->put(integer(1), integer(77));
  EXPECT_EQ(cursor->getValue().getInt(), 77);
}

// --- What a cursor keeps -------------------------------------------------------------------------

using Logic = lvrHashMap::IteratorLogic;
using LogicLayout = lvLayoutAccess<Logic>;

// A map with an entry in bucket 1 and two in bucket 3 of 5, and the bare cursor state over it.
class HashMapIteratorLogic : public ::testing::Test {
 protected:
  HashMapIteratorLogic() : map(5U) {
    map->put(keyWithHash(1), integer(1));
    map->put(keyWithHash(3), integer(2));
    map->put(keyWithHash(8), integer(3));
    logic.initFrom(*map);
  }
  void expectState(int bucket, unsigned visited) const {
    EXPECT_EQ(LogicLayout::bucket(logic), bucket);
    EXPECT_EQ(LogicLayout::visited(logic), visited);
  }

  Held<lvrHashMap> map;
  Logic logic;
};

TEST_F(HashMapIteratorLogic, StartsBeforeTheFirstBucket) {
  expectState(-1, 0);
  EXPECT_TRUE(logic.getKey().isNil());
  EXPECT_TRUE(logic.getValue().isNil());
}

TEST_F(HashMapIteratorLogic, CountsTheEntriesAndFollowsTheBuckets) {
  EXPECT_TRUE(logic.next());
  expectState(1, 1);
  EXPECT_EQ(logic.getValue().getInt(), 1);
  EXPECT_TRUE(logic.next());
  expectState(3, 2);
  EXPECT_TRUE(logic.next());
  expectState(3, 3);
  EXPECT_FALSE(logic.next());
  expectState(3, 3);
  EXPECT_TRUE(logic.getKey().isNil());
}

TEST_F(HashMapIteratorLogic, TakesNoReferenceOfItsOwn) { EXPECT_EQ(countOf(*map), 1); }

TEST_F(HashMapIteratorLogic, StartsAgainWhenInitialised) {
  while (logic.next()) {
  }
  logic.initFrom(*map);
  expectState(-1, 0);
  EXPECT_TRUE(logic.next());
  EXPECT_EQ(logic.getValue().getInt(), 1);
}

TEST_F(HashMapIteratorLogic, GivesTheCellsOfTheEntryItself) {
  logic.next();
  auto* const entry = lvLayoutAccess<lvrHashMap>::buckets(*map)[1];
  EXPECT_EQ(&logic.getKey(), &entry->key);
  EXPECT_EQ(&logic.getValue(), &entry->value);
}

// --- While the map changes: whatever the cursor yields, it is safe -------------------------------

// A map with four entries in bucket 0 and one in bucket 1, keyed by objects, and a cursor on the
// first entry.
class HashMapCursorWhileChanging : public ::testing::Test {
 protected:
  HashMapCursorWhileChanging() : map(2U) {
    for (unsigned i = 0; i < 4; ++i) {
      map->put(keyWithHash(2 * i), string("chained"));
    }
    map->put(keyWithHash(1), string("second bucket"));
    cursor = cursorOf(*map);
    cursor->next();
  }
  void remove(lvArg const& key) { map->put(key, lvArg::NilValue); }
  // Takes the spare place, so that the next entry that is removed is freed.
  void fillSparePlace() {
    lvArg const key = keyWithHash(3);
    map->put(key, integer(1));
    remove(key);
  }

  Held<lvrHashMap> map;
  Cursor cursor;
};

TEST_F(HashMapCursorWhileChanging, StandsOnNothingWhenItsEntryIsRetired) {
  remove(cursor->getKey());
  EXPECT_TRUE(standsOnNothing(*cursor));
  EXPECT_EQ(restOf(*cursor), "<tag 18>='second bucket' ");
}

TEST_F(HashMapCursorWhileChanging, StandsOnNothingWhenItsEntryIsFreed) {
  fillSparePlace();
  remove(cursor->getKey());
  EXPECT_TRUE(standsOnNothing(*cursor));
  EXPECT_EQ(restOf(*cursor), "<tag 18>='second bucket' ");
}

TEST_F(HashMapCursorWhileChanging, GoesOnWithoutBeingAskedBetweenRemovals) {
  fillSparePlace();
  remove(cursor->getKey());
  EXPECT_EQ(restOf(*cursor), "<tag 18>='second bucket' ");
}

TEST_F(HashMapCursorWhileChanging, StaysOnItsEntryWhenAnotherOneIsFreed) {
  fillSparePlace();
  lvArg const key = cursor->getKey();
  lvMapEnumerator const other(*map);
  other->next();
  other->next();
  remove(other->getKey());
  EXPECT_TRUE(cursor->getKey().eq(key));
  EXPECT_TRUE(cursor->next());
  EXPECT_EQ(test::textOf(cursor->getValue()), "chained");
}

TEST_F(HashMapCursorWhileChanging, MayRemoveEveryEntryThatItMeets) {
  int met = 0;
  do {
    ++met;
    remove(cursor->getKey());
  } while (cursor->next());
  EXPECT_EQ(map->getSize(), 5 - met);
}

TEST_F(HashMapCursorWhileChanging, StandsOnNothingAfterClear) {
  map->clear();
  EXPECT_TRUE(standsOnNothing(*cursor));
  EXPECT_FALSE(cursor->next());
}

TEST_F(HashMapCursorWhileChanging, IsSafeWhenTheMapIsClearedAndFilledAgain) {
  map->clear();
  fill(*map, 50);
  EXPECT_TRUE(standsOnNothing(*cursor));
  while (cursor->next()) {
    EXPECT_EQ(cursor->getValue().getInt(), 10 * cursor->getKey().getInt());
  }
}

TEST_F(HashMapCursorWhileChanging, IsSafeWhenTheBucketsBecomeFewer) {
  while (cursor->next()) {
  }
  map->clear();
  map->setHashSize(1);
  EXPECT_TRUE(standsOnNothing(*cursor));
  fill(*map, 20);
  EXPECT_FALSE(cursor->next());
}

TEST_F(HashMapCursorWhileChanging, IsSafeWhenTheBucketsBecomeMore) {
  map->clear();
  map->setHashSize(1000);
  EXPECT_FALSE(cursor->next());
  fill(*map, 20);
  EXPECT_TRUE(standsOnNothing(*cursor));
  while (cursor->next()) {
    EXPECT_EQ(cursor->getValue().getInt(), 10 * cursor->getKey().getInt());
  }
}

TEST_F(HashMapCursorWhileChanging, IsSafeWhenTheStorageIsFreed) {
  map->freeStorage();
  EXPECT_TRUE(standsOnNothing(*cursor));
  EXPECT_FALSE(cursor->next());
  fill(*map, 5);
  EXPECT_TRUE(standsOnNothing(*cursor));
}

TEST_F(HashMapCursorWhileChanging, IsSafeWhenItsEntryIsUsedForAnotherKey) {
  lvArg const key = cursor->getKey();
  remove(key);
  map->put(keyWithHash(5), string("second bucket"));
  while (cursor->next()) {
    EXPECT_EQ(test::textOf(cursor->getValue()), "second bucket");
    EXPECT_FALSE(cursor->getKey().eq(key));
  }
}

TEST_F(HashMapCursorWhileChanging, YieldsOnlyEntriesOfTheMapWhenSomeAreAdded) {
  for (int i = 0; i < 20; ++i) {
    map->put(integer(i), string("added"));
    if (cursor->next()) {
      EXPECT_FALSE(map->get(cursor->getKey()).isNil());
    }
  }
}

TEST_F(HashMapCursorWhileChanging, MeetsAllThatIsLeftWhenItHasNotSteppedYet) {
  Cursor const fresh = cursorOf(*map);
  remove(cursor->getKey());
  EXPECT_EQ(restOf(*fresh), entriesOf(*map));
}

TEST_F(HashMapCursorWhileChanging, MadeBeforeTheFirstPutMeetsAllEntries) {
  Held<lvrHashMap> const late(3U);
  Cursor const early = cursorOf(*late);
  fill(*late, 10);
  EXPECT_EQ(restOf(*early), entriesOf(*late));
}

TEST_F(HashMapCursorWhileChanging, StandsOnNothingWhileClearReleasesItsEntry) {
  bool asked = false;
  map->put(keyWithHash(7), acting([&] {
             asked = true;
             EXPECT_TRUE(standsOnNothing(*cursor));
             EXPECT_FALSE(cursor->next());
           }));
  map->clear();
  EXPECT_TRUE(asked);
}

TEST_F(HashMapCursorWhileChanging, MayBeMadeWhileTheMapGoes) {
  std::string met = "unasked";
  {
    auto& dying = *new lvrHashMap(3);
    lvArg const holder(dying);
    dying.put(integer(1), integer(1));
    dying.put(integer(2), acting([&] { met = entriesOf(dying); }));
  }
  EXPECT_EQ(met, "");
}

}  // namespace
