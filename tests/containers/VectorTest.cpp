#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <utility>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/Rings.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

using test::acting;
using test::append;
using test::bookkeepingOf;
using test::countOf;
using test::elementsOf;
using test::Held;
using test::integer;
using test::logging;
using test::newRing;
using test::RingVector;
using test::setBookkeeping;
using test::slotsOf;
using test::string;
using test::textOf;
using Layout = test::VectorLayout;

constexpr unsigned Marks = 0x20;

// The hash of the elements, from the last one to the first.
unsigned hashOf(lviList const& list) {
  unsigned hash = 74641U * static_cast<unsigned>(list.getSize());
  for (int i = list.getSize(); i-- > 0;) {
    hash = hash * 4294938761U + list.at(i).hashCode();
  }
  return hash;
}

void expectRing(lvrVector const& vector, int start, std::string const& slots) {
  EXPECT_EQ(Layout::start(vector), start);
  EXPECT_EQ(slotsOf(vector), slots);
}

// --- Making --------------------------------------------------------------------------------------

TEST(VectorNew, HasTheRoomThatItIsMadeWith) {
  Held<lvrVector> const vector(5);
  EXPECT_EQ(vector->getSize(), 0);
  expectRing(*vector, 0, ". . . . . ");
}

TEST(VectorNew, OfSizeZeroHasAnArrayOfNoCells) {
  Held<lvrVector> const vector(0);
  EXPECT_NE(Layout::elements(*vector), nullptr);
  EXPECT_EQ(Layout::alloced(*vector), 0);
  EXPECT_EQ(vector->getSize(), 0);
}

TEST(VectorNew, OfANegativeSizeHasNoArray) {
  for (int const size : {-1, -1000000}) {
    Held<lvrVector> const vector(size);
    EXPECT_EQ(Layout::elements(*vector), nullptr);
    EXPECT_EQ(Layout::alloced(*vector), 0);
    EXPECT_EQ(vector->getSize(), 0);
  }
}

TEST(VectorNew, CutsTheRoomToTheLimit) {
  EXPECT_EQ(Layout::alloced(*Held<lvrVector>(65535)), 65535);
  EXPECT_EQ(Layout::alloced(*Held<lvrVector>(65536)), 65535);
  EXPECT_EQ(Layout::alloced(*Held<lvrVector>(2147483647)), 65535);
}

TEST(VectorNew, KnowsTheHashOfNoElements) {
  Held<lvrVector> const vector(7);
  EXPECT_EQ(Layout::flags(*vector), 1U);
  EXPECT_EQ(Layout::hashCache(*vector), 0U);
  EXPECT_EQ(vector->hashCode(), 0U);
}

TEST(VectorNew, GivesTheListTagToCellsThatHoldIt) {
  Held<lvrVector> vector(7);
  EXPECT_EQ(vector.cell().getType(), lvArg::ListType);
  EXPECT_EQ(lvLayoutAccess<lvReferencable>::typeByte(*vector), 0x90);
  RingVector ring(3, 0, {});
  EXPECT_EQ(ring.cell().getType(), lvArg::ListType);
  EXPECT_EQ(lvLayoutAccess<lvReferencable>::typeByte(*ring), 0x90);
}

TEST(VectorNew, MadeByNameHasRoomForSeven) {
  lvReferencable* const made = lvrVector::defaultCtorMethod();
  EXPECT_EQ(countOf(*made), 0);
  lvArg const holder(*made);
  auto const& vector = dynamic_cast<lvrVector&>(*made);
  EXPECT_EQ(Layout::alloced(vector), 7);
  EXPECT_EQ(vector.getSize(), 0);
  EXPECT_EQ(vector.hashCode(), 0U);
}

TEST(VectorNew, IsOfTheClassVector) {
  Held<lvrVector> const vector(7);
  EXPECT_EQ(textOf(vector->getClassDesc()), "Vector");
  EXPECT_TRUE(vector->getClassDesc().eq(lvString("Vector")));
  EXPECT_EQ(&vector->getClassDesc(), &lvrVector::getStaticClassDesc());
}

TEST(VectorNew, ComparesAsTheBaseDoes) {
  Held<lvrVector> const vector(7);
  Held<lvrVector> const other(7);
  EXPECT_EQ(vector->equiv(*vector), 1);
  EXPECT_EQ(vector->equiv(*other), 0);
  EXPECT_EQ(vector->compareTo(*other) < 0, &*vector < &*other);
}

TEST(VectorNew, IsNotSorted) {
  Held<lvrVector> const vector(7);
  EXPECT_FALSE(vector->isSorted());
  append(*vector, {1, 2, 3});
  EXPECT_FALSE(vector->isSorted());
}

TEST(VectorAdopting, TakesTheElementsOfTheRing) {
  RingVector const vector(5, 3, {1, 2, 3});
  EXPECT_EQ(vector->getSize(), 3);
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
  expectRing(*vector, 3, "3 . . 1 2 ");
}

TEST(VectorAdopting, TakesTheArrayItself) {
  lvArg* const ring = newRing(5, 0, {1});
  Held<lvrVector> const vector(5, 1, 0, ring);
  EXPECT_EQ(Layout::elements(*vector), ring);
}

