// What every map promises, whatever it is made of. A source that includes this adds its maps:
//
//   INSTANTIATE_TEST_SUITE_P(OfTheLibrary, MapContract,
//                            ::testing::Values(test::MapMaker{"HashMap", &newHashMap, false}),
//                            test::nameOfMap);
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "support/MapReading.h"
#include "support/Objects.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvMapRWIterator.h"

namespace test {

// A kind of map: its name in the tests, how a cell with a new empty one is made, and whether it
// offers a cursor that changes it.
struct MapMaker {
  std::string name;
  lvArg (*make)();
  bool hasIterator;
};

inline std::ostream& operator<<(std::ostream& out, MapMaker const& maker) {
  return out << maker.name;
}

inline std::string nameOfMap(testing::TestParamInfo<MapMaker> const& info) {
  return info.param.name;
}

// The entries in the order of their texts, for maps whose own order is open.
inline std::string sortedEntriesOf(lviMap const& map) {
  std::vector<std::string> entries;
  for (lvMapEnumerator entry(map); entry->next();) {
    entries.push_back(brief(entry->getKey()) + "=" + brief(entry->getValue()) + " ");
  }
  std::sort(entries.begin(), entries.end());
  std::string all;
  for (std::string const& entry : entries) {
    all += entry;
  }
  return all;
}

}  // namespace test

class MapContract : public ::testing::TestWithParam<test::MapMaker> {
 protected:
  MapContract() : map(GetParam().make()) {}

  // Puts the integers from 1 to `size` under themselves, times ten.
  void fill(int size) {
    for (int i = 1; i <= size; ++i) {
      map->put(test::integer(i), test::integer(10 * i));
    }
  }

  lvHashMap map;
};

TEST_P(MapContract, OffersTheMapInterfaceUnderTheMapTag) {
  ASSERT_NE(map.getMap(), nullptr);
  EXPECT_EQ(map.getType(), lvArg::MapType);
}

TEST_P(MapContract, StartsEmpty) {
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_TRUE(map->get(test::integer(1)).isNil());
  EXPECT_EQ(test::entriesOf(*map.getMap()), "");
}

TEST_P(MapContract, GivesBackWhatIsPut) {
  fill(100);
  EXPECT_EQ(map->getSize(), 100);
  for (int i = 1; i <= 100; ++i) {
    EXPECT_EQ(map->get(test::integer(i)).getInt(), 10 * i);
  }
  EXPECT_TRUE(map->get(test::integer(101)).isNil());
}

TEST_P(MapContract, LeavesTheOldCellAloneForANewKey) {
  lvArg old = test::integer(77);
  EXPECT_EQ(map->put(test::integer(1), test::integer(10), &old), 0);
  EXPECT_EQ(map->put(test::integer(2), test::integer(20), &old), 0);
  EXPECT_EQ(old.getInt(), 77);
}

TEST_P(MapContract, ReplacesTheValueOfAPresentKey) {
  fill(3);
  lvArg old;
  EXPECT_EQ(map->put(test::integer(2), test::string("new"), &old), 0);
  EXPECT_EQ(old.getInt(), 20);
  EXPECT_EQ(test::sortedEntriesOf(*map.getMap()), "1=10 2='new' 3=30 ");
}

TEST_P(MapContract, RemovesAPresentKeyWhenNilIsPut) {
  fill(3);
  lvArg old;
  EXPECT_EQ(map->put(test::integer(2), lvArg::NilValue, &old), 0);
  EXPECT_EQ(old.getInt(), 20);
  EXPECT_EQ(map->getSize(), 2);
  EXPECT_TRUE(map->get(test::integer(2)).isNil());
  EXPECT_EQ(test::sortedEntriesOf(*map.getMap()), "1=10 3=30 ");
}

TEST_P(MapContract, IgnoresNilUnderAnAbsentKeyUnlessItIsEmpty) {
  fill(3);
  lvArg old = test::integer(77);
  EXPECT_EQ(map->put(test::integer(4), lvArg::NilValue, &old), 0);
  EXPECT_EQ(old.getInt(), 77);
  EXPECT_EQ(test::sortedEntriesOf(*map.getMap()), "1=10 2=20 3=30 ");
}

TEST_P(MapContract, TellsNilAndIntegersAndTextsApart) {
  map->put(lvArg(), test::string("nil"));
  map->put(test::integer(42), test::string("integer"));
  map->put(test::string("42"), test::string("text"));
  EXPECT_EQ(map->getSize(), 3);
  EXPECT_EQ(test::textOf(map->get(lvArg())), "nil");
  EXPECT_EQ(test::textOf(map->get(test::integer(42))), "integer");
  EXPECT_EQ(test::textOf(map->get(test::string("42"))), "text");
}

TEST_P(MapContract, FindsTextsByTheirContent) {
  map->put(test::string("key"), test::integer(1));
  map->put(test::string("key"), test::integer(2));
  EXPECT_EQ(map->getSize(), 1);
  EXPECT_EQ(map->get(test::string("key")).getInt(), 2);
}

TEST_P(MapContract, EmptiesItself) {
  fill(20);
  EXPECT_EQ(map->clear(), 0);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_TRUE(map->get(test::integer(1)).isNil());
  EXPECT_EQ(test::entriesOf(*map.getMap()), "");
  EXPECT_EQ(map->clear(), 0);
}

