// What looks like a mistake in the stack, and is not.

#include <gtest/gtest.h>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/Stacks.h"
#include "tarselvalues/containers/lvHashMap.h"

namespace {

using test::Held;
using test::integer;
using test::pushEach;
using Layout = test::StackLayout;

TEST(StackOddities, ACellThatHoldsAStackHasTheMapTag) {
  Held<lvrStack> stack(7);
  EXPECT_EQ(stack.cell().getType(), lvArg::MapType);
  EXPECT_EQ(lvLayoutAccess<lvReferencable>::typeByte(*stack), 0x80);
}

TEST(StackOddities, AMapHandleHoldsAStackButFindsNoMapInIt) {
  Held<lvrStack> stack(7);
  lvHashMap const handle(stack.cell());
  EXPECT_EQ(handle.getReferencable(), &*stack);
  EXPECT_EQ(handle.getMap(), nullptr);
}

TEST(StackOddities, PokeKeepsAHashThatWasComputedBefore) {
  Held<lvrStack> const stack(7);
  pushEach(*stack, {1, 2});
  unsigned const hash = stack->hashCode();
  EXPECT_EQ(stack->poke(integer(3)).getInt(), 2);
  EXPECT_EQ(stack->hashCode(), hash);
  stack->push(integer(4));
  stack->pop();
  EXPECT_NE(stack->hashCode(), hash);
}

TEST(StackOddities, PokeBeforeTheHashIsComputedCounts) {
  Held<lvrStack> const stack(7);
  Held<lvrStack> const other(7);
  pushEach(*stack, {1, 2});
  stack->poke(integer(3));
  pushEach(*other, {1, 3});
  EXPECT_EQ(stack->hashCode(), other->hashCode());
}

TEST(StackOddities, StacksOfEqualElementsHashAlikeButAreNotEquivalent) {
  Held<lvrStack> const stack(7);
  Held<lvrStack> const other(3);
  pushEach(*stack, {1, 2});
  pushEach(*other, {1, 2});
  EXPECT_EQ(stack->hashCode(), other->hashCode());
  EXPECT_EQ(stack->equiv(*other), 0);
}

TEST(StackOddities, AStackWithoutDataReportsTheHashItHadBefore) {
  Held<lvrStack> const stack(7);
  pushEach(*stack, {1, 2});
  unsigned const hash = stack->hashCode();
  stack->releaseData();
  EXPECT_EQ(stack->hashCode(), hash);
  EXPECT_NE(hash, 0U);
}

TEST(StackOddities, AStackThatLostItsDataUnhashedHashesAsAnEmptyOne) {
  Held<lvrStack> const stack(7);
  pushEach(*stack, {1, 2});
  stack->releaseData();
  EXPECT_EQ(Layout::flags(*stack), 0U);
  EXPECT_EQ(stack->hashCode(), 0U);
}

TEST(StackOddities, TheArrayIsMadeAnewEvenForTheRoomThatItHas) {
  Held<lvrStack> const stack(7);
  pushEach(*stack, {1, 2});
  lvArg const* const array = Layout::elements(*stack);
  EXPECT_EQ(stack->setAlloced(7), 7);
  EXPECT_NE(Layout::elements(*stack), array);
  EXPECT_EQ(test::cellsOf(*stack), "1 2 . . . . . ");
}

}  // namespace