TEST(VectorAdopting, ComputesTheHashWhenAsked) {
  RingVector const vector(5, 3, {1, 2, 3});
  EXPECT_EQ(Layout::flags(*vector), 0U);
  EXPECT_EQ(Layout::hashCache(*vector), 0U);
  EXPECT_EQ(vector->hashCode(), hashOf(*vector));
  EXPECT_NE(vector->hashCode(), 0U);
}

TEST(VectorAdopting, ReleasesTheElementsAtItsEnd) {
  lvArg const element = string("element");
  lvArg* const ring = newRing(3, 0, {});
  ring[2] = element;
  { Held<lvrVector> const vector(3, 1, 2, ring); }
  EXPECT_EQ(countOf(element), 1);
}

TEST(VectorAdopting, OfNoArrayIsEmpty) {
  Held<lvrVector> const vector(10, 5, 3, nullptr);
  EXPECT_EQ(vector->getSize(), 0);
  EXPECT_EQ(Layout::alloced(*vector), 0);
  EXPECT_TRUE(vector->at(0).isNil());
  append(*vector, {1});
  EXPECT_EQ(elementsOf(*vector), "1 ");
}

TEST(VectorAdopting, CutsACountThatDoesNotFit) {
  Held<lvrVector> const vector(3, 4, 0, newRing(3, 0, {1, 2, 3}));
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
  EXPECT_EQ(Held<lvrVector>(3, -1, 0, newRing(3, 0, {}))->getSize(), 0);
}

TEST(VectorAdopting, TakesAStartThatDoesNotFitForZero) {
  for (int const start : {3, 65536, -1}) {
    Held<lvrVector> const vector(3, 2, start, newRing(3, 0, {1, 2}));
    EXPECT_EQ(Layout::start(*vector), 0);
    EXPECT_EQ(elementsOf(*vector), "1 2 ");
  }
}

TEST(VectorAdopting, CutsTheRoomToTheLimit) {
  Held<lvrVector> const vector(65540, 2, 0, newRing(65540, 0, {1, 2}));
  EXPECT_EQ(Layout::alloced(*vector), 65535);
  EXPECT_EQ(elementsOf(*vector), "1 2 ");
}

// --- insert --------------------------------------------------------------------------------------

TEST(VectorInsert, AppendsAtTheSizeAndAtMinusOne) {
  Held<lvrVector> const vector(5);
  EXPECT_TRUE(vector->insert(integer(1), -1));
  EXPECT_TRUE(vector->insert(integer(2), 1));
  EXPECT_TRUE(vector->insert(integer(3), -1));
  EXPECT_EQ(vector->getSize(), 3);
  expectRing(*vector, 0, "1 2 3 . . ");
}

TEST(VectorInsert, BeyondTheEndIsRefused) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2, 3});
  unsigned const hash = vector->hashCode();
  EXPECT_FALSE(vector->insert(integer(9), 5));
  EXPECT_FALSE(vector->insert(integer(9), 4));
  EXPECT_FALSE(vector->insert(integer(9), 2147483647));
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
  EXPECT_EQ(vector->hashCode(), hash);
  EXPECT_EQ(Layout::alloced(*vector), 5);
}

TEST(VectorInsert, BelowMinusOneIsRefused) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2, 3});
  EXPECT_FALSE(vector->insert(integer(9), -2));
  EXPECT_FALSE(vector->insert(integer(9), -2147483647 - 1));
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
}

TEST(VectorInsert, AtTheFrontMovesTheStartBackAndWraps) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2, 3});
  EXPECT_TRUE(vector->insert(integer(9), 0));
  expectRing(*vector, 4, "1 2 3 . 9 ");
  EXPECT_EQ(elementsOf(*vector), "9 1 2 3 ");
  EXPECT_TRUE(vector->insert(integer(8), 0));
  expectRing(*vector, 3, "1 2 3 8 9 ");
  EXPECT_EQ(elementsOf(*vector), "8 9 1 2 3 ");
}

TEST(VectorInsert, InTheLowerHalfMovesTheElementsBeforeIt) {
  RingVector const vector(7, 2, {1, 2, 3, 4});
  EXPECT_TRUE(vector->insert(integer(9), 1));
  expectRing(*vector, 1, ". 1 9 2 3 4 . ");
}

TEST(VectorInsert, InTheMiddleMovesTheElementsBehindIt) {
  RingVector const vector(7, 2, {1, 2, 3, 4});
  EXPECT_TRUE(vector->insert(integer(9), 2));
  expectRing(*vector, 2, ". . 1 2 9 3 4 ");
  RingVector const odd(7, 2, {1, 2, 3});
  EXPECT_TRUE(odd->insert(integer(9), 1));
  expectRing(*odd, 2, ". . 1 9 2 3 . ");
}

TEST(VectorInsert, IntoAnEmptyOrASingleElementVectorMovesNoStart) {
  RingVector const empty(4, 2, {});
  EXPECT_TRUE(empty->insert(integer(9), 0));
  expectRing(*empty, 2, ". . 9 . ");
  EXPECT_TRUE(empty->insert(integer(8), 0));
  expectRing(*empty, 2, ". . 8 9 ");
}

TEST(VectorInsert, ShiftsAcrossTheEndOfTheArray) {
  RingVector const up(5, 3, {1, 2, 3});
  EXPECT_TRUE(up->insert(integer(9), 1));
  expectRing(*up, 3, "2 3 . 1 9 ");
  RingVector const down(6, 0, {1, 2, 3, 4});
  EXPECT_TRUE(down->insert(integer(9), 1));
  expectRing(*down, 5, "9 2 3 4 . 1 ");
}

