// What looks like a mistake in the tuple set, and is not.

#include <gtest/gtest.h>

#include <climits>
#include <memory>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "support/Pairs.h"
#include "tarselvalues/containers/lvMapRWIterator.h"

namespace {

using test::countOf;
using test::entriesOf;
using test::EqualKeysSet;
using test::Held;
using test::integer;
using test::keysOf;
using test::putEach;
using test::putUpTo;
using test::roomOf;
using test::string;
using Layout = test::SetLayout;

TEST(TupleSetOddities, TheClassKeyIsThatOfTheBase) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  EXPECT_EQ(test::textOf(set->getClassDesc()), "Referencable");
  EXPECT_EQ(&set->getClassDesc(), &lvReferencable::getStaticClassDesc());
}

TEST(TupleSetOddities, NilPutIntoAnEmptySetMakesAPair) {
  for (int const size : {4, 0}) {
    Held<lvrTupleSet> const set(size, 4U, 0U);
    lvArg old = integer(77);
    EXPECT_EQ(set->put(integer(1), lvArg(), &old), 0);
    EXPECT_EQ(set->getSize(), 1);
    EXPECT_EQ(entriesOf(*set), "1=nil ");
    EXPECT_EQ(old.getInt(), 77);
  }
}

TEST(TupleSetOddities, NilPutIntoAnEmptiedSetMakesAPairToo) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  putEach(*set, {1, 2});
  set->clear();
  set->put(integer(3), lvArg());
  EXPECT_EQ(entriesOf(*set), "3=nil ");
  EXPECT_EQ(set->getSize(), 1);
}

TEST(TupleSetOddities, NilPutTwiceIntoAnEmptySetRemovesThePairAgain) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  lvArg old = integer(77);
  set->put(integer(1), lvArg());
  set->put(integer(1), lvArg(), &old);
  EXPECT_EQ(set->getSize(), 0);
  EXPECT_TRUE(old.isNil());
}

TEST(TupleSetOddities, APairWithANilValueIsGivenAValueByPosition) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  set->put(integer(1), lvArg());
  lvArg old = integer(77);
  EXPECT_EQ(set->setValue(0, integer(10), &old), 1);
  EXPECT_TRUE(old.isNil());
  EXPECT_EQ(entriesOf(*set), "1=10 ");
}

TEST(TupleSetOddities, AnEqualKeyPushesTheLastPairOutOfTheSet) {
  EqualKeysSet const set;
  putEach(*set, {1, 2, 3});
  lvArg old;
  EXPECT_EQ(set->put(integer(2), integer(99), &old), 0);
  EXPECT_EQ(old.getInt(), 20);
  EXPECT_EQ(set->getSize(), 3);
  EXPECT_EQ(entriesOf(*set), "1=10 2=99 2=20 ");
  EXPECT_TRUE(set->get(integer(3)).isNil());
}

TEST(TupleSetOddities, AnEqualKeyPushesItsOwnOldPairOutIfThatIsTheLast) {
  EqualKeysSet const set;
  putEach(*set, {1, 2});
  set->put(integer(2), integer(99));
  EXPECT_EQ(entriesOf(*set), "1=10 2=99 ");
}

TEST(TupleSetOddities, APairThatIsPushedOutStaysBehindTheOthers) {
  EqualKeysSet const set;
  lvArg const value = string("value");
  putEach(*set, {1});
  set->put(integer(2), value);
  set->put(integer(1), integer(99));
  EXPECT_EQ(roomOf(*set), "1=99 1=10 2='value' . ");
  EXPECT_EQ(countOf(value), 2);
  set->clear();
  EXPECT_EQ(countOf(value), 2);
}

TEST(TupleSetOddities, APairThatIsPushedOutGoesWhenItsPlaceIsTaken) {
  EqualKeysSet const set;
  lvArg const key = string("key");
  lvArg const value = string("value");
  set->put(key, value);
  set->put(key, integer(1));
  EXPECT_EQ(countOf(value), 2);
  putEach(*set, {5});
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(countOf(key), 2);
  EXPECT_EQ(roomOf(*set), "5=50 'key'=1 . . ");
}

