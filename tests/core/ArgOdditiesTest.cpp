#include <gtest/gtest.h>

#include <climits>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "tarselvalues/core/lvArg.h"

namespace {

using test::bookkeepingOf;
using test::countOf;
using test::integer;
using test::marked;
using test::Marks;
using test::OtherMarks;
using test::Probe;
using test::string;

TEST(ArgOddities, IntegerIsNotEquivalentToItsOwnText) {
  EXPECT_EQ(integer(42).equiv(string("42")), 0);
  EXPECT_EQ(string("42").equiv(integer(42)), 0);
}

TEST(ArgOddities, IntegersFarApartCompareTheWrongWayRound) {
  EXPECT_EQ(integer(INT_MIN).compareTo(integer(1)), INT_MAX);
  EXPECT_EQ(integer(INT_MAX).compareTo(integer(-1)), INT_MIN);
  EXPECT_EQ(integer(0).compareTo(integer(INT_MIN)), INT_MIN);
}

TEST(ArgOddities, TheThreeNumbersOfAConstructorAreIgnored) {
  lvArg const cell(lvArg::IntType, 7, 8);
  EXPECT_TRUE(cell.isNil());
  EXPECT_EQ(cell.getInt(), -1);
  EXPECT_TRUE(cell.eq(lvArg(0, 0, 0)));
}

TEST(ArgOddities, AssigningLeavesTheBookkeepingBitsOfTheSourceBehind) {
  lvArg const source = marked(integer(3), OtherMarks);
  lvArg cell = marked(lvArg(), Marks);
  cell.assign(source);
  EXPECT_EQ(bookkeepingOf(cell), Marks);
  cell.assignFast(source);
  EXPECT_EQ(bookkeepingOf(cell), Marks);
}

TEST(ArgOddities, EqualTextsAreEquivalentButNotEq) {
  lvArg const one = string("text");
  lvArg const other = string("text");
  EXPECT_EQ(one.equiv(other), 1);
  EXPECT_FALSE(one.eq(other));
}

TEST(ArgOddities, AReferenceUnderATagWithoutReferenceFlagIsNeverDropped) {
  Probe::Log log;
  auto& probe = *new Probe(log);
  {
    lvArg cell;
    cell.setReferencableFast(probe, lvArg::PointerType);
    EXPECT_EQ(cell.getPointer(), static_cast<lvReferencable*>(&probe));
  }
  EXPECT_EQ(countOf(probe), 1);
  EXPECT_EQ(probe.__removeRef(), 1);
}

}  // namespace
