#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <string>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/Stacks.h"
#include "tarselvalues/containers/lvHashMap.h"

namespace {

using test::acting;
using test::bookkeepingOf;
using test::cellsOf;
using test::countOf;
using test::fromTop;
using test::Held;
using test::integer;
using test::logging;
using test::pushEach;
using test::pushUpTo;
using test::setBookkeeping;
using test::string;
using test::textOf;
using Layout = test::StackLayout;

// A stack of 1, 2 and 3, which is the top, with room for two more.
class StackOfThree : public ::testing::Test {
 protected:
  StackOfThree() : stack(5) { pushEach(*stack, {1, 2, 3}); }

  Held<lvrStack> stack;
};

using StackPush = StackOfThree;
using StackPop = StackOfThree;
using StackPoke = StackOfThree;
using StackPeek = StackOfThree;
using StackHash = StackOfThree;
using StackSetAlloced = StackOfThree;
using StackReleaseData = StackOfThree;
using StackFinalize = StackOfThree;
using StackWhileReleasing = StackOfThree;

// The hash of the elements, from the top to the bottom.
unsigned hashOf(lviStack const& stack) {
  unsigned hash = 74641U * static_cast<unsigned>(stack.getSize());
  for (int depth = 0; depth < stack.getSize(); ++depth) {
    hash = hash * 4294938761U + stack.peek(depth).hashCode();
  }
  return hash;
}

// --- Making --------------------------------------------------------------------------------------

TEST(StackNew, HasTheRoomThatItIsMadeWith) {
  Held<lvrStack> const stack(3);
  EXPECT_EQ(stack->getSize(), 0);
  EXPECT_TRUE(stack->isEmpty());
  EXPECT_EQ(cellsOf(*stack), ". . . ");
}

TEST(StackNew, OfSizeZeroHasAnArrayOfNoCells) {
  Held<lvrStack> const stack(0);
  EXPECT_NE(Layout::elements(*stack), nullptr);
  EXPECT_EQ(Layout::alloced(*stack), 0);
}

TEST(StackNew, OfANegativeSizeHasNoArray) {
  for (int const size : {-1, INT_MIN}) {
    Held<lvrStack> const stack(size);
    EXPECT_EQ(Layout::elements(*stack), nullptr);
    EXPECT_EQ(Layout::alloced(*stack), 0);
    EXPECT_EQ(stack->getSize(), 0);
  }
}

TEST(StackNew, CutsTheRoomToTheLimit) {
  EXPECT_EQ(Layout::alloced(*Held<lvrStack>(65535)), 65535);
  EXPECT_EQ(Layout::alloced(*Held<lvrStack>(65536)), 65535);
  EXPECT_EQ(Layout::alloced(*Held<lvrStack>(INT_MAX)), 65535);
}

TEST(StackNew, KnowsTheHashOfNoElements) {
  Held<lvrStack> const stack(7);
  EXPECT_EQ(Layout::flags(*stack), 1U);
  EXPECT_EQ(stack->hashCode(), 0U);
}

TEST(StackNew, MadeByNameHasRoomForSeven) {
  lvReferencable* const made = lvrStack::defaultCtorMethod();
  EXPECT_EQ(countOf(*made), 0);
  lvArg const holder(*made);
  auto const& stack = dynamic_cast<lvrStack&>(*made);
  EXPECT_EQ(Layout::alloced(stack), 7);
  EXPECT_EQ(stack.getSize(), 0);
}

TEST(StackNew, IsOfTheClassStack) {
  Held<lvrStack> const stack(7);
  EXPECT_EQ(textOf(stack->getClassDesc()), "Stack");
  EXPECT_TRUE(stack->getClassDesc().eq(lvString("Stack")));
  EXPECT_EQ(&stack->getClassDesc(), &lvrStack::getStaticClassDesc());
}

TEST(StackNew, IsEquivalentToItselfOnly) {
  Held<lvrStack> const stack(7);
  Held<lvrStack> const other(7);
  EXPECT_EQ(stack->equiv(*stack), 1);
  EXPECT_EQ(stack->equiv(*other), 0);
}

TEST(StackNew, IsOrderedByItsAddress) {
  Held<lvrStack> const stack(7);
  Held<lvrStack> const other(7);
  EXPECT_EQ(stack->compareTo(*stack), 0);
  EXPECT_EQ(stack->compareTo(*other) < 0, &*stack < &*other);
}

TEST(StackNew, KeepsTheHooksOfTheBase) {
  Held<lvrStack> const stack(7);
  EXPECT_EQ(stack->__mark(), 0);
  EXPECT_EQ(stack->__hook(), 0);
  EXPECT_TRUE(stack->getValue().isNil());
}

// --- push ----------------------------------------------------------------------------------------

TEST_F(StackPush, PutsTheValueOnTop) {
  EXPECT_EQ(stack->push(string("new")), 0);
  EXPECT_EQ(stack->getSize(), 4);
  EXPECT_EQ(cellsOf(*stack), "1 2 3 'new' . ");
}

TEST_F(StackPush, GrowsToTenAndThenByHalfPlusTen) {
  Held<lvrStack> const growing(0);
  pushUpTo(*growing, 1);
  EXPECT_EQ(Layout::alloced(*growing), 10);
  pushUpTo(*growing, 9);
  EXPECT_EQ(Layout::alloced(*growing), 10);
  pushUpTo(*growing, 1);
  EXPECT_EQ(Layout::alloced(*growing), 25);
  pushUpTo(*growing, 15);
  EXPECT_EQ(Layout::alloced(*growing), 47);
}

TEST_F(StackPush, GrowsFromNoArray) {
  Held<lvrStack> const bare(-1);
  EXPECT_EQ(bare->push(integer(1)), 0);
  EXPECT_EQ(cellsOf(*bare), "1 . . . . . . . . . ");
}

TEST_F(StackPush, KeepsTheOrderWhenItGrows) {
  pushEach(*stack, {4, 5, 6});
  EXPECT_EQ(cellsOf(*stack), "1 2 3 4 5 6 . . . . . . . . . . . ");
}

TEST_F(StackPush, StoresNilAsAnElement) {
  EXPECT_EQ(stack->push(lvArg()), 0);
  EXPECT_EQ(stack->getSize(), 4);
  EXPECT_EQ(fromTop(*stack), "nil 3 2 1 ");
}

TEST_F(StackPush, TakesOneReference) {
  lvArg const value = string("value");
  for (int i = 1; i <= 30; ++i) {
    stack->push(value);
    EXPECT_EQ(countOf(value), i + 1);
  }
}

TEST_F(StackPush, TakesAnElementOfTheArrayThatItReplaces) {
  Held<lvrStack> const full(2);
  full->push(string("first"));
  full->push(string("second"));
  EXPECT_EQ(full->push(full->peek(1)), 0);
  EXPECT_EQ(fromTop(*full), "'first' 'second' 'first' ");
}

// --- pop -----------------------------------------------------------------------------------------

TEST_F(StackPop, GivesTheTopAndRemovesIt) {
  EXPECT_EQ(stack->pop().getInt(), 3);
  EXPECT_EQ(stack->getSize(), 2);
  EXPECT_EQ(cellsOf(*stack), "1 2 . . . ");
  EXPECT_EQ(stack->pop().getInt(), 2);
  EXPECT_EQ(stack->pop().getInt(), 1);
  EXPECT_TRUE(stack->isEmpty());
}

TEST_F(StackPop, FromAnEmptyStackGivesNil) {
  Held<lvrStack> const empty(3);
  EXPECT_TRUE(empty->pop().isNil());
  EXPECT_TRUE(Held<lvrStack>(-1)->pop().isNil());
  EXPECT_EQ(empty->getSize(), 0);
  EXPECT_EQ(Layout::flags(*empty), 1U);
}

TEST_F(StackPop, HandsTheReferenceOver) {
  lvArg const value = string("value");
  stack->push(value);
  lvArg const popped = stack->pop();
  EXPECT_TRUE(popped.eq(value));
  EXPECT_EQ(countOf(value), 2);
}

TEST_F(StackPop, NeverShrinksTheArray) {
  pushUpTo(*stack, 8);
  while (!stack->isEmpty()) {
    stack->pop();
  }
  EXPECT_EQ(Layout::alloced(*stack), 17);
}

TEST_F(StackPop, AfterGrowthGivesTheLastReference) {
  lvArg const value = string("value");
  stack->push(value);
  pushUpTo(*stack, 100);
  for (int i = 0; i < 100; ++i) {
    stack->pop();
  }
  EXPECT_TRUE(stack->pop().eq(value));
  EXPECT_EQ(countOf(value), 1);
}

// --- poke ----------------------------------------------------------------------------------------

TEST_F(StackPoke, ReplacesTheTopAndGivesThePreviousOne) {
  EXPECT_EQ(stack->poke(string("new")).getInt(), 3);
  EXPECT_EQ(stack->getSize(), 3);
  EXPECT_EQ(cellsOf(*stack), "1 2 'new' . . ");
}

TEST_F(StackPoke, OnAnEmptyStackGivesNilAndStoresNothing) {
  Held<lvrStack> const empty(3);
  EXPECT_TRUE(empty->poke(integer(1)).isNil());
  EXPECT_EQ(cellsOf(*empty), ". . . ");
  EXPECT_EQ(empty->getSize(), 0);
  EXPECT_TRUE(Held<lvrStack>(-1)->poke(integer(1)).isNil());
}

TEST_F(StackPoke, StoresNil) {
  EXPECT_EQ(stack->poke(lvArg()).getInt(), 3);
  EXPECT_EQ(fromTop(*stack), "nil 2 1 ");
}

TEST_F(StackPoke, HandsTheReferenceOver) {
  lvArg const value = string("value");
  stack->poke(value);
  EXPECT_EQ(countOf(value), 2);
  lvArg const previous = stack->poke(integer(1));
  EXPECT_TRUE(previous.eq(value));
  EXPECT_EQ(countOf(value), 2);
}

TEST_F(StackPoke, TakesAnElementOfTheStack) {
  stack->push(string("top"));
  EXPECT_EQ(textOf(stack->poke(stack->peek(0))), "top");
  EXPECT_EQ(textOf(stack->poke(stack->peek(1))), "top");
  EXPECT_EQ(fromTop(*stack), "3 3 2 1 ");
}

// --- peek, getSize, isEmpty ----------------------------------------------------------------------

TEST_F(StackPeek, ReachesFromTheTopToTheBottom) {
  EXPECT_EQ(stack->peek(0).getInt(), 3);
  EXPECT_EQ(stack->peek(1).getInt(), 2);
  EXPECT_EQ(stack->peek(2).getInt(), 1);
}

TEST_F(StackPeek, BelowTheBottomIsTheConstantNil) {
  for (int const depth : {3, 4, 5, 65535, INT_MAX, -1, INT_MIN}) {
    EXPECT_EQ(&stack->peek(depth), &lvArg::NilValue) << depth;
  }
  EXPECT_EQ(&Held<lvrStack>(3)->peek(0), &lvArg::NilValue);
  EXPECT_EQ(&Held<lvrStack>(-1)->peek(0), &lvArg::NilValue);
}

TEST_F(StackPeek, BorrowsTheCellItself) {
  lvArg const value = string("value");
  stack->push(value);
  EXPECT_EQ(&stack->peek(0), Layout::elements(*stack) + 3);
  EXPECT_EQ(&stack->peek(3), Layout::elements(*stack));
  EXPECT_EQ(countOf(value), 2);
}

// A stack that has a size of its own to tell.
class Boasting : public lvrStack {
 public:
  explicit Boasting(int told) : lvrStack(3), told_(told) {}
  int getSize() const override { return told_; }

