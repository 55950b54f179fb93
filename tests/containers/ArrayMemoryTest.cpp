// What the tuple set and the stack allocate, and what becomes of them when memory runs out.
//
// The program is linked with --wrap for malloc, calloc, realloc and free: the array of a set comes
// from calloc and realloc, all the rest from operator new.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include "support/Callocs.h"
#include "support/Pairs.h"
#include "support/Stacks.h"

namespace {

using test::cellsOf;
using test::countOf;
using test::entriesOf;
using test::EqualKeysSet;
using test::Held;
using test::integer;
using test::Mallocs;
using test::OutOfMemory;
using test::pushUpTo;
using test::putEach;
using test::putUpTo;
using test::roomOf;
using test::StackLayout;
using test::string;
using ::testing::ExitedWithCode;
using ::testing::IsEmpty;
using SetLayout = test::SetLayout;

constexpr int GrowthExit = 13;

// Whether `action` ends with std::bad_alloc when no more than `after` allocations succeed.
template <class Action>
bool runsOutOfMemory(Action const& action, int after = 0) {
  OutOfMemory const out(after);
  try {
    action();
  } catch (std::bad_alloc const&) {
    return true;
  }
  return false;
}

// How often `action` asks for memory.
template <class Action>
int allocationsOf(Action const& action) {
  constexpr int plenty = 1000000;
  OutOfMemory const counted(plenty);
  action();
  return plenty - Mallocs::failAfter;
}

// How many blocks `action` leaves behind.
template <class Action>
int leftBy(Action const& action) {
  int const before = Mallocs::alive;
  action();
  return Mallocs::alive - before;
}

// --- The tuple set -------------------------------------------------------------------------------

// A set of the keys 1 and 2 without room for more.
class TupleSetMemory : public ::testing::Test {
 protected:
  TupleSetMemory() : set(2, 3U, 0U) { putEach(*set, {1, 2}); }
  void expectUnchanged() const { EXPECT_EQ(roomOf(*set), "1=10 2=20 "); }