TEST(VectorInsert, GrowsToTenAndThenByHalfPlusTen) {
  Held<lvrVector> const vector(0);
  append(*vector, {1});
  EXPECT_EQ(Layout::alloced(*vector), 10);
  append(*vector, {2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_EQ(Layout::alloced(*vector), 10);
  append(*vector, {11});
  EXPECT_EQ(Layout::alloced(*vector), 25);
  for (int i = 12; i <= 26; ++i) {
    append(*vector, {i});
  }
  EXPECT_EQ(Layout::alloced(*vector), 47);
}

TEST(VectorInsert, GrowsFromNoArray) {
  Held<lvrVector> const vector(-1);
  EXPECT_TRUE(vector->insert(integer(1), 0));
  expectRing(*vector, 0, "1 . . . . . . . . . ");
}

TEST(VectorInsert, IntoAFullRingUnrollsIt) {
  RingVector const vector(3, 2, {1, 2, 3});
  EXPECT_TRUE(vector->insert(integer(9), 0));
  EXPECT_EQ(Layout::alloced(*vector), 14);
  expectRing(*vector, 13, "1 2 3 . . . . . . . . . . 9 ");
}

TEST(VectorInsert, StoresNilAsAnElement) {
  Held<lvrVector> const vector(3);
  EXPECT_TRUE(vector->insert(lvArg(), -1));
  EXPECT_EQ(vector->getSize(), 1);
  EXPECT_EQ(vector->getElementPos(lvArg::NilValue), 0);
}

TEST(VectorInsert, TakesOneReference) {
  Held<lvrVector> const vector(0);
  lvArg const value = string("value");
  for (int i = 0; i < 30; ++i) {
    vector->insert(value, i / 2);
    EXPECT_EQ(countOf(value), i + 2);
  }
}

TEST(VectorInsert, RefusedTakesNoReference) {
  Held<lvrVector> const vector(3);
  lvArg const value = string("value");
  vector->insert(value, 1);
  EXPECT_EQ(countOf(value), 1);
}

TEST(VectorInsert, TakesAnElementOfTheArrayThatItReplaces) {
  lvArg* const ring = newRing(2, 0, {});
  ring[0] = string("first");
  ring[1] = string("second");
  Held<lvrVector> const vector(2, 2, 0, ring);
  EXPECT_TRUE(vector->insert(ring[1], 0));
  EXPECT_EQ(elementsOf(*vector), "'second' 'first' 'second' ");
}

TEST(VectorInsert, TakesAnElementOfTheArrayThatItMoves) {
  lvArg* const ring = newRing(5, 0, {1, 2, 3});
  Held<lvrVector> const vector(5, 3, 0, ring);
  EXPECT_TRUE(vector->insert(ring[1], 1));
  EXPECT_EQ(elementsOf(*vector), "1 2 2 3 ");
}

// --- The limits ----------------------------------------------------------------------------------

// A vector of 65535 elements.
class FullVector : public ::testing::Test {
 protected:
  FullVector() : vector(65535, 65535, 65000, new lvArg[65535]) {}

  Held<lvrVector> vector;
};

TEST_F(FullVector, RefusesOneMoreAndChangesNothing) {
  unsigned const hash = vector->hashCode();
  for (int const index : {-1, 0, 1, 40000, 65535}) {
    EXPECT_FALSE(vector->insert(integer(1), index));
  }
  EXPECT_EQ(vector->getSize(), 65535);
  EXPECT_EQ(Layout::alloced(*vector), 65535);
  EXPECT_EQ(Layout::start(*vector), 65000);
  EXPECT_EQ(vector->getElementPos(integer(1)), -1);
  EXPECT_EQ(vector->hashCode(), hash);
}

TEST_F(FullVector, TakesOneMoreAfterARemoval) {
  vector->remove(100);
  EXPECT_TRUE(vector->insert(integer(1), 100));
  EXPECT_EQ(vector->getSize(), 65535);
  EXPECT_EQ(vector->at(100).getInt(), 1);
}

TEST_F(FullVector, IsReachedToItsLastElement) {
  vector->remove(-1);
  vector->insert(integer(7), -1);
  EXPECT_EQ(vector->at(65534).getInt(), 7);
  EXPECT_TRUE(vector->at(65535).isNil());
  EXPECT_EQ(vector->getElementPos(integer(7)), 65534);
}

TEST(VectorLimits, AreReachedByGrowingFromNothing) {
  Held<lvrVector> const vector(0);
  for (int i = 0; i < 65535; ++i) {
    ASSERT_TRUE(vector->insert(integer(i), i % 2 == 0 ? 0 : -1)) << i;
  }
  EXPECT_EQ(Layout::alloced(*vector), 65535);
  EXPECT_FALSE(vector->insert(integer(-1), -1));
  EXPECT_EQ(vector->at(0).getInt(), 65534);
  EXPECT_EQ(vector->at(32767).getInt(), 0);
  EXPECT_EQ(vector->at(65534).getInt(), 65533);
}

TEST(VectorLimits, HoldForRequestedRoom) {
  Held<lvrVector> const vector(1);
  append(*vector, {1});
  EXPECT_EQ(vector->setAlloced(65536), 65535);
  EXPECT_EQ(vector->setAlloced(2147483647), 65535);
  EXPECT_EQ(Layout::alloced(*vector), 65535);
  EXPECT_EQ(elementsOf(*vector), "1 ");
}

// --- remove --------------------------------------------------------------------------------------

TEST(VectorRemove, GivesTheElementAndClosesTheGap) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2, 3});
  EXPECT_EQ(vector->remove(1).getInt(), 2);
  EXPECT_EQ(vector->getSize(), 2);
  expectRing(*vector, 0, "1 3 . . . ");
}