 private:
  int told_;
};

TEST(StackIsEmpty, AsksForTheSize) {
  Held<Boasting> const small(0);
  pushEach(*small, {1});
  EXPECT_TRUE(small->isEmpty());
  EXPECT_FALSE(Held<Boasting>(5)->isEmpty());
}

TEST(StackIsEmpty, DecidesWhetherPokeStores) {
  Held<Boasting> const small(0);
  pushEach(*small, {1});
  EXPECT_TRUE(small->poke(integer(2)).isNil());
  EXPECT_EQ(cellsOf(*small), "1 . . ");
}

TEST(StackIsEmpty, LetsPokeStoreInNoStackWithoutElements) {
  Held<Boasting> const large(5);
  EXPECT_TRUE(large->poke(integer(2)).isNil());
  EXPECT_EQ(cellsOf(*large), ". . . ");
}

// --- The interface -------------------------------------------------------------------------------

TEST(StackInterface, LeadsToTheSameStack) {
  Held<lvrStack> const stack(0);
  lviStack& interface = *stack;
  EXPECT_TRUE(interface.isEmpty());
  EXPECT_EQ(interface.push(integer(1)), 0);
  EXPECT_EQ(interface.push(integer(2)), 0);
  EXPECT_EQ(interface.peek(0).getInt(), 2);
  EXPECT_EQ(interface.peek(1).getInt(), 1);
  EXPECT_TRUE(interface.peek(2).isNil());
  EXPECT_EQ(interface.poke(integer(3)).getInt(), 2);
  EXPECT_EQ(interface.pop().getInt(), 3);
  EXPECT_EQ(interface.getSize(), 1);
  EXPECT_EQ(stack->getSize(), 1);
}

// --- hashCode ------------------------------------------------------------------------------------

TEST_F(StackHash, IsComputedFromTheTopToTheBottom) {
  Held<lvrStack> const two(5);
  pushEach(*two, {1, 2});
  unsigned const hashOfOne = 0U - 23456U + 69845U;
  unsigned const hashOfTwo = 0U - 2U * 23456U + 69845U;
  EXPECT_EQ(two->hashCode(), (74641U * 2U * 4294938761U + hashOfTwo) * 4294938761U + hashOfOne);
}

TEST_F(StackHash, CountsNilElements) {
  Held<lvrStack> const nils(5);
  nils->push(lvArg());
  EXPECT_EQ(nils->hashCode(), 74641U * 4294938761U + 19567U);
}

TEST_F(StackHash, IsComputedAfreshAfterPushAndPop) {
  EXPECT_EQ(stack->hashCode(), hashOf(*stack));
  stack->push(string("text"));
  EXPECT_EQ(Layout::flags(*stack), 0U);
  EXPECT_EQ(stack->hashCode(), hashOf(*stack));
  EXPECT_EQ(Layout::flags(*stack), 1U);
  stack->pop();
  EXPECT_EQ(Layout::flags(*stack), 0U);
  EXPECT_EQ(stack->hashCode(), hashOf(*stack));
}

TEST_F(StackHash, OfAnEmptiedStackIsZero) {
  stack->hashCode();
  while (!stack->isEmpty()) {
    stack->pop();
  }
  EXPECT_EQ(stack->hashCode(), 0U);
}

TEST_F(StackHash, IsComputedOnceOnly) {
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
  stack->push(*new Counting(asked));
  unsigned const hash = stack->hashCode();
  stack->peek(0);
  stack->setAlloced(20);
  EXPECT_EQ(stack->hashCode(), hash);
  EXPECT_EQ(asked, 1);
}

TEST_F(StackHash, IsTheHashOfACellThatHoldsTheStack) {
  EXPECT_EQ(stack.cell().hashCode(), stack->hashCode());
}

// --- setAlloced ----------------------------------------------------------------------------------

TEST_F(StackSetAlloced, ToMoreKeepsTheElements) {
  EXPECT_EQ(stack->setAlloced(7), 7);
  EXPECT_EQ(cellsOf(*stack), "1 2 3 . . . . ");
  EXPECT_EQ(stack->getSize(), 3);
}

TEST_F(StackSetAlloced, ToLessKeepsAllElements) {
  EXPECT_EQ(stack->setAlloced(2), 3);
  EXPECT_EQ(cellsOf(*stack), "1 2 3 ");
  EXPECT_EQ(stack->setAlloced(0), 3);
  EXPECT_EQ(fromTop(*stack), "3 2 1 ");
}

TEST_F(StackSetAlloced, ToANegativeNumberShrinksToFit) {
  EXPECT_EQ(stack->setAlloced(-1), 3);
  EXPECT_EQ(cellsOf(*stack), "1 2 3 ");
  EXPECT_EQ(stack->setAlloced(INT_MIN), 3);
}

TEST_F(StackSetAlloced, ToANegativeNumberFreesTheArrayOfAnEmptyStack) {
  for (int const size : {0, 5}) {
    Held<lvrStack> const empty(size);
    EXPECT_EQ(empty->setAlloced(-1), 0);
    EXPECT_EQ(Layout::elements(*empty), nullptr);
    EXPECT_EQ(Layout::alloced(*empty), 0);
  }
}

TEST_F(StackSetAlloced, ToZeroOfAnEmptyStackKeepsAnArrayOfNoCells) {
  Held<lvrStack> const empty(5);
  EXPECT_EQ(empty->setAlloced(0), 0);
  EXPECT_NE(Layout::elements(*empty), nullptr);
  EXPECT_EQ(Layout::alloced(*empty), 0);
}

TEST_F(StackSetAlloced, WithoutAnArrayMakesOneForAPositiveNumberOnly) {
  Held<lvrStack> const bare(-1);
  EXPECT_EQ(bare->setAlloced(-1), 0);
  EXPECT_EQ(bare->setAlloced(0), 0);
  EXPECT_EQ(Layout::elements(*bare), nullptr);
  EXPECT_EQ(bare->setAlloced(3), 3);
  EXPECT_EQ(cellsOf(*bare), ". . . ");
}

TEST_F(StackSetAlloced, ChangesNoCountAndNoHash) {
  lvArg const value = string("value");
  stack->push(value);
  unsigned const hash = stack->hashCode();
  stack->setAlloced(20);
  EXPECT_EQ(countOf(value), 2);
  EXPECT_EQ(Layout::flags(*stack), 1U);
  EXPECT_EQ(stack->hashCode(), hash);
}

// A stack whose setAlloced() only answers.
class Unyielding : public lvrStack {
 public:
  explicit Unyielding(int answer) : lvrStack(2), answer_(answer) {}
  int setAlloced(int capacity) override {
    asked = capacity;
    return answer_;
  }

