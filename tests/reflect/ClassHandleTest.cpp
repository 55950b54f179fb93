#include <gtest/gtest.h>

#include <utility>

#include "support/Cells.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

using test::countOf;
using test::integer;

test::Probe::Log instanceLog;

lvReferencable* makeInstance() { return new test::Probe(instanceLog); }

lvClass pointClass() { return lvClass(0, lvString("Point"), makeInstance); }

// ---- Making ------------------------------------------------------------------------------------

TEST(ClassHandleConstructor, MakesANewUnnamedClass) {
  lvClass const handle;
  EXPECT_EQ(handle.getType(), lvArg::ClassType);
  EXPECT_EQ(countOf(handle), 1);
  EXPECT_TRUE(handle.getClassDesc().isNil());
  EXPECT_EQ(handle->instantiateDefaultObject(), nullptr);
  EXPECT_FALSE(handle.eq(lvClass()));
}

TEST(ClassHandleConstructor, MakesAClassWithNameAndConstructor) {
  lvString const name("Point");
  lvClass const handle(5, name, makeInstance);
  EXPECT_EQ(handle.getType(), lvArg::ClassType);
  EXPECT_EQ(countOf(handle), 1);
  EXPECT_TRUE(handle.getClassDesc().eq(name));
  EXPECT_EQ(lvArg(*handle->instantiateDefaultObject()).getType(), lvArg::ObjectType);
  lvArg superClass = integer(1);
  handle->getSuperClass(superClass);
  EXPECT_TRUE(superClass.isNil());
}

TEST(ClassHandleConstructor, MakesAClassWithASuperclass) {
  lvClass const base;
  lvString const name("Point");
  lvClass const handle(5, name, base, makeInstance);
  EXPECT_TRUE(handle.getClassDesc().eq(name));
  EXPECT_EQ(lvArg(*handle->instantiateDefaultObject()).getType(), lvArg::ObjectType);
  lvArg superClass;
  handle->getSuperClass(superClass);
  EXPECT_TRUE(superClass.eq(base));
}

TEST(ClassHandleConstructor, MakesAClassWithoutSuperclassFromANilHandle) {
  lvClass const none{lvArg()};
  lvClass const handle(0, lvString("Point"), none, nullptr);
  EXPECT_EQ(handle->setSuperClass(lvClass()), 0);
}

TEST(ClassHandleConstructor, TakesTheReferenceOfATemporaryOver) {
  lvClass const first = pointClass();
  lvArg cell = first;
  lvClass const handle(std::move(cell));
  EXPECT_TRUE(cell.isNil());  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(handle.eq(first));
  EXPECT_EQ(countOf(first), 2);
}

TEST(ClassHandleConstructor, LeavesATemporaryThatHoldsNoClassAlone) {
  lvArg cell = integer(1);
  EXPECT_TRUE(lvClass(std::move(cell)).isNil());
  EXPECT_EQ(cell.getInt(), 1);  // NOLINT(bugprone-use-after-move)
}

TEST(ClassHandleConstructor, SharesTheClassOfACell) {
  lvClass const first = pointClass();
  lvArg const cell = first;
  lvClass const second(cell);
  EXPECT_TRUE(second.eq(first));
  EXPECT_EQ(second.getType(), lvArg::ClassType);
  EXPECT_EQ(countOf(first), 3);
}

TEST(ClassHandleConstructor, LeavesTheBookkeepingBitsOfTheCellBehind) {
  lvArg cell = pointClass();
  test::setBookkeeping(cell, 0xFFE0);
  EXPECT_EQ(test::bookkeepingOf(lvClass(cell)), 0U);
}

TEST(ClassHandleConstructor, OfAnyOtherValueIsNil) {
  EXPECT_TRUE(lvClass(lvArg()).isNil());
  EXPECT_TRUE(lvClass(integer(27)).isNil());
  EXPECT_TRUE(lvClass(test::pointer(27)).isNil());
  EXPECT_TRUE(lvClass(lvString("Point")).isNil());
  EXPECT_TRUE(lvClass(lvArg(*makeInstance())).isNil());
  EXPECT_TRUE(lvClass(lvArg(*lvrHashMap::defaultCtorMethod())).isNil());
  EXPECT_TRUE(lvClass(lvArg(*lvrVector::defaultCtorMethod())).isNil());
}

TEST(ClassHandleConstructor, TakesNoReferenceToAnyOtherValue) {
  lvArg const text = test::string("Point");
  lvClass const handle(text);
  EXPECT_EQ(countOf(text), 1);
}

TEST(ClassHandle, SharesItsClassWithItsCopies) {
  lvClass const first = pointClass();
  lvClass second = first;
  EXPECT_EQ(countOf(first), 2);
  second = lvClass();
  EXPECT_EQ(countOf(first), 1);
}

TEST(ClassHandle, DropsItsReference) {
  lvArg cell;
  {
    lvClass const handle = pointClass();
    cell = handle;
    EXPECT_EQ(countOf(cell), 2);
  }
  EXPECT_EQ(countOf(cell), 1);
}

TEST(ClassHandle, IsACellWithoutFieldsOfItsOwn) { EXPECT_EQ(sizeof(lvClass), sizeof(lvArg)); }

// ---- Asking ------------------------------------------------------------------------------------

TEST(ClassHandleGetClassDesc, AnswersTheNameOfTheClassItHolds) {
  lvArg const name = test::string("Point");
  lvClass const handle(0, name, nullptr);
  EXPECT_TRUE(handle.getClassDesc().eq(name));
  EXPECT_EQ(countOf(name), 2);
}

TEST(ClassHandleGetClassDesc, AnswersANameThatIsNoString) {
  EXPECT_EQ(lvClass(0, integer(5), nullptr).getClassDesc().getInt(), 5);
}

TEST(ClassHandleGetClassDesc, AnswersNilWithoutClass) {
  EXPECT_TRUE(lvClass(lvArg()).getClassDesc().isNil());
  lvClass released = pointClass();
  released.releaseData();
  EXPECT_TRUE(released.getClassDesc().isNil());
}

// Answers another name than the one it was made with.
class RenamedClass : public lvrClass {
 public:
  int getClassName(lvArg& out) const override { return out.setInt(77); }
};

TEST(ClassHandleGetClassDesc, AsksTheClassThroughTheVirtualFunction) {
  lvClass const handle{lvArg(*new RenamedClass)};
  EXPECT_EQ(handle.getClassDesc().getInt(), 77);
}

TEST(ClassHandleGetClass, AnswersTheClassItHolds) {
  auto* const described = new lvrClass;
  lvClass const handle{lvArg(*described)};
  EXPECT_EQ(handle.getClass(), described);
  EXPECT_EQ(handle.operator->(), described);
}

TEST(ClassHandleGetClass, AnswersNullWithoutClass) {
  lvClass handle{lvArg()};
  EXPECT_EQ(handle.getClass(), nullptr);
  EXPECT_EQ(handle.operator->(), nullptr);
  handle.setInt(5);
  EXPECT_EQ(handle.getClass(), nullptr);
}

TEST(ClassHandleGetClass, AnswersNullForAnObjectThatIsNone) {
  lvClass handle;
  handle.setReferencable(*makeInstance());
  EXPECT_EQ(handle.getClass(), nullptr);
  lvArg mistagged;
  mistagged.setReferencableFast(*makeInstance(), lvArg::ClassType);
  EXPECT_EQ(lvClass(mistagged).getClass(), nullptr);
}

}  // namespace