TEST(VectorRemove, AtMinusOneTakesTheLast) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2, 3});
  EXPECT_EQ(vector->remove(-1).getInt(), 3);
  expectRing(*vector, 0, "1 2 . . . ");
}

TEST(VectorRemove, OutOfRangeGivesNilAndChangesNothing) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2, 3});
  unsigned const hash = vector->hashCode();
  for (int const index : {-2, 3, 4, 2147483647, -2147483647 - 1}) {
    EXPECT_TRUE(vector->remove(index).isNil()) << index;
  }
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
  EXPECT_EQ(vector->hashCode(), hash);
  EXPECT_EQ(Layout::flags(*vector), 1U);
}

TEST(VectorRemove, FromAnEmptyVectorGivesNil) {
  Held<lvrVector> const vector(5);
  EXPECT_TRUE(vector->remove(0).isNil());
  EXPECT_TRUE(vector->remove(-1).isNil());
  EXPECT_TRUE(Held<lvrVector>(-1)->remove(-1).isNil());
  EXPECT_EQ(vector->getSize(), 0);
}

TEST(VectorRemove, OfTheFirstMovesTheStart) {
  RingVector const vector(5, 4, {1, 2, 3});
  EXPECT_EQ(vector->remove(0).getInt(), 1);
  expectRing(*vector, 0, "2 3 . . . ");
}

TEST(VectorRemove, OfTheFirstOfTwoMovesTheSecond) {
  RingVector const vector(5, 4, {1, 2});
  EXPECT_EQ(vector->remove(0).getInt(), 1);
  expectRing(*vector, 4, ". . . . 2 ");
}

TEST(VectorRemove, InTheLowerHalfMovesTheElementsBeforeIt) {
  RingVector const vector(7, 6, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(vector->remove(1).getInt(), 2);
  expectRing(*vector, 0, "1 3 4 5 6 . . ");
}

TEST(VectorRemove, InTheMiddleMovesTheElementsBehindIt) {
  RingVector const vector(7, 6, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(vector->remove(2).getInt(), 3);
  expectRing(*vector, 6, "2 4 5 6 . . 1 ");
}

TEST(VectorRemove, OfTheOnlyElementKeepsTheStart) {
  RingVector const vector(4, 2, {1});
  EXPECT_EQ(vector->remove(0).getInt(), 1);
  expectRing(*vector, 2, ". . . . ");
}

TEST(VectorRemove, HandsTheReferenceOver) {
  Held<lvrVector> const vector(5);
  lvArg const value = string("value");
  vector->insert(value, -1);
  lvArg const removed = vector->remove(0);
  EXPECT_TRUE(removed.eq(value));
  EXPECT_EQ(countOf(value), 2);
}

TEST(VectorRemove, NeverShrinksTheArray) {
  Held<lvrVector> const vector(0);
  append(*vector, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
  while (!vector->remove(-1).isNil()) {
  }
  EXPECT_EQ(Layout::alloced(*vector), 25);
}

TEST(VectorRemoveValue, TakesTheFirstEquivalentElement) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2, 3, 2});
  EXPECT_EQ(vector->remove(integer(2)), 1);
  EXPECT_EQ(elementsOf(*vector), "1 3 2 ");
}

TEST(VectorRemoveValue, ComparesStringsByTheirText) {
  Held<lvrVector> const vector(5);
  vector->insert(string("a"), -1);
  vector->insert(string("b"), -1);
  EXPECT_EQ(vector->remove(string("b")), 1);
  EXPECT_EQ(elementsOf(*vector), "'a' ");
}

TEST(VectorRemoveValue, OfAnAbsentValueAnswersZero) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2});
  unsigned const hash = vector->hashCode();
  EXPECT_EQ(vector->remove(string("1")), 0);
  EXPECT_EQ(elementsOf(*vector), "1 2 ");
  EXPECT_EQ(Layout::flags(*vector), 1U);
  EXPECT_EQ(vector->hashCode(), hash);
  EXPECT_EQ(Held<lvrVector>(5)->remove(integer(1)), 0);
}

TEST(VectorRemoveValue, DropsTheElement) {
  Held<lvrVector> const vector(5);
  lvArg const value = string("value");
  vector->insert(value, -1);
  vector->remove(value);
  EXPECT_EQ(countOf(value), 1);
}

TEST(VectorRemoveValue, OfAnElementItselfIsSafe) {
  lvArg* const ring = newRing(3, 0, {});
  ring[0] = string("first");
  ring[1] = string("second");
  Held<lvrVector> const vector(3, 2, 0, ring);
  EXPECT_EQ(vector->remove(ring[0]), 1);
  EXPECT_EQ(elementsOf(*vector), "'second' ");
}

// --- at, getElementPos ---------------------------------------------------------------------------

