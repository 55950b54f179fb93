// Linked lists that are changed by cursors which stand where their index says, and by others.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/Cells.h"
#include "support/Nodes.h"
#include "support/Objects.h"

namespace {

using test::acting;
using test::append;
using test::backward;
using test::forward;
using test::integer;
using test::LinkedList;
using RWIterator = std::unique_ptr<lviRealListRWIterator>;

// After so many changes of a list their number is the same again.
constexpr int Round = 65536;

// Changes the list so many times, without effect; an even number.
void changeInVain(lvrDLList& list, int times) {
  for (int i = 0; i < times; i += 2) {
    list.insert(integer(0), -1);
    list.remove(-1);
  }
}

RWIterator cursorAt(lvrDLList& list, int index) {
  RWIterator cursor(list.getListRWIterator());
  cursor->gotoIndex(index);
  return cursor;
}

// A list of 1 to 5, and a cursor on the 3.
class LinkedListPlaces : public ::testing::Test {
 protected:
  void expectElements(std::string const& elements) const {
    EXPECT_EQ(forward(*list), elements);
    std::string reversed;
    for (char const digit : elements) {
      reversed = digit == ' ' ? reversed : std::string(1, digit) + " " + reversed;
    }
    EXPECT_EQ(backward(*list), reversed);
    EXPECT_EQ(list->getSize(), static_cast<int>(elements.size()) / 2);
  }

  LinkedList list{1, 2, 3, 4, 5};
  RWIterator cursor = cursorAt(*list, 2);
};

TEST_F(LinkedListPlaces, AreTheElementsOwnWhileOnlyTheCursorChangesTheList) {
  EXPECT_TRUE(cursor->remove());
  EXPECT_TRUE(cursor->insert(integer(7)));
  EXPECT_TRUE(cursor->gotoPrevious());
  EXPECT_TRUE(cursor->insert(integer(8)));
  expectElements("1 2 8 7 4 5 ");
  EXPECT_EQ(cursor->getIndex(), 3);
  EXPECT_EQ(cursor->getValue().getInt(), 7);
}

TEST_F(LinkedListPlaces, AreThoseOfTheIndexOnceOthersHaveChangedTheList) {
  list->insert(integer(6), 0);
  EXPECT_TRUE(cursor->remove());
  expectElements("6 1 3 4 5 ");
  EXPECT_EQ(cursor->getValue().getInt(), 4);
  EXPECT_TRUE(cursor->insert(integer(7)));
  expectElements("6 1 7 3 4 5 ");
}

TEST_F(LinkedListPlaces, AreThoseOfTheIndexForEachOfTwoCursorsThatChangeTheList) {
  RWIterator const other = cursorAt(*list, 1);
  EXPECT_TRUE(other->remove());
  EXPECT_TRUE(cursor->remove());  // Index 2, where the 4 is by now.
  expectElements("1 3 5 ");
  EXPECT_EQ(cursor->getValue().getInt(), 5);  // Which followed the 4, on which it stood next.
  EXPECT_EQ(other->getValue().getInt(), 3);
}

TEST_F(LinkedListPlaces, AreThoseOfTheIndexThoughTheNumberOfChangesIsTheSameAgain) {
  for (int rounds = 1; rounds < 3; ++rounds) {
    LinkedList const changed{1, 2, 3, 4, 5};
    RWIterator const asleep = cursorAt(*changed, 2);
    changed->insert(integer(6), 0);
    changed->remove(-1);
    changeInVain(*changed, rounds * Round - 2);
    EXPECT_TRUE(asleep->remove());
    EXPECT_EQ(forward(*changed), "6 1 3 4 ");
  }
}

TEST_F(LinkedListPlaces, AreThoseOfTheIndexForAllWhoSleepOnAnElement) {
  RWIterator const other = cursorAt(*list, 2);
  list->insert(integer(6), 0);
  list->remove(-1);
  changeInVain(*list, Round - 2);
  cursor->gotoIndex(2);  // The 2, and the 3 has one cursor less.
  EXPECT_TRUE(other->remove());
  expectElements("6 1 3 4 ");
}

// The list has had five changes when the cursors are made, and has had as many when the other acts.
TEST_F(LinkedListPlaces, AreThoseOfTheIndexForOneCursorThoughAnotherActsOnTheSameElement) {
  RWIterator const other = cursorAt(*list, 2);
  changeInVain(*list, Round - 4);
  EXPECT_TRUE(cursor->insert(integer(7)));
  changeInVain(*list, 2);
  list->insert(integer(6), -1);
  EXPECT_TRUE(other->remove());
  expectElements("1 2 3 4 5 6 ");
}

TEST_F(LinkedListPlaces, AreTheElementsOwnAgainAfterAJump) {
  changeInVain(*list, Round);
  cursor->gotoIndex(2);
  EXPECT_TRUE(cursor->insert(integer(7)));
  EXPECT_TRUE(cursor->remove());
  expectElements("1 2 7 4 5 ");
}

TEST_F(LinkedListPlaces, StayWhereTheyAreWhenManyAreInsertedBeforeOneElement) {
  constexpr int many = Round + 1000;
  for (int i = 0; i < many; ++i) {
    ASSERT_TRUE(cursor->insert(integer(i)));
  }
  EXPECT_EQ(cursor->getIndex(), many + 2);
  EXPECT_EQ(cursor->getValue().getInt(), 3);
  EXPECT_EQ(list->getSize(), many + 5);
  EXPECT_EQ(list->at(2).getInt(), 0);
  EXPECT_EQ(list->at(many + 1).getInt(), many - 1);
  while (cursor->gotoPrevious() && cursor->getIndex() > 1) {
    ASSERT_TRUE(cursor->remove());
  }
  expectElements("1 2 3 4 5 ");
}

// While the list is cleared, what its first element does decides how often it has been changed when
// a cursor comes to act that sleeps on an element behind.
TEST(LinkedListPlacesInClear, AreThoseOfTheNewElements) {
  for (int changes = Round - 8; changes <= Round + 8; changes += 2) {
    LinkedList const list;
    RWIterator cursor;
    list->insert(acting([&] {
                   changeInVain(*list, changes);
                   append(*list, {6, 7, 8, 9});
                   EXPECT_TRUE(cursor->remove());
                 }),
                 0);
    append(*list, {1, 2, 3});
    cursor = cursorAt(*list, 1);
    list->clear();
    EXPECT_EQ(forward(*list), "6 8 9 ");
    EXPECT_EQ(backward(*list), "9 8 6 ");
    EXPECT_EQ(list->getSize(), 3);
  }
}

class OwnList : public lvrDLList {};

TEST_F(LinkedListPlaces, AreBehindTheLastOnceThatIsRemovedFromAListOfTheProgramsClass) {
  lvArg const cell(*new OwnList);
  auto& own = static_cast<lvrDLList&>(*cell.getReferencable());
  own.insert(integer(1), -1);
  own.insert(integer(2), -1);
  RWIterator const last = cursorAt(own, 1);
  EXPECT_TRUE(last->remove());
  EXPECT_EQ(last->getIndex(), 1);
  EXPECT_TRUE(last->getValue().isNil());
  EXPECT_EQ(forward(own), "1 ");
}

}  // namespace
