// What the linked list allocates, and what becomes of it when memory runs out.

#include <gtest/gtest.h>

#include <memory>
#include <new>

#include "support/Allocations.h"
#include "support/Cells.h"
#include "support/Nodes.h"

namespace {

using test::Allocations;
using test::append;
using test::countOf;
using test::forward;
using test::integer;
using test::LinkedList;
using test::string;

// Whether `action` ends with std::bad_alloc when no more than `after` allocations succeed.
template <class Action>
bool runsOutOfMemory(Action const& action, int after = 0) {
  bool thrown = false;
  Allocations::instance().failAfter = after;
  try {
    action();
  } catch (std::bad_alloc const&) {
    thrown = true;
  }
  Allocations::instance().failAfter = -1;
  return thrown;
}

class LinkedListMemory : public ::testing::Test {
 protected:
  void SetUp() override { Allocations::reset(); }

  static void expectMadeAndAlive(int made, int alive) {
    EXPECT_EQ(Allocations::instance().made, made);
    EXPECT_EQ(Allocations::instance().alive(), alive);
  }
  void expectUnchanged() const {
    EXPECT_EQ(list->getSize(), 3);
    EXPECT_EQ(forward(*list), "1 2 3 ");
    EXPECT_EQ(test::backward(*list), "3 2 1 ");
    EXPECT_EQ(countOf(*list), 1);
  }

