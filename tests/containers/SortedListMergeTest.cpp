// addAll() of the sorted list.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/SortedLists.h"

namespace {

using test::addEach;
using test::countOf;
using test::elementsOf;
using test::Held;
using test::integer;
using test::integers;
using test::isRestNil;
using test::OwnSortedList;
using test::SortedArray;
using test::string;
using test::WithDuplicates;
using test::WithoutDuplicates;
using Layout = test::SortedLayout;

// The elements of a list that took in another one, with its promises checked on the way.
std::string merged(lvrSortedArrayList& list, lvrSortedArrayList const& other) {
  std::string const before = elementsOf(other);
  EXPECT_TRUE(list.addAll(other));
  EXPECT_TRUE(isRestNil(list));
  EXPECT_EQ(elementsOf(other), before);
  return elementsOf(list);
}

std::string merged(unsigned duplicates, std::initializer_list<int> list,
                   std::initializer_list<int> other) {
  return merged(*SortedArray(duplicates, list), *SortedArray(WithDuplicates, other));
}

// What holds whether duplicates are kept or not.
class SortedListMerge : public ::testing::TestWithParam<unsigned> {
 protected:
  static std::string mergedOf(std::initializer_list<int> list, std::initializer_list<int> other) {
    return merged(GetParam(), list, other);
  }
};

std::string nameOfDuplicates(testing::TestParamInfo<unsigned> const& info) {
  return info.param == WithDuplicates ? "Kept" : "Replaced";
}

INSTANTIATE_TEST_SUITE_P(Duplicates, SortedListMerge,
                         ::testing::Values(WithDuplicates, WithoutDuplicates), &nameOfDuplicates);

TEST_P(SortedListMerge, PutsTheElementsOfBothInOrder) {
  EXPECT_EQ(mergedOf({1, 3, 5}, {2, 4, 6}), "1 2 3 4 5 6 ");
  EXPECT_EQ(mergedOf({2, 4, 6}, {1, 3, 5}), "1 2 3 4 5 6 ");
  EXPECT_EQ(mergedOf({1, 9}, {2, 3, 4, 5}), "1 2 3 4 5 9 ");
  EXPECT_EQ(mergedOf({2, 3, 4, 5}, {1, 9}), "1 2 3 4 5 9 ");
}

TEST_P(SortedListMerge, PutsOneListBehindTheOther) {
  EXPECT_EQ(mergedOf({1, 2, 3}, {4, 5, 6, 7}), "1 2 3 4 5 6 7 ");
  EXPECT_EQ(mergedOf({4, 5, 6, 7}, {1, 2, 3}), "1 2 3 4 5 6 7 ");
  EXPECT_EQ(mergedOf({1}, {2}), "1 2 ");
  EXPECT_EQ(mergedOf({2}, {1}), "1 2 ");
}

TEST_P(SortedListMerge, OfAnEmptyListLeavesTheListAsItWas) {
  SortedArray const list(GetParam(), {1, 2});
  lvArg const* const array = Layout::array(*list);
  EXPECT_EQ(merged(*list, *SortedArray(WithDuplicates)), "1 2 ");
  EXPECT_EQ(Layout::array(*list), array);
  EXPECT_EQ(Layout::capacity(*list), 8);
}

TEST_P(SortedListMerge, OfTwoEmptyListsAllocatesNothing) {
  SortedArray const list(GetParam());
  EXPECT_EQ(merged(*list, *SortedArray(WithDuplicates)), "");
  EXPECT_EQ(Layout::array(*list), nullptr);
  EXPECT_EQ(Layout::capacity(*list), 0);
}

TEST_P(SortedListMerge, FillsAnEmptyList) {
  SortedArray const list(GetParam());
  EXPECT_EQ(merged(*list, *SortedArray(WithDuplicates, {1, 2, 3})), "1 2 3 ");
  EXPECT_EQ(Layout::capacity(*list), 8);
}

TEST_P(SortedListMerge, GrowsByEightOrStraightToTheSizeThatItNeeds) {
  SortedArray const list(GetParam(), {1, 2, 3, 4, 5});
  EXPECT_EQ(merged(*list, *SortedArray(WithDuplicates, {11, 12, 13})), "1 2 3 4 5 11 12 13 ");
  EXPECT_EQ(Layout::capacity(*list), 8);
  list->addAll(*SortedArray(WithDuplicates, {14}));
  EXPECT_EQ(Layout::capacity(*list), 16);
  SortedArray const more(WithDuplicates);
  for (int i = 0; i < 20; ++i) {
    more->add(integer(100 + i));
  }
  list->addAll(*more);
  EXPECT_EQ(Layout::capacity(*list), 29);
}

TEST_P(SortedListMerge, TakesOneReferenceToWhatItTakesIn) {
  lvArg const mine = string("mine");
  lvArg const theirs = string("theirs");
  {
    Held<lvrSortedArrayList> const list(GetParam());
    list->add(mine);
    {
      Held<lvrSortedArrayList> const other(WithDuplicates);
      other->add(theirs);
      list->addAll(*other);
    }
    EXPECT_EQ(countOf(mine), 2);
    EXPECT_EQ(countOf(theirs), 2);
  }
  EXPECT_EQ(countOf(mine), 1);
  EXPECT_EQ(countOf(theirs), 1);
}

TEST_P(SortedListMerge, OfAListOfAnyClassTakesItsElements) {
  SortedArray const list(GetParam(), {1, 4});
  Held<OwnSortedList> const other(integers({2, 5}));
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_EQ(elementsOf(*list), "1 2 4 5 ");
  EXPECT_EQ(other->cursorsAlive(), 0);
}

TEST_P(SortedListMerge, CountsOnTheOrderOfTheOtherListForTheOrderOnly) {
  SortedArray const list(GetParam(), {1, 4});
  Held<OwnSortedList> const other(integers({9, 2, 5}));
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_EQ(list->getSize(), 5);
  int sum = 0;
  for (int i = 0; i < 5; ++i) {
    sum += list->get(i).getInt();
  }
  EXPECT_EQ(sum, 1 + 4 + 9 + 2 + 5);
}

// --- With duplicates -----------------------------------------------------------------------------

TEST(SortedListMergeWithDuplicates, KeepsThemAll) {
  EXPECT_EQ(merged(WithDuplicates, {1, 5, 9}, {5}), "1 5 5 9 ");
  EXPECT_EQ(merged(WithDuplicates, {5, 5}, {5, 5, 5}), "5 5 5 5 5 ");
  EXPECT_EQ(merged(WithDuplicates, {1, 5, 5, 9}, {1, 5, 9, 9}), "1 1 5 5 5 9 9 9 ");
}

TEST(SortedListMergeWithDuplicates, PutsTheElementOfTheOtherListBehindItsEqual) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  Held<lvrSortedArrayList> const other(WithDuplicates);
  lvArg const mine = string("twin");
  lvArg const theirs = string("twin");
  list->add(mine);
  other->add(theirs);
  list->addAll(*other);
  EXPECT_TRUE(list->get(0).eq(mine));
  EXPECT_TRUE(list->get(1).eq(theirs));
}