TEST(VectorAt, GivesEachElementAndNilBesideThem) {
  RingVector const vector(5, 4, {1, 2, 3});
  EXPECT_EQ(vector->at(0).getInt(), 1);
  EXPECT_EQ(vector->at(2).getInt(), 3);
  for (int const index : {-1, 3, 4, 5, 2147483647, -2147483647 - 1}) {
    EXPECT_TRUE(vector->at(index).isNil()) << index;
  }
}

TEST(VectorAt, OfAnEmptyVectorIsNil) {
  EXPECT_TRUE(Held<lvrVector>(5)->at(0).isNil());
  EXPECT_TRUE(Held<lvrVector>(0)->at(0).isNil());
  EXPECT_TRUE(Held<lvrVector>(-1)->at(0).isNil());
}

TEST(VectorAt, GivesACopy) {
  Held<lvrVector> const vector(5);
  lvArg const value = string("value");
  vector->insert(value, -1);
  lvArg copy = vector->at(0);
  EXPECT_EQ(countOf(value), 3);
  copy.setInt(1);
  EXPECT_TRUE(vector->at(0).eq(value));
}

TEST(VectorElementPos, IsThatOfTheFirstEquivalentElement) {
  RingVector const vector(5, 3, {1, 2, 1});
  EXPECT_EQ(vector->getElementPos(integer(1)), 0);
  EXPECT_EQ(vector->getElementPos(integer(2)), 1);
  EXPECT_EQ(vector->getElementPos(integer(3)), -1);
  EXPECT_EQ(vector->getElementPos(string("1")), -1);
}

TEST(VectorElementPos, ComparesStringsByTextAndContainersByIdentity) {
  Held<lvrVector> const vector(5);
  lvVector const inner(1);
  vector->insert(string("a"), -1);
  vector->insert(inner, -1);
  EXPECT_EQ(vector->getElementPos(string("a")), 0);
  EXPECT_EQ(vector->getElementPos(inner), 1);
  EXPECT_EQ(vector->getElementPos(lvVector(1)), -1);
}

TEST(VectorElementPos, OfAnEmptyVectorIsMinusOneEvenForNil) {
  EXPECT_EQ(Held<lvrVector>(5)->getElementPos(lvArg()), -1);
}

// --- clear, releaseData, finalize ----------------------------------------------------------------

TEST(VectorClear, ReleasesTheElementsAndKeepsArrayAndStart) {
  RingVector const vector(5, 3, {1, 2, 3});
  lvArg const value = string("value");
  vector->insert(value, -1);
  lvArg* const array = Layout::elements(*vector);
  EXPECT_TRUE(vector->clear());
  EXPECT_EQ(vector->getSize(), 0);
  EXPECT_EQ(Layout::elements(*vector), array);
  expectRing(*vector, 3, ". . . . . ");
  EXPECT_EQ(countOf(value), 1);
}

TEST(VectorClear, OfAnEmptyVectorAnswersTrue) {
  EXPECT_TRUE(Held<lvrVector>(5)->clear());
  EXPECT_TRUE(Held<lvrVector>(-1)->clear());
}

TEST(VectorClear, ReleasesFromTheFirstElementOn) {
  std::string log;
  RingVector const vector(3, 2, {});
  for (char const* const name : {"a ", "b ", "c "}) {
    vector->insert(logging(log, name), -1);
  }
  vector->clear();
  EXPECT_EQ(log, "a b c ");
}

TEST(VectorReleaseData, ReleasesAllSlotsFromTheLastOn) {
  std::string log;
  RingVector const vector(3, 2, {});
  for (char const* const name : {"a ", "b ", "c "}) {
    vector->insert(logging(log, name), -1);
  }
  EXPECT_EQ(vector->releaseData(), 0);
  EXPECT_EQ(log, "a c b ");
}

TEST(VectorReleaseData, FreesTheArrayAndForgetsTheHash) {
  RingVector const vector(5, 3, {1, 2, 3});
  EXPECT_NE(vector->hashCode(), 0U);
  EXPECT_EQ(vector->releaseData(), 0);
  EXPECT_EQ(Layout::elements(*vector), nullptr);
  EXPECT_EQ(Layout::alloced(*vector), 0);
  EXPECT_EQ(vector->getSize(), 0);
  EXPECT_EQ(Layout::flags(*vector), 0U);
  EXPECT_EQ(vector->hashCode(), 0U);
}

TEST(VectorReleaseData, WithoutAnArrayChangesNothing) {
  Held<lvrVector> const vector(-1);
  EXPECT_EQ(vector->releaseData(), 0);
  EXPECT_EQ(Layout::flags(*vector), 1U);
}

TEST(VectorReleaseData, LeavesAVectorThatGrowsToTen) {
  Held<lvrVector> const vector(3);
  append(*vector, {1, 2});
  vector->releaseData();
  EXPECT_TRUE(vector->insert(integer(7), -1));
  expectRing(*vector, 0, "7 . . . . . . . . . ");
}

TEST(VectorFinalize, ReleasesTheDataAndDoesNoHarmTheSecondTime) {
  Held<lvrVector> const vector(3);
  lvArg const value = string("value");
  vector->insert(value, -1);
  EXPECT_EQ(vector->finalize(), 0);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(Layout::elements(*vector), nullptr);
  EXPECT_EQ(vector->finalize(), 0);
}

