// Values when memory runs out.

#include <gtest/gtest.h>

#include <new>

#include "support/Allocations.h"
#include "support/CellWords.h"
#include "support/Cells.h"
#include "tarselvalues/core/lvValue.h"

namespace {

using test::Allocations;
using test::bookkeepingOf;
using test::countOf;
using test::integer;
using test::Marks;
using test::setBookkeeping;
using test::string;
using test::textOf;

// Whether `act` runs out of memory at its first allocation.
template <class Act>
bool failsAtOnce(Act const& act) {
  Allocations::instance().failAfter = 0;
  bool failed = false;
  try {
    act();
  } catch (std::bad_alloc const&) {
    failed = true;
  }
  Allocations::instance().failAfter = -1;
  return failed;
}

TEST(ValueOutOfMemory, LeavesTheOldStringInPlace) {
  lvValue value(string("old"));
  setBookkeeping(value, Marks);
  EXPECT_TRUE(failsAtOnce([&] { value.setString("new", -1, lvrString::CopyAndOwn); }));
  EXPECT_EQ(textOf(value), "old");
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(bookkeepingOf(value), Marks);
}

TEST(ValueOutOfMemory, LeavesTheCellOfAFastSetterAsItWas) {
  lvValue value(integer(4));
  EXPECT_TRUE(failsAtOnce([&] { value.setStringFast("new", -1, lvrString::CopyAndOwn); }));
  EXPECT_EQ(value.getInt(), 4);
}

TEST(ValueOutOfMemory, LeavesAValueUnconverted) {
  lvValue const value(integer(4));
  int const alive = Allocations::instance().alive();
  EXPECT_TRUE(failsAtOnce([&] { value.toString(); }));
  EXPECT_EQ(Allocations::instance().alive(), alive);
  EXPECT_EQ(value.getInt(), 4);
}

TEST(ValueMemory, IsGivenBackWithTheLastCell) {
  int const alive = Allocations::instance().alive();
  {
    lvValue value;
    value.setString("text", -1, lvrString::CopyAndOwn);
    lvValue const text = lvValue(integer(4)).toString();
    EXPECT_EQ(Allocations::instance().alive(), alive + 2);
  }
  EXPECT_EQ(Allocations::instance().alive(), alive);
}

TEST(ArgMemory, IsNotNeededByCells) {
  lvArg const text = string("text");
  EXPECT_FALSE(failsAtOnce([&] {
    lvArg cell(text);
    lvArg const copy(cell);
    cell = integer(4);
    cell.setReferencable(*copy.getReferencable());
    cell.setPointer(&cell);
    cell.setNil();
  }));
}

}  // namespace