TEST(SortedListMergeWithDuplicates, PairsEqualElementsFromTheEnd) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  std::vector<lvArg> const mine = {string("twin"), string("twin")};
  std::vector<lvArg> const theirs = {string("twin"), string("twin"), string("twin")};
  addEach(*list, {mine[1], mine[0]});  // Each goes before the one that is there.
  list->addAll(*Held<OwnSortedList>(theirs));
  ASSERT_EQ(list->getSize(), 5);
  EXPECT_TRUE(list->get(0).eq(theirs[0]));
  EXPECT_TRUE(list->get(1).eq(mine[0]));
  EXPECT_TRUE(list->get(2).eq(theirs[1]));
  EXPECT_TRUE(list->get(3).eq(mine[1]));
  EXPECT_TRUE(list->get(4).eq(theirs[2]));
}

TEST(SortedListMergeWithDuplicates, TakesNilsAsAnyOtherElement) {
  SortedArray const nil(WithDuplicates);
  nil->add(lvArg());
  SortedArray const list(WithDuplicates, {1, 2});
  EXPECT_EQ(merged(*list, *nil), "nil 1 2 ");
  EXPECT_EQ(merged(*list, *nil), "nil nil 1 2 ");
}

TEST(SortedListMergeWithDuplicates, OfTheListToItselfDoublesEveryElement) {
  SortedArray const list(WithDuplicates, {1, 2, 3, 4, 5, 6, 7});
  EXPECT_TRUE(list->addAll(*list));
  EXPECT_EQ(elementsOf(*list), "1 1 2 2 3 3 4 4 5 5 6 6 7 7 ");
  EXPECT_TRUE(isRestNil(*list));
  Held<lvrSortedArrayList> const texts(WithDuplicates);
  lvArg const text = string("text");
  texts->add(text);
  EXPECT_TRUE(texts->addAll(*texts));
  EXPECT_EQ(countOf(text), 3);
}