TEST(TupleSetOddities, APairThatIsPushedOutGoesWithTheNextOneToo) {
  EqualKeysSet const set;
  lvArg const value = string("value");
  set->put(integer(1), value);
  set->put(integer(1), integer(11));
  set->put(integer(1), integer(12));
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(roomOf(*set), "1=12 1=11 . . ");
}

TEST(TupleSetOddities, APairThatIsPushedOutGoesWithTheSet) {
  lvArg const key = string("key");
  lvArg const value = string("value");
  {
    EqualKeysSet const set;
    set->put(key, value);
    set->put(key, integer(1));
    EXPECT_EQ(countOf(value), 2);
  }
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
}

TEST(TupleSetOddities, AnEqualKeyGrowsAFullSetThoughItsSizeStays) {
  EqualKeysSet const set(2);
  putEach(*set, {1, 2});
  EXPECT_EQ(Layout::allocated(*set), 2);
  set->put(integer(1), integer(99));
  EXPECT_EQ(Layout::allocated(*set), 6);
  EXPECT_EQ(roomOf(*set), "1=99 1=10 2=20 . . . ");
  EXPECT_EQ(set->getSize(), 2);
}

TEST(TupleSetOddities, NilUnderAPresentKeyRemovesOnePairOfEqualKeysOnly) {
  EqualKeysSet const set;
  putEach(*set, {1, 2, 3});
  set->put(integer(1), integer(99));
  EXPECT_EQ(keysOf(*set), "1 1 2 ");
  lvArg old;
  set->put(integer(1), lvArg(), &old);
  EXPECT_EQ(old.getInt(), 10);  // The search probes the middle first.
  EXPECT_EQ(entriesOf(*set), "1=99 2=20 ");
}

TEST(TupleSetOddities, ANewKeyGrowsTheSizeAlsoWhereEqualKeysAreInserted) {
  EqualKeysSet const set;
  putEach(*set, {2, 1});
  EXPECT_EQ(set->getSize(), 2);
  EXPECT_EQ(entriesOf(*set), "1=10 2=20 ");
}

TEST(TupleSetOddities, AnIteratorThatRemovesEveryPairItVisitsVisitsEverySecondOnly) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  putUpTo(*set, 7);
  std::unique_ptr<lviRealMapIterator> const iterator(set->getIterator());
  while (iterator->next()) {
    EXPECT_EQ(iterator->remove(), 0);
  }
  EXPECT_EQ(keysOf(*set), "2 4 6 ");
}

TEST(TupleSetOddities, ThereIsAnIteratorButNoReadWriteIterator) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  putEach(*set, {1});
  EXPECT_NE(std::unique_ptr<lviRealMapIterator>(set->getIterator()), nullptr);
  EXPECT_EQ(set->getRWIterator(), nullptr);
}

TEST(TupleSetOddities, IteratorHandlesHoldTheReadOnlyCursor) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  EXPECT_EQ(dynamic_cast<lviRealMapIterator*>(lvMapIterator(*set).getCursor()), nullptr);
  EXPECT_EQ(dynamic_cast<lviRealMapIterator*>(lvMapRWIterator(*set).getCursor()), nullptr);
}

TEST(TupleSetOddities, IntegersFarApartStandTheWrongWayRound) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  set->put(integer(INT_MIN), integer(1));
  set->put(integer(INT_MAX), integer(2));
  EXPECT_EQ(set->getKey(0).getInt(), INT_MAX);
  EXPECT_EQ(set->getKey(1).getInt(), INT_MIN);
}

TEST(TupleSetOddities, AnOldCellThatIsTheValueKeepsThePairAsItWas) {
  Held<lvrTupleSet> const set(4, 4U, 0U);
  putEach(*set, {1});
  lvArg cell = integer(11);
  EXPECT_EQ(set->put(integer(1), cell, &cell), 0);
  EXPECT_EQ(cell.getInt(), 10);
  EXPECT_EQ(entriesOf(*set), "1=10 ");
}

}  // namespace