  Held<lvrTupleSet> set;
};

using TupleSetMemoryForGrowth = TupleSetMemory;

TEST(TupleSetMemoryOfANewSet, IsTheObjectAndItsArray) {
  EXPECT_EQ(allocationsOf([] { Held<lvrTupleSet> const set(7, 1U, 0U); }), 2);
  EXPECT_EQ(allocationsOf([] { Held<lvrTupleSet> const set(0, 1U, 0U); }), 1);
  EXPECT_EQ(allocationsOf([] { Held<lvrTupleSet> const set(-1, 1U, 0U); }), 1);
}

TEST(TupleSetMemoryOfANewSet, WhenMissingForTheArrayFreesTheObject) {
  EXPECT_EQ(leftBy([] {
              EXPECT_TRUE(runsOutOfMemory([] { Held<lvrTupleSet> const set(7, 1U, 0U); }, 1));
              EXPECT_TRUE(runsOutOfMemory([] { lvrTupleSet::defaultCtorMethod(); }, 1));
              EXPECT_TRUE(runsOutOfMemory([] { lvrTupleSet::defaultCtorMethod(); }, 0));
            }),
            0);
}

TEST_F(TupleSetMemory, IsNotTouchedByReading) {
  EXPECT_EQ(allocationsOf([this] {
              set->get(integer(1));
              set->search(integer(3), nullptr);
              set->getKey(0);
              set->getValue(1);
              set->expand(2);
            }),
            0);
}

TEST_F(TupleSetMemory, IsEnoughForReplacingRemovingClearingAndFillingAgain) {
  EXPECT_EQ(allocationsOf([this] {
              set->put(integer(1), integer(11));
              set->setValue(1, integer(22), nullptr);
              set->put(integer(3), lvArg());
              set->put(integer(2), lvArg());
              putEach(*set, {0});
              set->clear();
              putEach(*set, {6, 5});
            }),
            0);
  EXPECT_EQ(roomOf(*set), "5=50 6=60 ");
}

TEST_F(TupleSetMemory, GrowsByOneCallForAllPairs) {
  EXPECT_EQ(allocationsOf([this] { putEach(*set, {3}); }), 1);
  EXPECT_EQ(SetLayout::allocated(*set), 5);
  EXPECT_EQ(allocationsOf([this] { putEach(*set, {4, 5}); }), 0);
}

TEST_F(TupleSetMemory, OfTheOldArrayIsFreedByGrowth) {
  EXPECT_EQ(leftBy([this] { putUpTo(*set, 100); }), 0);
}

TEST(TupleSetMemoryOfASet, IsFreedWithIt) {
  EXPECT_EQ(leftBy([] {
              Held<lvrTupleSet> const set(0, 1U, 0U);
              for (int i = 0; i < 20; ++i) {
                set->put(string(std::to_string(i)), string("value"));
              }
              set->removeEntry(5);
            }),
            0);
}

TEST(TupleSetMemoryOfASet, IsFreedWithThePairsThatLeftIt) {
  EXPECT_EQ(leftBy([] {
              EqualKeysSet const set;
              set->put(integer(1), string("value"));
              set->put(integer(1), string("value"));
              set->put(integer(1), string("value"));
              set->clear();
            }),
            0);
}

TEST_F(TupleSetMemory, OfACursorIsFreedWithIt) {
  EXPECT_EQ(leftBy([this] {
              std::unique_ptr<lviRealMapEnumerator> const enumerator(set->getEnumerator());
              std::unique_ptr<lviRealMapIterator> const iterator(set->getIterator());
              iterator->next();
            }),
            0);
}

TEST_F(TupleSetMemory, MissingForACursorIsReported) {
  EXPECT_TRUE(runsOutOfMemory([this] { delete set->getEnumerator(); }));
  EXPECT_TRUE(runsOutOfMemory([this] { delete set->getIterator(); }));
  expectUnchanged();
}

// --- When a set cannot grow ----------------------------------------------------------------------

TEST(ArrayMemoryOddities, ASetThatCannotGrowEndsTheProcessWithoutAWord) {
  for (int const key : {0, 2, 9}) {
    Held<lvrTupleSet> const full(2, 3U, 0U);
    putEach(*full, {1, 3});
    EXPECT_EXIT(
        {
          OutOfMemory const out;
          full->put(integer(key), integer(1));
        },
        ExitedWithCode(GrowthExit), IsEmpty());
  }
}

TEST(ArrayMemoryOddities, ASetThatCannotGrowForAnEqualKeyEndsTheProcessToo) {
  EqualKeysSet const full(2);
  putEach(*full, {1, 2});
  EXPECT_EXIT(
      {
        OutOfMemory const out;
        full->put(integer(1), integer(1));
      },
      ExitedWithCode(GrowthExit), IsEmpty());
}

TEST_F(TupleSetMemoryForGrowth, IsNotNeededByAPutThatInsertsNothing) {
  OutOfMemory const out;
  EXPECT_EQ(set->put(integer(1), integer(11)), 0);
  EXPECT_EQ(set->put(integer(3), lvArg()), 0);
  EXPECT_EQ(set->put(integer(2), lvArg()), 0);
  EXPECT_EQ(set->put(integer(3), integer(30)), 0);
  EXPECT_EQ(set->get(integer(1)).getInt(), 11);
  EXPECT_EQ(set->get(integer(3)).getInt(), 30);
}

TEST_F(TupleSetMemoryForGrowth, WhenMissingForTheFirstPairLeavesTheSetEmpty) {
  Held<lvrTupleSet> const empty(0, 4U, 0U);
  lvArg const key = string("key");
  lvArg const value = string("value");
  lvArg old = integer(77);
  {
    OutOfMemory const out;
    EXPECT_EQ(empty->put(key, value, &old), 0);
  }
  EXPECT_EQ(empty->getSize(), 0);
  EXPECT_TRUE(empty->get(key).isNil());
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(old.getInt(), 77);
}

TEST_F(TupleSetMemoryForGrowth, AfterItWasMissingMakesTheArray) {
  Held<lvrTupleSet> const empty(0, 4U, 0U);
  {
    OutOfMemory const out;
    empty->put(integer(1), integer(1));
  }
  putEach(*empty, {2, 1});
  EXPECT_EQ(entriesOf(*empty), "1=10 2=20 ");
}

TEST_F(TupleSetMemoryForGrowth, WhenMissingIsReportedByExpandAndLosesThePairs) {
  {
    OutOfMemory const out;
    EXPECT_EQ(set->expand(3), -12);
  }
  EXPECT_EQ(SetLayout::entries(*set), nullptr);
  EXPECT_EQ(SetLayout::allocated(*set), 5);
  EXPECT_TRUE(set->get(integer(1)).isNil());
  EXPECT_TRUE(set->getKey(0).isNil());
  EXPECT_TRUE(set->getValue(0).isNil());
  EXPECT_EQ(set->setValue(0, integer(1), nullptr), 0);
  EXPECT_EQ(set->clear(), 0);
}

TEST_F(TupleSetMemoryForGrowth, WhenMissingRaisesTheRoomToWhatWasNeeded) {
  OutOfMemory const out;
  EXPECT_EQ(set->expand(50), -12);
  EXPECT_EQ(SetLayout::allocated(*set), 50);
}

TEST_F(TupleSetMemoryForGrowth, WhenMissingReleasesThePairs) {
  EXPECT_EQ(leftBy([] {
              Held<lvrTupleSet> const full(1, 1U, 0U);
              full->put(string("key"), string("value"));
              OutOfMemory const out;
              EXPECT_EQ(full->expand(2), -12);
            }),
            0);
}

TEST_F(TupleSetMemoryForGrowth, WhenMissingReleasesAPairThatLeftTheSetToo) {
  lvArg const value = string("value");
  EqualKeysSet const equalKeys(2);
  equalKeys->put(integer(1), value);
  equalKeys->put(integer(1), integer(11));
  {
    OutOfMemory const out;
    EXPECT_EQ(equalKeys->expand(3), -12);
  }
  EXPECT_EQ(countOf(value), 1);
}

TEST_F(TupleSetMemoryForGrowth, ThatCanNeverBeThereIsMissing) {
  OutOfMemory const out;
  EXPECT_EQ(set->expand(INT_MAX), -12);
  EXPECT_EQ(SetLayout::entries(*set), nullptr);
  EXPECT_EQ(set->getSize(), 0);
}

TEST_F(TupleSetMemoryForGrowth, AfterItWasMissingStartsAgainWithOneStep) {
  {
    OutOfMemory const out;
    set->expand(1000000);
  }
  putEach(*set, {3});
  EXPECT_EQ(roomOf(*set), "3=30 . . ");
}

TEST_F(TupleSetMemoryForGrowth, WhenMissingLeavesCursorsOnNothing) {
  std::unique_ptr<lviRealMapIterator> const cursor(set->getIterator());
  cursor->next();
  {
    OutOfMemory const out;
    set->expand(3);
  }
  EXPECT_TRUE(cursor->getKey().isNil());
  EXPECT_TRUE(cursor->getValue().isNil());
  EXPECT_EQ(cursor->remove(), -2);
  EXPECT_FALSE(cursor->next());
}

// --- The stack -----------------------------------------------------------------------------------

// A stack of 1, 2 and 3 without room for more.
class StackMemory : public ::testing::Test {
 protected:
  StackMemory() : stack(3) { pushUpTo(*stack, 3); }

