// What looks like a mistake in the linked list, and is not.

#include <gtest/gtest.h>

#include <memory>

#include "support/Cells.h"
#include "support/Nodes.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

using test::append;
using test::countOf;
using test::forward;
using test::integer;
using test::LinkedList;
using test::string;

// --- Searching -----------------------------------------------------------------------------------

// A list of 1 2 1, and searches that start at its head first.
class LinkedListOddities : public ::testing::Test {
 protected:
  LinkedListOddities() { test::startSearchesAtTheHead(); }

  int positionOfOne() const { return list->getElementPos(integer(1)); }

  LinkedList list{1, 2, 1};
};

TEST_F(LinkedListOddities, SearchesFindTheFirstAndTheLastOfEqualElementsInTurn) {
  EXPECT_EQ(positionOfOne(), 0);
  EXPECT_EQ(positionOfOne(), 2);
  EXPECT_EQ(positionOfOne(), 0);
  EXPECT_EQ(positionOfOne(), 2);
}

TEST_F(LinkedListOddities, RemovalByValueTakesItsTurnToo) {
  append(*list, {3, 1});
  EXPECT_EQ(list->remove(integer(1)), 0);
  EXPECT_EQ(forward(*list), "2 1 3 1 ");
  EXPECT_EQ(list->remove(integer(1)), 0);
  EXPECT_EQ(forward(*list), "2 1 3 ");
}

TEST_F(LinkedListOddities, RemovalAndQueryTakeTurnsWithEachOther) {
  EXPECT_EQ(positionOfOne(), 0);
  list->remove(integer(1));
  EXPECT_EQ(forward(*list), "1 2 ");
  append(*list, {1});
  EXPECT_EQ(positionOfOne(), 0);
}

TEST_F(LinkedListOddities, ASearchThatFindsNothingTakesATurn) {
  EXPECT_EQ(list->getElementPos(integer(9)), -1);
  EXPECT_EQ(positionOfOne(), 2);
  EXPECT_EQ(list->remove(integer(9)), -1);
  EXPECT_EQ(positionOfOne(), 2);
}

TEST_F(LinkedListOddities, ASearchOfAnEmptyListTakesATurn) {
  EXPECT_EQ(LinkedList()->getElementPos(integer(1)), -1);
  EXPECT_EQ(positionOfOne(), 2);
  EXPECT_EQ(LinkedList()->remove(integer(1)), -1);
  EXPECT_EQ(positionOfOne(), 2);
}

TEST_F(LinkedListOddities, AllListsOfTheProcessTakeTurns) {
  LinkedList const other{1, 1};
  EXPECT_EQ(positionOfOne(), 0);
  EXPECT_EQ(other->getElementPos(integer(1)), 1);
  EXPECT_EQ(positionOfOne(), 0);
}

TEST_F(LinkedListOddities, NothingElseTakesATurn) {
  list->at(1);
  list->insert(integer(1), -1);
  list->remove(-1);
  list->merge(*LinkedList{1, 2});
  std::unique_ptr<lviRealListIterator> const cursor(list->getListIterator());
  cursor->gotoIndex(4);
  cursor->remove();
  LinkedList { 1, 1 } -> clear();
  EXPECT_EQ(positionOfOne(), 0);
}

TEST_F(LinkedListOddities, TextsAreToldApartByTheirObjects) {
  lvArg const text = string("text");
  list->insert(text, 0);
  EXPECT_EQ(list->getElementPos(string("text")), -1);
  EXPECT_EQ(list->remove(string("text")), -1);
  EXPECT_EQ(list->getElementPos(text), 0);
}

// --- Positions -----------------------------------------------------------------------------------

TEST_F(LinkedListOddities, MinusOneAppendsButIsTheLastElementEverywhereElse) {
  EXPECT_TRUE(list->insert(integer(7), -1));
  EXPECT_EQ(list->at(-1).getInt(), 7);
  EXPECT_TRUE(list->insert(integer(6), -2));
  EXPECT_EQ(list->at(-2).getInt(), 6);
  EXPECT_EQ(list->remove(-1).getInt(), 7);
  EXPECT_EQ(forward(*list), "1 2 1 6 ");
}

TEST_F(LinkedListOddities, TheFirstGapIsOneFurtherFromTheEndThanTheFirstElement) {
  EXPECT_TRUE(list->at(-4).isNil());
  EXPECT_TRUE(list->remove(-4).isNil());
  EXPECT_TRUE(list->insert(integer(7), -4));
  EXPECT_EQ(forward(*list), "7 1 2 1 ");
}