  int asked = 0;

 private:
  int answer_;
};

TEST(StackOwnSetAlloced, IsAskedForHalfAsMuchAgainPlusTen) {
  Held<Unyielding> const stack(-7);
  pushEach(*stack, {1, 2});
  EXPECT_EQ(stack->asked, 0);
  pushEach(*stack, {3});
  EXPECT_EQ(stack->asked, 13);
}

TEST(StackOwnSetAlloced, RefusesAPushByANegativeAnswer) {
  Held<Unyielding> const stack(-7);
  lvArg const value = string("value");
  pushEach(*stack, {1, 2});
  unsigned const hash = stack->hashCode();
  EXPECT_EQ(stack->push(value), -7);
  EXPECT_EQ(cellsOf(*stack), "1 2 ");
  EXPECT_EQ(stack->getSize(), 2);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(Layout::flags(*stack), 1U);
  EXPECT_EQ(stack->hashCode(), hash);
}

TEST(StackOwnSetAlloced, MakingNoRoomRefusesThePushToo) {
  Held<Unyielding> const stack(100);
  pushEach(*stack, {1, 2});
  EXPECT_EQ(stack->push(integer(3)), -12);
  EXPECT_EQ(cellsOf(*stack), "1 2 ");
  EXPECT_EQ(stack->getSize(), 2);
}

// --- The limits ----------------------------------------------------------------------------------

TEST(StackLimits, AreReachedByPushing) {
  Held<lvrStack> const stack(0);
  pushUpTo(*stack, 65535);
  EXPECT_EQ(stack->getSize(), 65535);
  EXPECT_EQ(Layout::alloced(*stack), 65535);
  EXPECT_EQ(stack->peek(0).getInt(), 65535);
  EXPECT_EQ(stack->peek(65534).getInt(), 1);
}

TEST(StackLimits, RefuseOneMoreAndChangeNothing) {
  Held<lvrStack> const stack(65535);
  lvArg const value = string("value");
  pushUpTo(*stack, 65535);
  unsigned const hash = stack->hashCode();
  lvArg const* const array = Layout::elements(*stack);
  EXPECT_EQ(stack->push(value), -12);
  EXPECT_EQ(stack->getSize(), 65535);
  EXPECT_EQ(stack->peek(0).getInt(), 65535);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(Layout::elements(*stack), array);
  EXPECT_EQ(Layout::flags(*stack), 1U);
  EXPECT_EQ(stack->hashCode(), hash);
  stack->pop();
  EXPECT_EQ(stack->push(value), 0);
}

TEST(StackLimits, HoldForRequestedRoom) {
  Held<lvrStack> const stack(1);
  pushEach(*stack, {1});
  EXPECT_EQ(stack->setAlloced(65536), 65535);
  EXPECT_EQ(stack->setAlloced(INT_MAX), 65535);
  EXPECT_EQ(fromTop(*stack), "1 ");
}

// --- releaseData, finalize -----------------------------------------------------------------------

TEST_F(StackReleaseData, ReleasesTheElementsAndFreesTheArray) {
  lvArg const value = string("value");
  stack->push(value);
  EXPECT_EQ(stack->releaseData(), 0);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(Layout::elements(*stack), nullptr);
  EXPECT_EQ(Layout::alloced(*stack), 0);
  EXPECT_EQ(stack->getSize(), 0);
  EXPECT_TRUE(stack->pop().isNil());
}

TEST_F(StackReleaseData, ReleasesFromTheTopDown) {
  std::string log;
  for (char const* const name : {"a ", "b ", "c "}) {
    stack->push(logging(log, name));
  }
  stack->releaseData();
  EXPECT_EQ(log, "c b a ");
}

TEST_F(StackReleaseData, DoesNoHarmTheSecondTime) {
  stack->releaseData();
  EXPECT_EQ(stack->releaseData(), 0);
  EXPECT_EQ(Held<lvrStack>(-1)->releaseData(), 0);
}

TEST_F(StackReleaseData, LeavesAStackThatGrowsToTen) {
  stack->releaseData();
  EXPECT_EQ(stack->push(integer(7)), 0);
  EXPECT_EQ(cellsOf(*stack), "7 . . . . . . . . . ");
}

TEST_F(StackFinalize, ReleasesTheData) {
  lvArg const value = string("value");
  stack->push(value);
  EXPECT_EQ(stack->finalize(), 0);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(Layout::elements(*stack), nullptr);
  EXPECT_EQ(stack->finalize(), 0);
}

TEST_F(StackFinalize, RunsWhenTheLastReferenceGoes) {
  test::Probe::Log log;
  {
    Held<lvrStack> const outer(1);
    Held<lvrStack> inner(1);
    inner->push(*new test::Probe(log));
    outer->push(inner.cell());
  }
  EXPECT_EQ(log.finalized, 1);
  EXPECT_EQ(log.destroyed, 1);
}

TEST_F(StackFinalize, IsMadeUpForByTheDestructor) {
  lvArg const value = string("value");
  auto* const unheld = new lvrStack(3);
  unheld->push(value);
  delete unheld;
  EXPECT_EQ(countOf(value), 1);
}

TEST_F(StackFinalize, EndsTheProcessWhenAnElementThrows) {
  EXPECT_EXIT(
      {
        Held<lvrStack> const throwing(3);
        throwing->push(acting([] { throw 1; }));
      },
      ::testing::KilledBySignal(SIGABRT), "");
}

// --- What runs while elements are released -------------------------------------------------------

TEST_F(StackWhileReleasing, ShowsAnEmptyStackToWhatReleaseDataReleases) {
  int size = -1;
  stack->push(acting([&] { size = stack->getSize(); }));
  stack->releaseData();
  EXPECT_EQ(size, 0);
}

TEST_F(StackWhileReleasing, KeepsWhatIsPushedDuringReleaseData) {
  stack->push(acting([this] { pushUpTo(*stack, 3); }));
  EXPECT_EQ(stack->releaseData(), 0);
  EXPECT_EQ(fromTop(*stack), "3 2 1 ");
}

TEST_F(StackWhileReleasing, LetsAPoppedElementChangeTheStack) {
  stack->push(acting([this] { pushUpTo(*stack, 20); }));
  stack->pop();
  EXPECT_EQ(stack->getSize(), 23);
  stack->push(acting([this] { stack->releaseData(); }));
  stack->pop();
  EXPECT_EQ(stack->getSize(), 0);
}

TEST_F(StackWhileReleasing, LetsAPokedOutElementChangeTheStack) {
  stack->push(acting([this] { stack->releaseData(); }));
  stack->poke(integer(4));
  EXPECT_EQ(stack->getSize(), 0);
}

TEST_F(StackWhileReleasing, ReleasesWhatIsPushedOntoAStackThatGoes) {
  lvArg const late = string("late");
  {
    auto& going = *new lvrStack(3);
    lvArg const holder(going);
    going.push(acting([&going, &late] { going.push(late); }));
  }
  EXPECT_EQ(countOf(late), 1);
}

// --- stackEvent ----------------------------------------------------------------------------------

class EventCounting : public lvrStack {
 public:
  EventCounting() : lvrStack(0) {}
  void stackEvent(Action /*action*/, int /*index*/, lvArg const& /*value*/) override { ++events; }