TEST(SortedListMergeWithDuplicates, OfAnEmptyListToItselfLeavesItEmpty) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates);
    EXPECT_TRUE(list->addAll(*list));
    EXPECT_TRUE(list->isEmpty());
    EXPECT_EQ(Layout::array(*list), nullptr);
  }
}

TEST(SortedListMergeWithDuplicates, OfAListThatClaimsMoreThanItHasPutsNilsInFront) {
  SortedArray const list(WithDuplicates, {1, 2});
  Held<OwnSortedList> const other(integers({5, 6}), 4);
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_EQ(elementsOf(*list), "nil nil 1 2 5 6 ");
  EXPECT_EQ(other->cursorsAlive(), 0);
}

TEST(SortedListMergeWithDuplicates, OfAListThatClaimsLessThanItHasTakesSoMany) {
  SortedArray const list(WithDuplicates, {1, 2});
  EXPECT_TRUE(list->addAll(*Held<OwnSortedList>(integers({5, 6, 7}), 2)));
  EXPECT_EQ(elementsOf(*list), "1 2 5 6 ");
}

TEST(SortedListMergeWithDuplicates, OfAListThatClaimsNoneOrFewerTakesNothing) {
  for (int const size : {0, -2, -2147483647}) {
    SortedArray const list(WithDuplicates, {1, 2});
    EXPECT_TRUE(list->addAll(*Held<OwnSortedList>(integers({5, 6}), size)));
    EXPECT_EQ(elementsOf(*list), "1 2 ");
  }
}

// --- Without duplicates --------------------------------------------------------------------------

TEST(SortedListMergeWithoutDuplicates, TakesEachElementOnce) {
  EXPECT_EQ(merged(WithoutDuplicates, {1, 5, 9}, {5}), "1 5 9 ");
  EXPECT_EQ(merged(WithoutDuplicates, {1, 5, 9}, {1, 5, 9}), "1 5 9 ");
  EXPECT_EQ(merged(WithoutDuplicates, {1, 5, 9}, {0, 1, 2, 9, 10}), "0 1 2 5 9 10 ");
}

TEST(SortedListMergeWithoutDuplicates, CountsARunOfEqualElementsOnce) {
  EXPECT_EQ(merged(WithoutDuplicates, {}, {5, 5, 5}), "5 ");
  EXPECT_EQ(merged(WithoutDuplicates, {1, 9}, {5, 5, 5}), "1 5 9 ");
  EXPECT_EQ(merged(WithoutDuplicates, {1, 5, 9}, {1, 1, 5, 5, 5, 7, 7, 9, 9}), "1 5 7 9 ");
}

TEST(SortedListMergeWithoutDuplicates, DoesNotGrowForElementsThatAreThere) {
  SortedArray const list(WithoutDuplicates, {1, 2, 3, 4, 5, 6, 7, 8});
  merged(*list, *SortedArray(WithDuplicates, {1, 1, 4, 8, 8}));
  EXPECT_EQ(list->getSize(), 8);
  EXPECT_EQ(Layout::capacity(*list), 8);
}

TEST(SortedListMergeWithoutDuplicates, ReplacesAnElementByItsEqual) {
  Held<lvrSortedArrayList> const list(WithoutDuplicates);
  lvArg const mine = string("twin");
  std::vector<lvArg> const theirs = {string("twin"), string("twin")};
  addEach(*list, {mine, integer(1), string("zebra")});
  list->addAll(*Held<OwnSortedList>(theirs));
  EXPECT_EQ(elementsOf(*list), "1 'twin' 'zebra' ");
  EXPECT_TRUE(list->get(1).eq(theirs[1]));
  EXPECT_EQ(countOf(mine), 1);
  EXPECT_EQ(countOf(theirs[0]), 1);
  EXPECT_EQ(countOf(theirs[1]), 2);
}

