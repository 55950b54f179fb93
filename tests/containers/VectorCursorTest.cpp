#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/Rings.h"

namespace {

using test::acting;
using test::append;
using test::countOf;
using test::Held;
using test::integer;
using test::RingVector;
using test::string;
using Cursor = std::unique_ptr<lviRealListEnumerator>;

Cursor cursorOf(lvrVector const& vector) { return Cursor(vector.getListEnumerator()); }

// A cursor over 1 to 5, which lie across the end of the array.
class VectorCursor : public ::testing::Test {
 protected:
  VectorCursor() : vector(7, 4, {1, 2, 3, 4, 5}), cursor(cursorOf(*vector)) {}

  void expectOn(int index) const {
    EXPECT_EQ(cursor->getIndex(), index);
    EXPECT_EQ(cursor->getValue().getInt(), index + 1);
  }

  RingVector vector;
  Cursor cursor;
};

TEST_F(VectorCursor, StandsBeforeTheFirstElement) {
  EXPECT_EQ(cursor->getIndex(), -1);
  EXPECT_TRUE(cursor->getValue().isNil());
}

TEST_F(VectorCursor, StepsForwardToTheLastElementAndStaysThere) {
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(cursor->gotoNext());
    expectOn(i);
  }
  EXPECT_FALSE(cursor->gotoNext());
  expectOn(4);
  EXPECT_FALSE(cursor->gotoNext());
  expectOn(4);
}

TEST_F(VectorCursor, StepsBackToTheFirstElementAndStaysThere) {
  cursor->gotoIndex(2);
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(1);
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(0);
  EXPECT_FALSE(cursor->gotoPrevious());
  expectOn(0);
}

TEST_F(VectorCursor, DoesNotStepBackFromItsStart) {
  EXPECT_FALSE(cursor->gotoPrevious());
  EXPECT_EQ(cursor->getIndex(), -1);
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(0);
}

TEST_F(VectorCursor, JumpsToAnyElement) {
  for (int const index : {4, 0, 3}) {
    EXPECT_TRUE(cursor->gotoIndex(index));
    expectOn(index);
  }
}

TEST_F(VectorCursor, StaysWhereItIsWhenItCannotJump) {
  cursor->gotoIndex(2);
  for (int const index : {-1, 5, 6, 2147483647, -2147483647 - 1}) {
    EXPECT_FALSE(cursor->gotoIndex(index)) << index;
    expectOn(2);
  }
}

TEST_F(VectorCursor, MovesByItself) {
  Cursor const other = cursorOf(*vector);
  other->gotoIndex(3);
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(0);
  EXPECT_EQ(other->getIndex(), 3);
}

TEST_F(VectorCursor, HoldsOneReferenceToItsVector) {
  EXPECT_EQ(countOf(*vector), 2);
  cursor->gotoNext();
  EXPECT_EQ(countOf(*vector), 2);
  cursor.reset();
  EXPECT_EQ(countOf(*vector), 1);
}

TEST(VectorCursorOfNoElements, StepsNowhere) {
  for (int const size : {-1, 0, 5}) {
    Held<lvrVector> const vector(size);
    Cursor const cursor = cursorOf(*vector);
    EXPECT_FALSE(cursor->gotoNext());
    EXPECT_FALSE(cursor->gotoPrevious());
    EXPECT_FALSE(cursor->gotoIndex(0));
    EXPECT_EQ(cursor->getIndex(), -1);
    EXPECT_TRUE(cursor->getValue().isNil());
  }
}

TEST(VectorCursorLife, KeepsTheVectorAlive) {
  bool gone = false;
  Cursor cursor;
  {
    Held<lvrVector> const vector(3);
    vector->insert(acting([&gone] { gone = true; }), -1);
    cursor = cursorOf(*vector);
  }
  EXPECT_FALSE(gone);
  EXPECT_TRUE(cursor->gotoNext());
  EXPECT_EQ(cursor->getValue().getType(), lvArg::ObjectType);
  cursor.reset();
  EXPECT_TRUE(gone);
}

TEST(VectorCursorValue, IsACopyWithAReferenceOfItsOwn) {
  Held<lvrVector> const vector(3);
  lvArg const value = string("value");
  vector->insert(value, -1);
  Cursor const cursor = cursorOf(*vector);
  cursor->gotoNext();
  EXPECT_EQ(countOf(value), 2);
  lvArg const copy = cursor->getValue();
  EXPECT_EQ(countOf(value), 3);
}

// --- Matching ------------------------------------------------------------------------------------

// Finds one integer, and writes down what it was asked about.
struct Search {
  explicit Search(int value) : wanted(value) {}
  static bool matches(lvArg const& value, void* ctx) {
    auto& search = *static_cast<Search*>(ctx);
    search.asked += std::to_string(value.getInt()) + " ";
    return value.getInt() == search.wanted;
  }

  int wanted;
  std::string asked;
};

TEST_F(VectorCursor, StepsForwardToAMatch) {
  Search search(3);
  EXPECT_TRUE(cursor->gotoNextMatching(&Search::matches, &search));
  expectOn(2);
  EXPECT_EQ(search.asked, "1 2 3 ");
}