  Held<lvrStack> stack;
};

TEST(StackMemoryOfANewStack, IsTheObjectAndItsArray) {
  EXPECT_EQ(allocationsOf([] { Held<lvrStack> const stack(7); }), 2);
  EXPECT_EQ(allocationsOf([] { Held<lvrStack> const stack(0); }), 2);
  EXPECT_EQ(allocationsOf([] { Held<lvrStack> const stack(-1); }), 1);
}

TEST(StackMemoryOfANewStack, WhenMissingForTheArrayFreesTheObject) {
  EXPECT_EQ(leftBy([] {
              EXPECT_TRUE(runsOutOfMemory([] { Held<lvrStack> const stack(7); }, 1));
              EXPECT_TRUE(runsOutOfMemory([] { lvrStack::defaultCtorMethod(); }, 1));
              EXPECT_TRUE(runsOutOfMemory([] { lvrStack::defaultCtorMethod(); }, 0));
            }),
            0);
}

TEST_F(StackMemory, MissingForGrowthLeavesTheStackAsItWas) {
  unsigned const hash = stack->hashCode();
  lvArg const value = string("value");
  EXPECT_TRUE(runsOutOfMemory([&] { stack->push(value); }));
  EXPECT_EQ(cellsOf(*stack), "1 2 3 ");
  EXPECT_EQ(stack->getSize(), 3);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(StackLayout::flags(*stack), 1U);
  EXPECT_EQ(stack->hashCode(), hash);
}

TEST_F(StackMemory, MissingForANewCapacityLeavesTheStackAsItWas) {
  for (int const capacity : {10, 3, -1}) {
    EXPECT_TRUE(runsOutOfMemory([&] { stack->setAlloced(capacity); })) << capacity;
    EXPECT_EQ(cellsOf(*stack), "1 2 3 ");
  }
}

TEST_F(StackMemory, IsEnoughForPoppingPushingAndPoking) {
  EXPECT_EQ(allocationsOf([this] {
              for (int i = 0; i < 100; ++i) {
                stack->pop();
                stack->poke(integer(i));
                stack->push(integer(i));
                stack->hashCode();
              }
            }),
            0);
  EXPECT_EQ(cellsOf(*stack), "1 99 99 ");
}

TEST_F(StackMemory, OfTheOldArrayIsFreedByGrowth) {
  EXPECT_EQ(leftBy([this] { pushUpTo(*stack, 100); }), 0);
  EXPECT_EQ(leftBy([this] { stack->setAlloced(1000); }), 0);
}

TEST_F(StackMemory, IsTakenByEveryNewCapacityEvenTheOldOne) {
  EXPECT_EQ(allocationsOf([this] { stack->setAlloced(3); }), 1);
}

TEST_F(StackMemory, OfTheArrayIsFreedByReleaseData) {
  EXPECT_EQ(leftBy([this] { stack->releaseData(); }), -1);
}

TEST(StackMemoryOfAStack, IsFreedWithIt) {
  EXPECT_EQ(leftBy([] {
              Held<lvrStack> const stack(0);
              for (int i = 0; i < 100; ++i) {
                stack->push(string("value"));
              }
              stack->pop();
            }),
            0);
}

}  // namespace