TEST(VectorFinalize, RunsWhenTheLastReferenceGoes) {
  test::Probe::Log log;
  {
    lvVector const outer(1);
    lvVector const middle(1);
    lvHashMap const inner(1);
    inner->put(integer(1), *new test::Probe(log));
    middle->insert(inner, -1);
    outer->insert(middle, -1);
    outer->insert(middle, -1);
    EXPECT_EQ(countOf(middle), 3);
  }
  EXPECT_EQ(log.finalized, 1);
  EXPECT_EQ(log.destroyed, 1);
}

TEST(VectorFinalize, EndsTheProcessWhenAnElementThrows) {
  EXPECT_EXIT(
      {
        lvVector const vector(3);
        vector->insert(acting([] { throw 1; }), -1);
      },
      ::testing::KilledBySignal(SIGABRT), "");
}

// --- hashCode ------------------------------------------------------------------------------------

TEST(VectorHash, IsComputedFromTheLastElementToTheFirst) {
  RingVector const vector(5, 4, {1, 2});
  unsigned const hashOfOne = 0U - 23456U + 69845U;
  unsigned const hashOfTwo = 0U - 2U * 23456U + 69845U;
  EXPECT_EQ(vector->hashCode(), (74641U * 2U * 4294938761U + hashOfTwo) * 4294938761U + hashOfOne);
}

TEST(VectorHash, DependsOnTheOrder) {
  RingVector const vector(5, 0, {1, 2});
  RingVector const other(5, 0, {2, 1});
  EXPECT_NE(vector->hashCode(), other->hashCode());
}

TEST(VectorHash, DependsOnTheElementsOnly) {
  RingVector const vector(5, 4, {1, 2});
  RingVector const other(2, 0, {1, 2});
  EXPECT_EQ(vector->hashCode(), other->hashCode());
}

TEST(VectorHash, CountsNilElements) {
  Held<lvrVector> const vector(5);
  vector->insert(lvArg(), -1);
  EXPECT_EQ(vector->hashCode(), 74641U * 4294938761U + 19567U);
}

TEST(VectorHash, IsComputedAfreshAfterInsertAndRemove) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2, 3});
  EXPECT_EQ(vector->hashCode(), hashOf(*vector));
  vector->insert(integer(4), 1);
  EXPECT_EQ(vector->hashCode(), hashOf(*vector));
  vector->remove(0);
  EXPECT_EQ(vector->hashCode(), hashOf(*vector));
  vector->remove(integer(4));
  EXPECT_EQ(vector->hashCode(), hashOf(*vector));
}

TEST(VectorHash, OfAnEmptiedVectorIsZero) {
  Held<lvrVector> const vector(5);
  append(*vector, {1});
  vector->hashCode();
  vector->remove(0);
  EXPECT_EQ(vector->hashCode(), 0U);
}

TEST(VectorHash, IsKeptUntilTheNextChange) {
  int asked = 0;
  class Counting : public lvReferencable {
   public:
    explicit Counting(int& counter) : counter_(counter) {}
    unsigned int hashCode() const override {
      ++counter_;
      return 5;
    }

   private:
    int& counter_;
  };
  Held<lvrVector> const vector(5);
  vector->insert(*new Counting(asked), -1);
  vector->hashCode();
  vector->hashCode();
  vector->setAlloced(20);
  vector->hashCode();
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(Layout::hashCache(*vector), vector->hashCode());
}

TEST(VectorHash, IsTheHashOfACellThatHoldsTheVector) {
  Held<lvrVector> vector(5);
  append(*vector, {1});
  EXPECT_EQ(vector.cell().hashCode(), vector->hashCode());
}

// --- setAlloced ----------------------------------------------------------------------------------

TEST(VectorSetAlloced, ToMoreUnrollsTheRing) {
  RingVector const vector(4, 3, {1, 2, 3});
  EXPECT_EQ(vector->setAlloced(6), 6);
  expectRing(*vector, 0, "1 2 3 . . . ");
}

TEST(VectorSetAlloced, ToLessKeepsAllElements) {
  RingVector const vector(10, 8, {1, 2, 3, 4});
  EXPECT_EQ(vector->setAlloced(2), 4);
  expectRing(*vector, 0, "1 2 3 4 ");
}

TEST(VectorSetAlloced, ToTheSameLeavesTheArray) {
  RingVector const vector(4, 3, {1, 2, 3});
  lvArg* const array = Layout::elements(*vector);
  EXPECT_EQ(vector->setAlloced(4), 4);
  EXPECT_EQ(Layout::elements(*vector), array);
  expectRing(*vector, 3, "2 3 . 1 ");
}

TEST(VectorSetAlloced, ToANegativeNumberShrinksToFit) {
  RingVector const vector(10, 8, {1, 2, 3, 4});
  EXPECT_EQ(vector->setAlloced(-1), 4);
  expectRing(*vector, 0, "1 2 3 4 ");
  lvArg* const array = Layout::elements(*vector);
  EXPECT_EQ(vector->setAlloced(-100), 4);
  EXPECT_EQ(Layout::elements(*vector), array);
}

TEST(VectorSetAlloced, ToANegativeNumberFreesTheArrayOfAnEmptyVector) {
  for (int const size : {0, 5}) {
    Held<lvrVector> const vector(size);
    EXPECT_EQ(vector->setAlloced(-1), 0);
    EXPECT_EQ(Layout::elements(*vector), nullptr);
    EXPECT_EQ(Layout::alloced(*vector), 0);
  }
}