  LinkedList list{1, 2, 3};
};

// --- What is allocated ---------------------------------------------------------------------------

TEST_F(LinkedListMemory, IsOneBlockForTheListAndOneForEachElement) {
  {
    LinkedList const other;
    expectMadeAndAlive(1, 1);
    append(*other, {1, 2});
    expectMadeAndAlive(3, 3);
  }
  expectMadeAndAlive(3, 0);
}

TEST_F(LinkedListMemory, IsNotTouchedByReadingAndByWhatIsRefused) {
  list->at(1);
  list->at(-7);
  list->getElementPos(integer(2));
  list->remove(integer(9));
  list->remove(3);
  list->insert(integer(9), 5);
  expectMadeAndAlive(0, 0);
}

TEST_F(LinkedListMemory, OfAMergeIsOneBlockForEachElementAndACursorThatGoes) {
  list->merge(*list);
  expectMadeAndAlive(4, 3);
}

TEST_F(LinkedListMemory, OfAnElementIsFreedWhenItIsRemoved) {
  list->remove(0);
  expectMadeAndAlive(0, -1);
  list->remove(integer(3));
  expectMadeAndAlive(0, -2);
  list->clear();
  expectMadeAndAlive(0, -3);
}

TEST_F(LinkedListMemory, OfACursorIsOneBlockAndFreedWithIt) {
  for (int kind = 0; kind < 3; ++kind) {
    Allocations::reset();
    std::unique_ptr<lviRealListEnumerator> const cursor(kind == 0   ? list->getListEnumerator()
                                                        : kind == 1 ? list->getListIterator()
                                                                    : list->getListRWIterator());
    cursor->gotoIndex(1);
    expectMadeAndAlive(1, 1);
  }
  expectMadeAndAlive(1, 0);
}

TEST_F(LinkedListMemory, OfAnElementUnderCursorsIsFreedWhenTheLastOfThemMovesOn) {
  lvrDLList::IteratorLogic first(*list);
  lvrDLList::IteratorLogic second(*list);
  first.gotoIndex(1);
  second.gotoIndex(1);
  list->remove(1);
  expectMadeAndAlive(0, 0);
  first.gotoNext();
  expectMadeAndAlive(0, 0);
  second.getValue();
  expectMadeAndAlive(0, -1);
}

TEST_F(LinkedListMemory, OfAnElementUnderACursorIsFreedWhenTheCursorGoes) {
  {
    lvrDLList::IteratorLogic cursor(*list);
    cursor.gotoIndex(1);
    list->clear();
    expectMadeAndAlive(0, -2);
  }
  expectMadeAndAlive(0, -3);
}

TEST_F(LinkedListMemory, OfAnElementThatItsCursorRemovesIsFreedAtOnce) {
  lvrDLList::IteratorLogic cursor(*list);
  cursor.gotoIndex(1);
  EXPECT_TRUE(cursor.remove());
  expectMadeAndAlive(0, -1);
  EXPECT_TRUE(cursor.remove());
  expectMadeAndAlive(0, -2);
}

// --- When it runs out ----------------------------------------------------------------------------

TEST_F(LinkedListMemory, MissingForAnElementLeavesTheListAsItWas) {
  lvArg const value = string("value");
  for (int const index : {0, 1, 3, -1, -3}) {
    EXPECT_TRUE(runsOutOfMemory([&] { list->insert(value, index); }));
    expectUnchanged();
  }
  EXPECT_EQ(countOf(value), 1);
  EXPECT_TRUE(list->insert(value, 1));
  EXPECT_EQ(forward(*list), "1 'value' 2 3 ");
}

TEST_F(LinkedListMemory, MissingForTheFirstElementLeavesAnEmptyList) {
  list->clear();
  EXPECT_TRUE(runsOutOfMemory([this] { append(*list, {1}); }));
  EXPECT_EQ(list->getSize(), 0);
  EXPECT_EQ(test::ListLayout::head(*list), nullptr);
  EXPECT_EQ(test::ListLayout::tail(*list), nullptr);
}

TEST_F(LinkedListMemory, IsNotNeededForAnInsertThatIsRefused) {
  EXPECT_FALSE(runsOutOfMemory([this] { EXPECT_FALSE(list->insert(integer(9), 4)); }));
  EXPECT_FALSE(runsOutOfMemory([this] { EXPECT_FALSE(list->insert(integer(9), -5)); }));
}

TEST_F(LinkedListMemory, IsNotNeededForRemoval) {
  lvrDLList::IteratorLogic cursor(*list);
  cursor.gotoIndex(0);
  EXPECT_FALSE(runsOutOfMemory([&] {
    EXPECT_TRUE(cursor.remove());
    EXPECT_EQ(list->remove(-1).getInt(), 3);
    EXPECT_EQ(list->remove(integer(2)), 0);
    EXPECT_TRUE(list->clear());
  }));
}

TEST_F(LinkedListMemory, MissingForACursorTakesNoReference) {
  EXPECT_TRUE(runsOutOfMemory([this] { delete list->getListEnumerator(); }));
  EXPECT_TRUE(runsOutOfMemory([this] { delete list->getListIterator(); }));
  EXPECT_TRUE(runsOutOfMemory([this] { delete list->getListRWIterator(); }));
  expectUnchanged();
}

TEST_F(LinkedListMemory, MissingForTheCursorOfAMergeLeavesTheListAsItWas) {
  LinkedList const other{7, 8};
  EXPECT_TRUE(runsOutOfMemory([&] { list->merge(*other); }));
  expectUnchanged();
  EXPECT_EQ(countOf(*other), 1);
}

TEST_F(LinkedListMemory, MissingInTheMiddleOfAMergeLeavesAWholeListWithWhatWasAppended) {
  LinkedList const other{7, 8, 9};
  EXPECT_TRUE(runsOutOfMemory([&] { list->merge(*other); }, 3));
  EXPECT_EQ(list->getSize(), 5);
  EXPECT_EQ(forward(*list), "1 2 3 7 8 ");
  EXPECT_EQ(test::backward(*list), "8 7 3 2 1 ");
  EXPECT_EQ(countOf(*other), 1);
}

TEST_F(LinkedListMemory, MissingForAnElementLeavesTheCursorWhereItWas) {
  lvrDLList::IteratorLogic cursor(*list);
  cursor.gotoIndex(1);
  EXPECT_TRUE(runsOutOfMemory([&] { cursor.insert(integer(9)); }));
  EXPECT_EQ(cursor.getIndex(), 1);
  EXPECT_EQ(cursor.getValue().getInt(), 2);
  EXPECT_EQ(forward(*list), "1 2 3 ");
}

TEST_F(LinkedListMemory, MissingForAListIsReported) {
  EXPECT_TRUE(runsOutOfMemory([] { lvrDLList::defaultCtorMethod(); }));
  expectMadeAndAlive(0, 0);
}

}  // namespace
