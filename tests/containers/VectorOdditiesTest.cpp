// What looks like a mistake in the vector, and is not.

#include <gtest/gtest.h>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/Rings.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

using test::append;
using test::elementsOf;
using test::Held;
using test::integer;
using test::RingVector;
using test::slotsOf;
using Layout = test::VectorLayout;

TEST(VectorOddities, AClearedVectorReportsTheHashItHadBefore) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2});
  unsigned const before = vector->hashCode();
  vector->clear();
  EXPECT_EQ(vector->hashCode(), before);
  EXPECT_NE(before, 0U);
}

TEST(VectorOddities, AClearedVectorForgetsTheOldHashWithTheNextInsert) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2});
  unsigned const before = vector->hashCode();
  vector->clear();
  append(*vector, {3});
  EXPECT_EQ(vector->hashCode(), 74641U * 4294938761U + integer(3).hashCode());
  EXPECT_NE(vector->hashCode(), before);
}

TEST(VectorOddities, AClearedVectorKeepsTheOldHashThroughARemovalThatFindsNothing) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2});
  unsigned const before = vector->hashCode();
  vector->clear();
  vector->remove(-1);
  EXPECT_EQ(vector->hashCode(), before);
}

TEST(VectorOddities, AVectorClearedBeforeItsHashWasAskedHashesAsAnEmptyOne) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2});
  vector->clear();
  EXPECT_EQ(vector->hashCode(), 0U);
}

TEST(VectorOddities, MergeDoesNothingAndAnswersFalse) {
  Held<lvrVector> const vector(5);
  Held<lvrVector> const other(5);
  append(*vector, {1, 2});
  append(*other, {3});
  EXPECT_FALSE(vector->merge(*other));
  EXPECT_FALSE(vector->merge(*vector));
  EXPECT_EQ(elementsOf(*vector), "1 2 ");
  EXPECT_EQ(elementsOf(*other), "3 ");
}

TEST(VectorOddities, OnlyTheReadOnlyCursorIsOffered) {
  Held<lvrVector> const vector(5);
  append(*vector, {1});
  EXPECT_EQ(vector->getListIterator(), nullptr);
  EXPECT_EQ(vector->getListRWIterator(), nullptr);
}

TEST(VectorOddities, RemovalTakesMinusOneForTheLastElementButAtDoesNot) {
  Held<lvrVector> const vector(5);
  append(*vector, {1, 2});
  EXPECT_TRUE(vector->at(-1).isNil());
  EXPECT_EQ(vector->remove(-1).getInt(), 2);
}

TEST(VectorOddities, ReleasedDataLeaveTheStartWhereItWas) {
  RingVector const vector(20, 15, {1});
  vector->releaseData();
  EXPECT_EQ(Layout::start(*vector), 15);
  append(*vector, {1, 2, 3});
  EXPECT_EQ(slotsOf(*vector), ". . . . . 1 2 3 . . ");
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
}

TEST(VectorOddities, AnEmptyVectorKeepsItsStartInANewArray) {
  RingVector const vector(20, 15, {});
  EXPECT_EQ(vector->setAlloced(6), 6);
  EXPECT_EQ(Layout::start(*vector), 15);
  append(*vector, {1, 2, 3, 4});
  EXPECT_EQ(slotsOf(*vector), "4 . . 1 2 3 ");
  vector->insert(integer(0), 0);
  EXPECT_EQ(Layout::start(*vector), 2);
  EXPECT_EQ(elementsOf(*vector), "0 1 2 3 4 ");
}

TEST(VectorOddities, AnIntegerIsNotFoundByItsText) {
  Held<lvrVector> const vector(5);
  append(*vector, {42});
  EXPECT_EQ(vector->getElementPos(test::string("42")), -1);
  EXPECT_EQ(vector->remove(test::string("42")), 0);
}

TEST(VectorOddities, TheHashOfAnEmptyVectorIsZeroEvenWhenComputed) {
  RingVector const vector(3, 0, {});
  EXPECT_EQ(Layout::flags(*vector), 0U);
  EXPECT_EQ(vector->hashCode(), 0U);
  EXPECT_EQ(Layout::flags(*vector), 1U);
}

}  // namespace
