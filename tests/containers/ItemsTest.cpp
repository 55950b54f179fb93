// lvItems and lvEntries: containers in for loops.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/Objects.h"
#include "support/SortedLists.h"
#include "support/UnusualObjects.h"
#include "support/ValueTrees.h"
#include "tarselvalues/containers/lvEntries.h"
#include "tarselvalues/containers/lvItems.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"

namespace {

using test::brief;
using test::countOf;
using test::Held;
using test::integer;
using test::mapOf;
using test::string;
using test::vectorOf;

std::string items(lvArg const& list) {
  std::string text;
  for (lvArg const& item : lvItems(list)) {
    text += brief(item) + " ";
  }
  return text;
}

std::string entries(lvArg const& map) {
  std::string text;
  for (auto const& [key, value] : lvEntries(map)) {
    text += brief(key) + "=" + brief(value) + " ";
  }
  return text;
}

// ---- Lists -------------------------------------------------------------------------------------

TEST(Items, AreThoseOfAVectorInTheirOrder) {
  EXPECT_EQ(items(vectorOf({integer(1), lvArg(), string("a")})), "1 nil 'a' ");
  EXPECT_EQ(items(vectorOf({})), "");
}

TEST(Items, AreThoseOfALinkedList) {
  Held<lvrDLList> list;
  list->insert(integer(1), -1);
  list->insert(integer(2), -1);
  EXPECT_EQ(items(list.cell()), "1 2 ");
}

TEST(Items, AreThoseOfASortedListInItsOrder) {
  test::SortedArray list(test::WithDuplicates, {3, 1, 2});
  EXPECT_EQ(items(list.cell()), "1 2 3 ");
}

TEST(Items, WhatIsNoListHasNone) {
  EXPECT_EQ(items(lvArg()), "");
  EXPECT_EQ(items(integer(5)), "");
  EXPECT_EQ(items(mapOf({{integer(1), integer(2)}})), "");
  EXPECT_EQ(items(test::newListLike()), "");
  EXPECT_EQ(items(test::newPlainObject()), "");
}

TEST(Items, OfATemporaryListAreThereWhileTheLoopRuns) {
  std::string text;
  for (lvArg const& item : lvItems(vectorOf({string("a"), string("b")}))) {
    text += brief(item);
  }
  EXPECT_EQ(text, "'a''b'");
}

TEST(Items, ALoopMayBeLeftAtAnyPlace) {
  lvArg const list = vectorOf({integer(1), integer(2), integer(3)});
  int last = 0;
  for (lvArg const& item : lvItems(list)) {
    last = item.getInt();
    if (last == 2) {
      break;
    }
  }
  EXPECT_EQ(last, 2);
  EXPECT_EQ(countOf(list), 1);
}

TEST(Items, AnExceptionInALoopReleasesTheList) {
  lvArg const list = vectorOf({string("a")});
  EXPECT_THROW(
      for (lvArg const& item
           : lvItems(list)) { throw std::runtime_error(brief(item)); },
      std::runtime_error);
  EXPECT_EQ(countOf(list), 1);
}

TEST(Items, ALoopMayDropTheLastOtherReferenceToItsList) {
  lvArg list = vectorOf({string("a"), string("b")});
  std::string text;
  for (lvArg const& item : lvItems(list)) {
    list.setNil();
    text += brief(item);
  }
  EXPECT_EQ(text, "'a''b'");
}

TEST(Items, ALoopWhoseListIsEmptiedEnds) {
  lvVector list(vectorOf({string("a"), string("b")}));
  std::string text;
  for (lvArg const& item : lvItems(list)) {
    text += brief(item);
    list->clear();
  }
  EXPECT_EQ(text, "'a'");
  test::SortedArray sorted(test::WithDuplicates, {1, 2});
  for (lvArg const& item : lvItems(sorted.cell())) {
    text += brief(item);
    sorted->clear();
  }
  EXPECT_EQ(text, "'a'1");
}

TEST(Items, ARangeMayBeWalkedTwice) {
  lvItems const range(vectorOf({integer(1), integer(2)}));
  int sum = 0;
  for (lvArg const& first : range) {
    for (lvArg const& second : range) {
      sum += first.getInt() * second.getInt();
    }
  }
  EXPECT_EQ(sum, 9);
}

// ---- Maps --------------------------------------------------------------------------------------

TEST(Entries, AreThoseOfASetOfTuplesInTheOrderOfItsKeys) {
  Held<lvrTupleSet> map(2, 2U, 0U);
  map->put(integer(2), string("b"));
  map->put(integer(1), string("a"));
  EXPECT_EQ(entries(map.cell()), "1='a' 2='b' ");
}

TEST(Entries, AreThoseOfAHashMapEachOnce) {
  lvHashMap map(3);
  for (int i = 0; i < 50; ++i) {
    map->put(integer(i), integer(i * i));
  }
  int count = 0;
  int sum = 0;
  for (auto const& [key, value] : lvEntries(map)) {
    EXPECT_EQ(value.getInt(), key.getInt() * key.getInt());
    sum += key.getInt();
    ++count;
  }
  EXPECT_EQ(count, 50);
  EXPECT_EQ(sum, 49 * 50 / 2);
}

TEST(Entries, AreThoseOfAMapOfTheProgram) {
  EXPECT_EQ(entries(*new test::PairMap({{integer(1), lvArg()}, {lvArg(), integer(2)}})),
            "1=nil nil=2 ");
}

TEST(Entries, WhatIsNoMapHasNone) {
  EXPECT_EQ(entries(lvArg()), "");
  EXPECT_EQ(entries(vectorOf({integer(1)})), "");
  EXPECT_EQ(entries(test::newStackLike()), "");
}

TEST(Entries, AStackHasNone) {
  Held<lvrStack> stack(4);
  stack->push(integer(1));
  EXPECT_EQ(entries(stack.cell()), "");
}

TEST(Entries, OfATemporaryMapAreThereWhileTheLoopRuns) {
  std::string text;
  for (auto const& [key, value] : lvEntries(mapOf({{string("k"), string("v")}}))) {
    text += brief(key) + brief(value);
  }
  EXPECT_EQ(text, "'k''v'");
}

TEST(Entries, ALoopMayBeLeftAtAnyPlace) {
  lvArg const map = mapOf({{integer(1), string("a")}, {integer(2), string("b")}});
  for (auto const& [key, value] : lvEntries(map)) {
    EXPECT_FALSE(key.isNil() || value.isNil());
    break;
  }
  EXPECT_EQ(countOf(map), 1);
}

TEST(Entries, AnExceptionInALoopReleasesTheMap) {
  lvArg const map = mapOf({{integer(1), string("a")}});
  auto const loop = [&] {
    for (auto const& [key, value] : lvEntries(map)) {
      throw std::runtime_error(brief(key) + brief(value));
    }
  };
  EXPECT_THROW(loop(), std::runtime_error);
  EXPECT_EQ(countOf(map), 1);
}

TEST(Entries, ALoopMayDropTheLastOtherReferenceToItsMapAndEmptyIt) {
  lvHashMap map(mapOf({{integer(1), string("a")}, {integer(2), string("b")}}));
  int count = 0;
  for (auto const& [key, value] : lvEntries(map)) {
    EXPECT_EQ(brief(value), key.getInt() == 1 ? "'a'" : "'b'");
    map->clear();
    ++count;
  }
  EXPECT_EQ(count, 1);
  map = mapOf({{integer(1), string("a")}, {integer(2), string("b")}});
  for (auto const& [key, value] : lvEntries(map)) {
    map.setNil();
    EXPECT_EQ(brief(value), key.getInt() == 1 ? "'a'" : "'b'");
    ++count;
  }
  EXPECT_EQ(count, 3);
}

}  // namespace