TEST(SortedListMergeWithoutDuplicates, ReplacesWhereItMovesThingsToo) {
  Held<lvrSortedArrayList> const list(WithoutDuplicates);
  std::vector<lvArg> const mine = {string("b"), string("d"), string("f")};
  std::vector<lvArg> const theirs = {string("a"), string("b"), string("c"), string("d"),
                                     string("g")};
  addEach(*list, mine);
  list->addAll(*Held<OwnSortedList>(theirs));
  EXPECT_EQ(elementsOf(*list), "'a' 'b' 'c' 'd' 'f' 'g' ");
  EXPECT_TRUE(list->get(1).eq(theirs[1]));
  EXPECT_TRUE(list->get(3).eq(theirs[3]));
  EXPECT_EQ(countOf(mine[0]), 1);
  EXPECT_EQ(countOf(mine[1]), 1);
  EXPECT_EQ(countOf(mine[2]), 2);
}

// The nil that add() left hides the first element from the search for its equal.
TEST(SortedListMergeWithoutDuplicates, ReplacesTheLastOfEqualElements) {
  SortedArray const list(WithoutDuplicates);
  lvArg const first = string("b");
  lvArg const last = string("b");
  list->add(first);
  list->add(first);
  ASSERT_EQ(elementsOf(*list), "'b' nil ");
  list->add(last);
  list->removeEntry(1);
  ASSERT_EQ(elementsOf(*list), "'b' 'b' ");

  SortedArray const other(WithDuplicates);
  lvArg const theirs = string("b");
  other->add(theirs);
  EXPECT_EQ(merged(*list, *other), "'b' 'b' ");
  EXPECT_TRUE(list->get(0).eq(first));
  EXPECT_TRUE(list->get(1).eq(theirs));
  EXPECT_EQ(countOf(last), 1);
}

TEST(SortedListMergeWithoutDuplicates, OfTheListToItselfChangesNothing) {
  Held<lvrSortedArrayList> const list(WithoutDuplicates);
  lvArg const text = string("text");
  addEach(*list, {integer(1), text});
  EXPECT_TRUE(list->addAll(*list));
  EXPECT_EQ(elementsOf(*list), "1 'text' ");
  EXPECT_TRUE(list->get(1).eq(text));
  EXPECT_EQ(countOf(text), 2);
}

TEST(SortedListMergeWithoutDuplicates, StopsAtANilOfTheOtherList) {
  SortedArray const list(WithoutDuplicates, {1, 5});
  Held<OwnSortedList> const other(std::vector<lvArg>{integer(3), integer(5), lvArg(), integer(9)});
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_EQ(elementsOf(*list), "1 3 5 ");
  EXPECT_EQ(merged(*list, *SortedArray(WithoutDuplicates, {7, 7})), "1 3 5 7 ");
}

TEST(SortedListMergeWithoutDuplicates, TakesNothingBehindALeadingNil) {
  SortedArray const list(WithoutDuplicates, {1, 5});
  SortedArray const other(WithDuplicates);
  addEach(*other, {lvArg(), integer(3)});
  EXPECT_EQ(merged(*list, *other), "1 5 ");
}

TEST(SortedListMergeWithoutDuplicates, GoesByTheCursorOfTheOtherListNotItsSize) {
  for (int const size : {0, 1, 3, 100, 2147483647}) {
    SortedArray const list(WithoutDuplicates, {1, 5});
    Held<OwnSortedList> const other(integers({3, 5, 7}), size);
    EXPECT_TRUE(list->addAll(*other));
    EXPECT_EQ(elementsOf(*list), "1 3 5 7 ") << size;
    EXPECT_EQ(Layout::capacity(*list), 8);
    EXPECT_EQ(other->cursorsAlive(), 0);
  }
}

TEST(SortedListMergeWithoutDuplicates, KeepsANilAtTheEndOfTheList) {
  SortedArray const list(WithoutDuplicates, {1, 5, 5});
  EXPECT_EQ(elementsOf(*list), "1 5 nil ");
  EXPECT_EQ(merged(*list, *SortedArray(WithDuplicates, {7, 9})), "1 5 nil 7 9 ");
}

}  // namespace