TEST(VectorSetAlloced, ToZeroOfAnEmptyVectorKeepsAnArrayOfNoCells) {
  Held<lvrVector> const vector(5);
  EXPECT_EQ(vector->setAlloced(0), 0);
  EXPECT_NE(Layout::elements(*vector), nullptr);
  EXPECT_EQ(Layout::alloced(*vector), 0);
}

TEST(VectorSetAlloced, WithoutAnArrayMakesOneForAPositiveNumberOnly) {
  Held<lvrVector> const vector(-1);
  EXPECT_EQ(vector->setAlloced(-1), 0);
  EXPECT_EQ(vector->setAlloced(0), 0);
  EXPECT_EQ(Layout::elements(*vector), nullptr);
  EXPECT_EQ(vector->setAlloced(3), 3);
  expectRing(*vector, 0, ". . . ");
}

TEST(VectorSetAlloced, ChangesNoCountAndNoHash) {
  Held<lvrVector> const vector(5);
  lvArg const value = string("value");
  vector->insert(value, -1);
  unsigned const hash = vector->hashCode();
  vector->setAlloced(20);
  EXPECT_EQ(countOf(value), 2);
  EXPECT_EQ(Layout::flags(*vector), 1U);
  EXPECT_EQ(vector->hashCode(), hash);
}

// A vector whose setAlloced() only answers.
class Unyielding : public lvrVector {
 public:
  explicit Unyielding(int answer) : lvrVector(2), answer_(answer) {}
  int setAlloced(int capacity) override {
    asked_ = capacity;
    return answer_;
  }
  int asked() const { return asked_; }

 private:
  int answer_;
  int asked_ = 0;
};

TEST(VectorOwnSetAlloced, IsAskedForHalfAsMuchAgainPlusTen) {
  Held<Unyielding> const vector(-12);
  append(*vector, {1, 2});
  EXPECT_EQ(vector->asked(), 0);
  append(*vector, {3});
  EXPECT_EQ(vector->asked(), 13);
}

TEST(VectorOwnSetAlloced, RefusesAnInsertByANegativeAnswer) {
  Held<Unyielding> const vector(-12);
  append(*vector, {1, 2});
  unsigned const hash = vector->hashCode();
  EXPECT_FALSE(vector->insert(integer(3), 0));
  EXPECT_EQ(elementsOf(*vector), "1 2 ");
  EXPECT_EQ(vector->hashCode(), hash);
}

TEST(VectorOwnSetAlloced, MakingNoRoomRefusesTheInsertToo) {
  Held<Unyielding> const vector(100);
  append(*vector, {1, 2});
  EXPECT_FALSE(vector->insert(integer(3), 1));
  EXPECT_EQ(elementsOf(*vector), "1 2 ");
}

TEST(VectorOwnSetAlloced, MayEmptyTheVector) {
  class Emptying : public lvrVector {
   public:
    Emptying() : lvrVector(2) {}
    int setAlloced(int capacity) override {
      releaseData();
      return lvrVector::setAlloced(capacity);
    }
  };
  Held<Emptying> const vector;
  append(*vector, {1, 2});
  EXPECT_FALSE(vector->insert(integer(3), 2));
  EXPECT_EQ(vector->getSize(), 0);
  EXPECT_TRUE(vector->insert(integer(4), -1));
  EXPECT_EQ(elementsOf(*vector), "4 ");
}

// A vector that counts what its operations call.
class Overriding : public lvrVector {
 public:
  Overriding() : lvrVector(2) {}
  using lvrVector::remove;
  lvArg remove(int index) override {
    ++removes;
    return lvrVector::remove(index);
  }
  int getElementPos(lvArg const& value) const override {
    ++searches;
    return lvrVector::getElementPos(value);
  }
  void vectorEvent(Action /*action*/, int /*index*/, lvArg const& /*value*/) override { ++events; }

  int removes = 0;
  mutable int searches = 0;
  int events = 0;
};

TEST(VectorRemoveValue, GoesThroughTheRemovalByPosition) {
  Held<Overriding> const vector;
  append(*vector, {1, 2, 3});
  EXPECT_EQ(vector->remove(integer(2)), 1);
  EXPECT_EQ(vector->removes, 1);
  EXPECT_EQ(vector->remove(integer(9)), 0);
  EXPECT_EQ(vector->removes, 1);
}

TEST(VectorRemoveValue, SearchesByItself) {
  Held<Overriding> const vector;
  append(*vector, {1, 2, 3});
  vector->remove(integer(2));
  EXPECT_EQ(vector->searches, 0);
}

TEST(VectorEvent, IsCalledByNoOperation) {
  Held<Overriding> const vector;
  append(*vector, {1, 2, 3});
  vector->remove(0);
  vector->remove(integer(2));
  vector->setAlloced(20);
  vector->clear();
  vector->releaseData();
  EXPECT_EQ(vector->events, 0);
}

TEST(VectorEvent, DoesNothing) {
  Held<lvrVector> const vector(3);
  append(*vector, {1, 2});
  lvArg const value = string("value");
  vector->vectorEvent(lvrVector::Action(), 0, value);
  EXPECT_EQ(elementsOf(*vector), "1 2 ");
  EXPECT_EQ(countOf(value), 1);
}