TEST_F(VectorCursor, DoesNotTestTheElementItStandsOnWhenSteppingForward) {
  cursor->gotoIndex(2);
  Search search(3);
  EXPECT_FALSE(cursor->gotoNextMatching(&Search::matches, &search));
  EXPECT_EQ(search.asked, "4 5 ");
  expectOn(4);
}

TEST_F(VectorCursor, StepsBackToAMatch) {
  cursor->gotoIndex(4);
  Search search(2);
  EXPECT_TRUE(cursor->gotoPreviousMatching(&Search::matches, &search));
  expectOn(1);
  EXPECT_EQ(search.asked, "4 3 2 ");
}

TEST_F(VectorCursor, DoesNotTestTheElementItStandsOnWhenSteppingBack) {
  cursor->gotoIndex(2);
  Search search(3);
  EXPECT_FALSE(cursor->gotoPreviousMatching(&Search::matches, &search));
  EXPECT_EQ(search.asked, "2 1 ");
  expectOn(0);
}

TEST_F(VectorCursor, FindsNothingBeforeItsStartOrBehindItsEnd) {
  Search search(1);
  EXPECT_FALSE(cursor->gotoPreviousMatching(&Search::matches, &search));
  cursor->gotoIndex(4);
  EXPECT_FALSE(cursor->gotoNextMatching(&Search::matches, &search));
  EXPECT_EQ(search.asked, "");
}

// A cursor that steps by two and shows other values.
class SteppingByTwo : public lvrVector::RealEnumerator {
 public:
  using RealEnumerator::RealEnumerator;
  bool gotoNext() override { return RealEnumerator::gotoNext() && RealEnumerator::gotoNext(); }
  bool gotoPrevious() override {
    return RealEnumerator::gotoPrevious() && RealEnumerator::gotoPrevious();
  }
  lvArg getValue() const override { return integer(100 * getIndex()); }
};

TEST_F(VectorCursor, MatchesByItsOwnStepsAndValues) {
  SteppingByTwo own(*vector);
  Search forward(300);
  EXPECT_TRUE(own.gotoNextMatching(&Search::matches, &forward));
  EXPECT_EQ(forward.asked, "100 300 ");
  own.gotoIndex(4);
  Search back(0);
  EXPECT_TRUE(own.gotoPreviousMatching(&Search::matches, &back));
  EXPECT_EQ(back.asked, "200 0 ");
}

// --- While the vector changes --------------------------------------------------------------------

TEST_F(VectorCursor, HoldsAPositionNotAnElement) {
  cursor->gotoIndex(2);
  vector->insert(integer(100), 0);
  EXPECT_EQ(cursor->getIndex(), 2);
  EXPECT_EQ(cursor->getValue().getInt(), 2);
  vector->remove(0);
  vector->remove(0);
  EXPECT_EQ(cursor->getValue().getInt(), 4);
}

TEST_F(VectorCursor, MeetsElementsThatAreAppended) {
  cursor->gotoIndex(4);
  append(*vector, {6});
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(5);
}

TEST_F(VectorCursor, ReadsNilWhereThereIsNoElementAnyMore) {
  cursor->gotoIndex(4);
  vector->remove(-1);
  EXPECT_TRUE(cursor->getValue().isNil());
  EXPECT_EQ(cursor->getIndex(), 4);
  EXPECT_FALSE(cursor->gotoNext());
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(3);
}

TEST_F(VectorCursor, ReadsNilWhenTheArrayIsSmallerThanItsPosition) {
  cursor->gotoIndex(4);
  vector->remove(-1);
  vector->remove(-1);
  vector->setAlloced(-1);
  EXPECT_TRUE(cursor->getValue().isNil());
  EXPECT_TRUE(cursor->gotoPrevious());
  EXPECT_TRUE(cursor->getValue().isNil());
}

TEST_F(VectorCursor, ReadsNilAfterClearAndAfterReleaseOfTheData) {
  cursor->gotoIndex(2);
  vector->clear();
  EXPECT_TRUE(cursor->getValue().isNil());
  vector->releaseData();
  EXPECT_TRUE(cursor->getValue().isNil());
  EXPECT_FALSE(cursor->gotoNext());
  EXPECT_FALSE(cursor->gotoIndex(0));
}

TEST_F(VectorCursor, SurvivesGrowth) {
  cursor->gotoIndex(2);
  for (int i = 6; i <= 100; ++i) {
    append(*vector, {i});
  }
  expectOn(2);
  EXPECT_TRUE(cursor->gotoIndex(99));
  expectOn(99);
}

TEST_F(VectorCursor, SteppedOnWhileAllElementsAreRemovedStops) {
  int steps = 0;
  while (cursor->gotoNext()) {
    vector->remove(cursor->getIndex());
    ++steps;
  }
  EXPECT_EQ(steps, 3);
  EXPECT_EQ(test::elementsOf(*vector), "2 4 ");
}

}  // namespace
