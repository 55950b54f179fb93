#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "support/Pairs.h"

namespace {

using test::acting;
using test::countOf;
using test::entriesOf;
using test::Held;
using test::integer;
using test::putEach;
using test::putUpTo;
using test::restOf;
using test::string;

bool standsOnNothing(lviRealMapEnumerator const& cursor) {
  return cursor.getKey().isNil() && cursor.getValue().isNil();
}

std::string pairAt(lviRealMapEnumerator const& cursor) {
  return test::brief(cursor.getKey()) + "=" + test::brief(cursor.getValue());
}

// A set of the keys 1, 2 and 3 with room for one more, and a cursor before the first of them.
template <class Cursor>
class TupleSetCursors : public ::testing::Test {
 protected:
  TupleSetCursors() : set(4, 4U, 0U), cursor(cursorOf(*set)) { putEach(*set, {1, 2, 3}); }

  static std::unique_ptr<Cursor> cursorOf(lvrTupleSet& walked) {
    if constexpr (std::is_same_v<Cursor, lviRealMapIterator>) {
      return std::unique_ptr<Cursor>(walked.getIterator());
    } else {
      return std::unique_ptr<Cursor>(walked.getEnumerator());
    }
  }
  void step(int times) {
    for (int i = 0; i < times; ++i) {
      cursor->next();
    }
  }