TEST_F(LinkedListOddities, ARemovalByValueAnswersZeroWhereAVectorAnswersOne) {
  lvVector const vector(1);
  append(*vector.getList(), {1});
  EXPECT_EQ(list->remove(integer(1)), 0);
  EXPECT_EQ(vector->remove(integer(1)), 1);
  EXPECT_EQ(list->remove(integer(9)), -1);
  EXPECT_EQ(vector->remove(integer(9)), 0);
}

// --- Merging, and the end ------------------------------------------------------------------------

TEST_F(LinkedListOddities, MergingAnEmptyListFailsThoughNothingIsWrong) {
  EXPECT_FALSE(list->merge(*LinkedList()));
  EXPECT_FALSE(list->merge(*lvVector(7).getList()));
  EXPECT_EQ(forward(*list), "1 2 1 ");
  LinkedList const empty;
  EXPECT_FALSE(empty->merge(*empty));
  EXPECT_EQ(empty->getSize(), 0);
}

TEST_F(LinkedListOddities, FinalizeLeavesTheElementsToTheDestructor) {
  lvArg const value = string("value");
  list->insert(value, -1);
  EXPECT_EQ(list->finalize(), 0);
  EXPECT_EQ(list->getSize(), 4);
  EXPECT_EQ(countOf(value), 2);
  list.cell().setNil();
  EXPECT_EQ(countOf(value), 1);
}

// --- Cursors -------------------------------------------------------------------------------------

// A read-write cursor over 1 to 4.
class LinkedListCursorOddities : public ::testing::Test {
 protected:
  void expectOn(int index, int value) const {
    EXPECT_EQ(cursor->getIndex(), index);
    EXPECT_EQ(cursor->getValue().getInt(), value);
  }

  LinkedList list{1, 2, 3, 4};
  std::unique_ptr<lviRealListRWIterator> cursor{list->getListRWIterator()};
};

TEST_F(LinkedListCursorOddities, AJumpToMinusOneStandsOnTheLastElementAndIsFollowedByTheFirst) {
  EXPECT_TRUE(cursor->gotoIndex(-1));
  expectOn(-1, 4);
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(0, 1);
}

TEST_F(LinkedListCursorOddities, AJumpToMinusTwoIsFollowedByMinusOneAndThenByTheFirst) {
  EXPECT_TRUE(cursor->gotoIndex(-2));
  expectOn(-2, 3);
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(-1, 4);
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(0, 1);
}

TEST_F(LinkedListCursorOddities, StepsBackFromANegativePositionGoOnCountingDown) {
  EXPECT_TRUE(cursor->gotoIndex(-1));
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(-2, 3);
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(-3, 2);
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(-4, 1);
  EXPECT_FALSE(cursor->gotoPrevious());
  EXPECT_EQ(cursor->getIndex(), -1);
  EXPECT_TRUE(cursor->getValue().isNil());
}

TEST_F(LinkedListCursorOddities, AtANegativePositionNothingIsRemovedOrInserted) {
  EXPECT_TRUE(cursor->gotoIndex(-2));
  EXPECT_FALSE(cursor->remove());
  EXPECT_FALSE(cursor->insert(integer(7)));
  expectOn(-2, 3);
  EXPECT_EQ(forward(*list), "1 2 3 4 ");
}

TEST_F(LinkedListCursorOddities, ANilElementIsRemovedThoughTheAnswerIsFalse) {
  list->insert(lvArg(), 1);
  cursor->gotoIndex(1);
  EXPECT_FALSE(cursor->remove());
  EXPECT_EQ(forward(*list), "1 2 3 4 ");
  expectOn(1, 2);
}

TEST_F(LinkedListCursorOddities, ANilElementRemovedFromTheEndLeavesTheCursorBehindTheLast) {
  list->insert(lvArg(), -1);
  cursor->gotoIndex(4);
  EXPECT_FALSE(cursor->remove());
  EXPECT_EQ(list->getSize(), 4);
  EXPECT_EQ(cursor->getIndex(), 4);
  EXPECT_TRUE(cursor->getValue().isNil());
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(3, 4);
}

TEST_F(LinkedListCursorOddities, BehindTheLastAStepBackMissesWhatWasAppended) {
  cursor->gotoIndex(3);
  cursor->gotoNext();
  append(*list, {5, 6});
  EXPECT_FALSE(cursor->gotoPrevious());
  EXPECT_EQ(cursor->getIndex(), -1);
}

TEST_F(LinkedListCursorOddities, BehindTheLastAStepGoesBehindWhatWasAppended) {
  cursor->gotoIndex(3);
  cursor->gotoNext();
  append(*list, {5, 6});
  EXPECT_FALSE(cursor->gotoNext());
  EXPECT_EQ(cursor->getIndex(), 6);
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(5, 6);
}

}  // namespace