// --- Bookkeeping bits ----------------------------------------------------------------------------

// A vector of 1 and 2 in slots 1 and 2 of 4, whose slot 1 is marked.
class VectorBookkeeping : public ::testing::Test {
 protected:
  VectorBookkeeping() : ring(newRing(4, 1, {1, 2})), vector(4, 2, 1, ring) {
    setBookkeeping(ring[1], Marks);
  }
  void expectOnlySlotOneMarked() const {
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(bookkeepingOf(ring[i]), i == 1 ? Marks : 0U) << i;
    }
  }

  lvArg* ring;
  Held<lvrVector> vector;
};

TEST_F(VectorBookkeeping, StaysWithItsSlotWhenElementsShift) {
  vector->insert(integer(3), 1);
  expectRing(*vector, 1, ". 1 3 2 ");
  expectOnlySlotOneMarked();
  vector->remove(1);
  vector->remove(0);
  expectRing(*vector, 1, ". 2 . . ");
  expectOnlySlotOneMarked();
}

TEST_F(VectorBookkeeping, StaysWithItsSlotWhenTheStartMoves) {
  vector->insert(integer(3), 0);
  expectRing(*vector, 0, "3 1 2 . ");
  vector->insert(integer(4), 0);
  expectRing(*vector, 3, "3 1 2 4 ");
  vector->remove(0);
  expectRing(*vector, 0, "3 1 2 . ");
  expectOnlySlotOneMarked();
}

TEST_F(VectorBookkeeping, StaysWithItsSlotAfterClear) {
  vector->clear();
  expectOnlySlotOneMarked();
}

TEST_F(VectorBookkeeping, OfAnInsertedCellStaysOutside) {
  lvArg value = integer(3);
  setBookkeeping(value, 0x40);
  vector->insert(value, -1);
  expectOnlySlotOneMarked();
}

TEST_F(VectorBookkeeping, ComesAlongWithCopies) {
  EXPECT_EQ(bookkeepingOf(vector->at(0)), Marks);
  EXPECT_EQ(bookkeepingOf(vector->at(1)), 0U);
  EXPECT_EQ(bookkeepingOf(vector->remove(0)), Marks);
}

TEST_F(VectorBookkeeping, IsGoneFromANewArray) {
  vector->setAlloced(8);
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(bookkeepingOf(Layout::elements(*vector)[i]), 0U);
  }
}

// --- What runs while elements are released -------------------------------------------------------

TEST(VectorWhileReleasing, ShowsAnEmptyVectorToWhatClearReleases) {
  Held<lvrVector> const vector(5);
  int size = -1;
  vector->insert(acting([&] { size = vector->getSize(); }), -1);
  append(*vector, {1});
  vector->clear();
  EXPECT_EQ(size, 0);
}

TEST(VectorWhileReleasing, KeepsWhatIsInsertedDuringClear) {
  Held<lvrVector> const vector(5);
  for (int i = 0; i < 4; ++i) {
    vector->insert(acting([&vector, i] { vector->insert(integer(i), -1); }), -1);
  }
  EXPECT_TRUE(vector->clear());
  EXPECT_EQ(elementsOf(*vector), "0 1 2 3 ");
}

TEST(VectorWhileReleasing, LetsClearFreeTheArray) {
  Held<lvrVector> const vector(5);
  lvArg const value = string("value");
  vector->insert(acting([&vector] { vector->releaseData(); }), -1);
  vector->insert(value, -1);
  vector->clear();
  EXPECT_EQ(vector->getSize(), 0);
  EXPECT_EQ(countOf(value), 1);
  append(*vector, {1});
  EXPECT_EQ(elementsOf(*vector), "1 ");
}

TEST(VectorWhileReleasing, LetsClearRunInsideOfClear) {
  Held<lvrVector> const vector(5);
  lvArg const value = string("value");
  vector->insert(acting([&vector] { vector->clear(); }), -1);
  vector->insert(value, -1);
  vector->clear();
  EXPECT_EQ(vector->getSize(), 0);
  EXPECT_EQ(countOf(value), 1);
}

TEST(VectorWhileReleasing, LetsARemovedElementChangeTheVector) {
  Held<lvrVector> const vector(3);
  append(*vector, {1});
  vector->insert(acting([&vector] { vector->insert(integer(7), 0); }), -1);
  append(*vector, {2});
  vector->remove(1);
  EXPECT_EQ(elementsOf(*vector), "7 1 2 ");
  vector->insert(acting([&vector] { vector->releaseData(); }), 0);
  vector->remove(0);
  EXPECT_EQ(vector->getSize(), 0);
}

TEST(VectorWhileReleasing, LetsReleaseDataFillTheVectorAgain) {
  Held<lvrVector> const vector(3);
  vector->insert(acting([&vector] { vector->insert(integer(7), 0); }), -1);
  EXPECT_EQ(vector->releaseData(), 0);
  EXPECT_EQ(elementsOf(*vector), "7 ");
}

TEST(VectorWhileReleasing, ReleasesWhatIsInsertedIntoAVectorThatGoes) {
  lvArg const late = string("late");
  {
    auto& vector = *new lvrVector(3);
    lvArg const holder(vector);
    vector.insert(acting([&vector, &late] { vector.insert(late, -1); }), -1);
  }
  EXPECT_EQ(countOf(late), 1);
}

}  // namespace