TEST_P(MapContract, CanBeFilledAgain) {
  fill(20);
  map->clear();
  fill(2);
  EXPECT_EQ(test::sortedEntriesOf(*map.getMap()), "1=10 2=20 ");
}

TEST_P(MapContract, HoldsOneReferenceToEachCell) {
  lvArg const key = test::string("key");
  lvArg const value = test::string("value");
  map->put(key, value);
  map->put(key, value);
  EXPECT_EQ(test::countOf(key), 2);
  EXPECT_EQ(test::countOf(value), 2);
}

TEST_P(MapContract, DropsAReplacedValue) {
  lvArg const value = test::string("value");
  map->put(test::integer(1), value);
  map->put(test::integer(1), test::integer(2));
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_P(MapContract, DropsBothCellsOfARemovedEntry) {
  lvArg const key = test::string("key");
  lvArg const value = test::string("value");
  fill(2);
  map->put(key, value);
  map->put(key, lvArg::NilValue);
  EXPECT_EQ(test::countOf(key), 1);
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_P(MapContract, DropsAllCellsWhenItIsCleared) {
  lvArg const key = test::string("key");
  lvArg const value = test::string("value");
  map->put(key, value);
  map->clear();
  EXPECT_EQ(test::countOf(key), 1);
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_P(MapContract, DropsAllCellsWhenItGoes) {
  lvArg const key = test::string("key");
  lvArg const value = test::string("value");
  map->put(key, value);
  map.setNil();
  EXPECT_EQ(test::countOf(key), 1);
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_P(MapContract, HoldsOtherMaps) {
  lvHashMap const inner(GetParam().make());
  inner->put(test::integer(1), test::integer(2));
  map->put(test::string("inner"), inner);
  EXPECT_EQ(lvHashMap(map->get(test::string("inner")))->get(test::integer(1)).getInt(), 2);
}

TEST_P(MapContract, GivesCopies) {
  map->put(test::integer(1), test::integer(10));
  lvArg copy = map->get(test::integer(1));
  copy.setInt(77);
  EXPECT_EQ(map->get(test::integer(1)).getInt(), 10);
}

TEST_P(MapContract, IsWalkedEntryByEntry) {
  fill(50);
  int met = 0;
  lvMapEnumerator const entry(*map.getMap());
  while (entry->next()) {
    EXPECT_EQ(entry->getValue().getInt(), 10 * entry->getKey().getInt());
    EXPECT_TRUE(map->get(entry->getKey()).eq(entry->getValue()));
    ++met;
  }
  EXPECT_EQ(met, 50);
  EXPECT_TRUE(entry->getKey().isNil());
  EXPECT_TRUE(entry->getValue().isNil());
  EXPECT_FALSE(entry->next());
}

TEST_P(MapContract, GivesCursorsThatStandBeforeTheFirstEntry) {
  fill(3);
  lvMapEnumerator const entry(*map.getMap());
  EXPECT_TRUE(entry->getKey().isNil());
  EXPECT_TRUE(entry->getValue().isNil());
}

TEST_P(MapContract, GivesCursorsThatMoveByThemselves) {
  fill(3);
  lvMapEnumerator const first(*map.getMap());
  first->next();
  first->next();
  EXPECT_EQ(test::sortedEntriesOf(*map.getMap()), "1=10 2=20 3=30 ");
  EXPECT_TRUE(first->next());
  EXPECT_FALSE(first->next());
}

TEST_P(MapContract, IsWalkedByIteratorHandlesToo) {
  fill(5);
  std::string const entries = test::entriesOf(*map.getMap());
  EXPECT_EQ(test::restOf(*lvMapIterator(*map.getMap()).getCursor()), entries);
  EXPECT_EQ(test::restOf(*lvMapRWIterator(*map.getMap()).getCursor()), entries);
}

TEST_P(MapContract, GivesAnIteratorThatWalksAllEntriesIfItHasOne) {
  fill(5);
  std::unique_ptr<lviRealMapIterator> const iterator(map->getIterator());
  ASSERT_EQ(iterator != nullptr, GetParam().hasIterator);
  if (iterator != nullptr) {
    EXPECT_EQ(test::restOf(*iterator), test::entriesOf(*map.getMap()));
  }
}

TEST_P(MapContract, GivesAnIteratorThatChangesAndRemovesItsEntryIfItHasOne) {
  fill(3);
  std::unique_ptr<lviRealMapIterator> const iterator(map->getIterator());
  ASSERT_EQ(iterator != nullptr, GetParam().hasIterator);
  if (iterator == nullptr) {
    return;
  }
  iterator->next();
  lvArg const key = iterator->getKey();
  lvArg const value = iterator->getValue();
  lvArg old;
  EXPECT_EQ(iterator->setValue(test::string("new"), &old), 0);
  EXPECT_TRUE(old.eq(value));
  EXPECT_EQ(test::textOf(map->get(key)), "new");
  EXPECT_EQ(iterator->remove(), 0);
  EXPECT_TRUE(map->get(key).isNil());
  EXPECT_EQ(map->getSize(), 2);
}

TEST_P(MapContract, GivesNoReadWriteIterator) { EXPECT_EQ(map->getRWIterator(), nullptr); }