  Held<lvrTupleSet> set;
  std::unique_ptr<Cursor> cursor;
};

struct CursorName {
  // The name is prescribed by GoogleTest.
  template <class Cursor>
  static std::string GetName(int /*index*/) {  // NOLINT(readability-identifier-naming)
    return std::is_same_v<Cursor, lviRealMapIterator> ? "Iterator" : "Enumerator";
  }
};

// --- What both cursors do ------------------------------------------------------------------------

template <class Cursor>
using TupleSetCursor = TupleSetCursors<Cursor>;
using BothCursors = ::testing::Types<lviRealMapEnumerator, lviRealMapIterator>;
TYPED_TEST_SUITE(TupleSetCursor, BothCursors, CursorName);

TYPED_TEST(TupleSetCursor, StandsBeforeTheFirstPair) {
  EXPECT_TRUE(standsOnNothing(*this->cursor));
}

TYPED_TEST(TupleSetCursor, MeetsThePairsByAscendingKeys) {
  putEach(*this->set, {0, -5, 9});
  EXPECT_EQ(restOf(*this->cursor), "-5=-50 0=0 1=10 2=20 3=30 9=90 ");
}

TYPED_TEST(TupleSetCursor, OfASetWithoutPairsStepsNowhere) {
  EXPECT_FALSE(this->cursorOf(*Held<lvrTupleSet>(4, 4U, 0U))->next());
  EXPECT_FALSE(this->cursorOf(*Held<lvrTupleSet>(0, 4U, 0U))->next());
  this->set->clear();
  EXPECT_FALSE(this->cursor->next());
  EXPECT_TRUE(standsOnNothing(*this->cursor));
}

TYPED_TEST(TupleSetCursor, StandsOnNothingAfterTheLastPair) {
  this->step(3);
  EXPECT_EQ(pairAt(*this->cursor), "3=30");
  EXPECT_FALSE(this->cursor->next());
  EXPECT_TRUE(standsOnNothing(*this->cursor));
  EXPECT_FALSE(this->cursor->next());
}

TYPED_TEST(TupleSetCursor, StaysWhereItIsWhileItIsAsked) {
  this->step(2);
  EXPECT_EQ(pairAt(*this->cursor), "2=20");
  EXPECT_EQ(pairAt(*this->cursor), "2=20");
}

TYPED_TEST(TupleSetCursor, MovesByItself) {
  this->step(2);
  EXPECT_EQ(restOf(*this->cursorOf(*this->set)), entriesOf(*this->set));
  EXPECT_EQ(restOf(*this->cursor), "3=30 ");
}

TYPED_TEST(TupleSetCursor, GivesCopiesWithReferencesOfTheirOwn) {
  lvArg const key = string("key");
  lvArg const value = string("value");
  this->set->put(key, value);
  this->step(4);
  EXPECT_EQ(countOf(key), 2);
  lvArg const keyCopy = this->cursor->getKey();
  lvArg const valueCopy = this->cursor->getValue();
  EXPECT_TRUE(keyCopy.eq(key));
  EXPECT_TRUE(valueCopy.eq(value));
  EXPECT_EQ(countOf(key), 3);
  EXPECT_EQ(countOf(value), 3);
}

TYPED_TEST(TupleSetCursor, HoldsNoReferenceToItsSet) {
  EXPECT_EQ(countOf(*this->set), 1);
  this->cursor->next();
  EXPECT_EQ(countOf(*this->set), 1);
  this->cursor.reset();
  EXPECT_EQ(countOf(*this->set), 1);
}

TYPED_TEST(TupleSetCursor, CountsOnBehindTheLastPair) {
  this->step(4);
  putEach(*this->set, {4, 5, 6});
  EXPECT_TRUE(standsOnNothing(*this->cursor));
  EXPECT_EQ(restOf(*this->cursor), "5=50 6=60 ");
}

// Whatever happens to the set meanwhile, a cursor keeps its position.

TYPED_TEST(TupleSetCursor, SeesAReplacedValue) {
  this->step(2);
  this->set->put(integer(2), integer(77));
  EXPECT_EQ(pairAt(*this->cursor), "2=77");
}

TYPED_TEST(TupleSetCursor, SeesThePairThatMovesToItsPlace) {
  this->step(2);
  putEach(*this->set, {0});
  EXPECT_EQ(pairAt(*this->cursor), "1=10");
  this->set->put(integer(0), lvArg());
  this->set->put(integer(1), lvArg());
  EXPECT_EQ(pairAt(*this->cursor), "3=30");
  EXPECT_FALSE(this->cursor->next());
}

TYPED_TEST(TupleSetCursor, SeesThePairsOfAnArrayThatMoved) {
  this->step(2);
  putUpTo(*this->set, 100);
  EXPECT_EQ(pairAt(*this->cursor), "2=20");
  this->set->expand(10000);
  EXPECT_EQ(pairAt(*this->cursor), "2=20");
}

TYPED_TEST(TupleSetCursor, StandsOnNothingWhereThereIsNoPairAnyMore) {
  this->step(3);
  this->set->put(integer(1), lvArg());
  EXPECT_TRUE(standsOnNothing(*this->cursor));
  EXPECT_FALSE(this->cursor->next());
}

TYPED_TEST(TupleSetCursor, StandsOnNothingAfterClearAndFinalize) {
  this->step(1);
  this->set->clear();
  EXPECT_TRUE(standsOnNothing(*this->cursor));
  putEach(*this->set, {5});
  EXPECT_EQ(pairAt(*this->cursor), "5=50");
  this->set->finalize();
  EXPECT_TRUE(standsOnNothing(*this->cursor));
  EXPECT_FALSE(this->cursor->next());
}

// --- What only the iterator does -----------------------------------------------------------------

class TupleSetIterator : public TupleSetCursors<lviRealMapIterator> {
 protected:
  void expectUnchanged() const { EXPECT_EQ(entriesOf(*set), "1=10 2=20 3=30 "); }
};

using TupleSetIteratorSetValue = TupleSetIterator;
using TupleSetIteratorRemove = TupleSetIterator;

TEST_F(TupleSetIteratorSetValue, ReplacesTheValueAndAnswersZero) {
  lvArg old = integer(77);
  step(2);
  EXPECT_EQ(cursor->setValue(string("new"), &old), 0);
  EXPECT_EQ(old.getInt(), 20);
  EXPECT_EQ(cursor->setValue(string("newer"), nullptr), 0);
  EXPECT_EQ(entriesOf(*set), "1=10 2='newer' 3=30 ");
  EXPECT_EQ(pairAt(*cursor), "2='newer'");
}

TEST_F(TupleSetIteratorSetValue, OnNoPairMakesTheOldCellNil) {
  lvArg old = integer(77);
  EXPECT_EQ(cursor->setValue(integer(1), &old), -1);
  EXPECT_TRUE(old.isNil());
  step(4);
  old.setInt(77);
  EXPECT_EQ(cursor->setValue(integer(1), &old), -1);
  EXPECT_TRUE(old.isNil());
  EXPECT_EQ(cursor->setValue(integer(1), nullptr), -1);
  expectUnchanged();
}

TEST_F(TupleSetIteratorSetValue, OfNilOnNoPairRemovesNothing) {
  EXPECT_EQ(cursor->setValue(lvArg(), nullptr), -1);
  expectUnchanged();
}

TEST_F(TupleSetIteratorSetValue, OfNilRemovesThePair) {
  lvArg old;
  step(2);
  EXPECT_EQ(cursor->setValue(lvArg(), &old), 0);
  EXPECT_EQ(old.getInt(), 20);
  EXPECT_EQ(entriesOf(*set), "1=10 3=30 ");
  EXPECT_EQ(pairAt(*cursor), "3=30");
}

TEST_F(TupleSetIteratorSetValue, HandsTheReferenceToTheOldCell) {
  lvArg const value = string("value");
  lvArg old;
  step(2);
  cursor->setValue(value, nullptr);
  EXPECT_EQ(countOf(value), 2);
  cursor->setValue(integer(1), &old);
  EXPECT_TRUE(old.eq(value));
  EXPECT_EQ(countOf(value), 2);
}

TEST_F(TupleSetIteratorSetValue, PastTheEndChangesNothing) {
  step(3);
  set->put(integer(1), lvArg());
  lvArg old = integer(77);
  EXPECT_EQ(cursor->setValue(integer(1), &old), -2);
  EXPECT_TRUE(old.isNil());
  EXPECT_EQ(test::roomOf(*set), "2=20 3=30 . . ");
  EXPECT_EQ(cursor->setValue(lvArg(), &old), -2);
  EXPECT_EQ(set->getSize(), 2);
}

// An iterator whose remove() only answers.
class RefusingIterator : public lvrTupleSet::RealIterator {
 public:
  using RealIterator::RealIterator;
  int remove() override { return -77; }
};

TEST_F(TupleSetIteratorSetValue, OfNilAnswersWhatADerivedRemoveDoes) {
  RefusingIterator refusing(*set);
  lvArg old;
  refusing.next();
  EXPECT_EQ(refusing.setValue(lvArg(), &old), -77);
  EXPECT_EQ(old.getInt(), 10);
  expectUnchanged();
  EXPECT_EQ(refusing.setValue(integer(11), nullptr), 0);
}

TEST_F(TupleSetIteratorRemove, OnNoPairAnswersMinusOne) {
  EXPECT_EQ(cursor->remove(), -1);
  step(4);
  EXPECT_EQ(cursor->remove(), -1);
  expectUnchanged();
}

TEST_F(TupleSetIteratorRemove, LeavesTheCursorOnThePairThatFollowed) {
  step(1);
  EXPECT_EQ(cursor->remove(), 0);
  EXPECT_EQ(pairAt(*cursor), "2=20");
  EXPECT_EQ(cursor->remove(), 0);
  EXPECT_EQ(pairAt(*cursor), "3=30");
  EXPECT_EQ(cursor->remove(), 0);
  EXPECT_TRUE(standsOnNothing(*cursor));
  EXPECT_EQ(set->getSize(), 0);
}

TEST_F(TupleSetIteratorRemove, OfTheLastPairLeavesTheCursorOnNothing) {
  step(3);
  EXPECT_EQ(cursor->remove(), 0);
  EXPECT_TRUE(standsOnNothing(*cursor));
  EXPECT_EQ(cursor->remove(), -1);
  EXPECT_FALSE(cursor->next());
  EXPECT_EQ(entriesOf(*set), "1=10 2=20 ");
}

TEST_F(TupleSetIteratorRemove, DropsBothCells) {
  lvArg const key = string("key");
  lvArg const value = string("value");
  set->put(key, value);
  step(4);
  cursor->remove();
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
}

TEST_F(TupleSetIteratorRemove, PastTheEndAnswersMinusTwo) {
  step(3);
  set->put(integer(1), lvArg());
  EXPECT_EQ(cursor->remove(), -2);
  EXPECT_EQ(entriesOf(*set), "2=20 3=30 ");
}

TEST_F(TupleSetIteratorRemove, LetsTheRemovedPairChangeTheSet) {
  set->put(integer(2), acting([this] { set->clear(); }));
  step(2);
  EXPECT_EQ(cursor->remove(), 0);
  EXPECT_TRUE(standsOnNothing(*cursor));
  EXPECT_EQ(cursor->remove(), -2);
}

}  // namespace