  int events = 0;
};

TEST(StackEvent, IsCalledByNoOperation) {
  Held<EventCounting> const stack;
  pushEach(*stack, {1, 2});
  stack->poke(integer(3));
  stack->pop();
  stack->peek(0);
  stack->hashCode();
  stack->setAlloced(20);
  stack->releaseData();
  EXPECT_EQ(stack->events, 0);
}

TEST(StackEvent, DoesNothing) {
  Held<lvrStack> const stack(3);
  lvArg const value = string("value");
  pushEach(*stack, {1, 2});
  stack->stackEvent(lvrStack::Action(), 0, value);
  EXPECT_EQ(cellsOf(*stack), "1 2 . ");
  EXPECT_EQ(countOf(value), 1);
}

// --- Bookkeeping bits ----------------------------------------------------------------------------

// A stack of 1, 2 and 3 whose top cell is marked.
class StackBookkeeping : public StackOfThree {
 protected:
  StackBookkeeping() { setBookkeeping(const_cast<lvArg&>(stack->peek(0)), Marks); }
  unsigned marksOfTheThird() const { return bookkeepingOf(Layout::elements(*stack)[2]); }

  static constexpr unsigned Marks = 0x20;
};

TEST_F(StackBookkeeping, StaysWithItsCellThroughPokePopAndPush) {
  stack->poke(integer(4));
  EXPECT_EQ(marksOfTheThird(), Marks);
  stack->pop();
  EXPECT_EQ(marksOfTheThird(), Marks);
  lvArg value = integer(5);
  setBookkeeping(value, 0x40);
  stack->push(value);
  EXPECT_EQ(marksOfTheThird(), Marks);
}

TEST_F(StackBookkeeping, ComesAlongWithCopies) {
  EXPECT_EQ(bookkeepingOf(stack->poke(integer(4))), Marks);
  EXPECT_EQ(bookkeepingOf(stack->pop()), Marks);
}

TEST_F(StackBookkeeping, IsGoneFromANewArray) {
  stack->setAlloced(8);
  EXPECT_EQ(marksOfTheThird(), 0U);
}

}  // namespace
