#include "tarselvalues/reflect/lvrClass.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/Cells.h"
#include "support/Slots.h"
#include "tarselvalues/reflect/LayoutAccess.h"

namespace {

using test::countOf;
using test::integer;

// Counts the instances that it was asked for.
int instancesMade = 0;
test::Probe::Log instanceLog;

lvReferencable* makeInstance() {
  ++instancesMade;
  return new test::Probe(instanceLog);
}

lvArg nameOf(lvrClass const& described) {
  lvArg name = integer(-99);
  EXPECT_EQ(described.getClassName(name), 0);
  return name;
}

lvArg superClassOf(lvrClass const& described) {
  lvArg superClass = integer(-99);
  EXPECT_EQ(described.getSuperClass(superClass), 0);
  return superClass;
}

// A descriptor held by a cell.
lvArg newClass() { return lvArg(*new lvrClass); }

// ---- Making ------------------------------------------------------------------------------------

TEST(ClassConstructor, MakesAnUnnamedClassWithoutSuperclassAndInstances) {
  lvrClass const described;
  EXPECT_TRUE(nameOf(described).isNil());
  EXPECT_TRUE(superClassOf(described).isNil());
  EXPECT_EQ(described.instantiateDefaultObject(), nullptr);
  EXPECT_EQ(countOf(described), 0);
}

TEST(ClassConstructor, MakesAnObjectOfTheClassKind) {
  lvArg const cell = newClass();
  EXPECT_EQ(cell.getReferencable()->getKind(), lvReferencable::ClassKind);
  EXPECT_EQ(lvLayoutAccess<lvReferencable>::typeByte(*cell.getReferencable()), 0xB0);
  EXPECT_EQ(cell.getType(), lvArg::ClassType);
  EXPECT_EQ(int{cell.getType()}, 27);
}

TEST(ClassConstructor, TakesANameAndAConstructor) {
  lvString const name("Point");
  lvrClass const described(7, name, makeInstance);
  EXPECT_TRUE(nameOf(described).eq(name));
  EXPECT_TRUE(superClassOf(described).isNil());
  lvArg const instance(*described.instantiateDefaultObject());
  EXPECT_EQ(instance.getType(), lvArg::ObjectType);
}

TEST(ClassConstructor, TakesASuperclassToo) {
  lvArg const base = newClass();
  lvString const name("Point");
  lvrClass const described(7, name, base, makeInstance);
  EXPECT_TRUE(nameOf(described).eq(name));
  EXPECT_TRUE(superClassOf(described).eq(base));
  lvArg const instance(*described.instantiateDefaultObject());
  EXPECT_EQ(instance.getType(), lvArg::ObjectType);
}

TEST(ClassConstructor, TakesAnyCellsAsNameAndSuperclass) {
  lvrClass const described(0, integer(3), integer(4), nullptr);
  EXPECT_EQ(nameOf(described).getInt(), 3);
  EXPECT_EQ(superClassOf(described).getInt(), 4);
}

TEST(ClassConstructor, TakesReferencesToNameAndSuperclass) {
  lvArg const name = test::string("Point");
  lvArg const base = newClass();
  {
    lvrClass const described(0, name, base, nullptr);
    EXPECT_EQ(countOf(name), 2);
    EXPECT_EQ(countOf(base), 2);
  }
  EXPECT_EQ(countOf(name), 1);
  EXPECT_EQ(countOf(base), 1);
}

TEST(ClassConstructor, LeavesTheBookkeepingBitsOfItsArgumentsBehind) {
  lvArg name = test::string("Point");
  test::setBookkeeping(name, 0xFFE0);
  lvrClass const described(0, name, nullptr);
  lvArg out;
  described.getClassName(out);
  EXPECT_EQ(test::bookkeepingOf(out), 0U);
}

TEST(ClassOddities, NumberGivenToTheConstructorIsNotStored) {
  lvString const name("Point");
  lvrClass const first(1, name, nullptr);
  lvrClass const second(0xFFFFFFFFU, name, nullptr);
  EXPECT_TRUE(nameOf(first).eq(nameOf(second)));
  EXPECT_EQ(sizeof(lvrClass), lvLayoutAccess<lvrClass>::reflectionOffset + sizeof(void*));
}

TEST(ClassDefaultCtorMethod, MakesANewUnnamedClassEachTime) {
  lvArg const first(*lvrClass::defaultCtorMethod());
  lvArg const second(*lvrClass::defaultCtorMethod());
  EXPECT_FALSE(first.eq(second));
  EXPECT_EQ(countOf(first), 1);
  ASSERT_EQ(first.getType(), lvArg::ClassType);
  auto const& described = static_cast<lvrClass const&>(*first.getReferencable());
  EXPECT_TRUE(nameOf(described).isNil());
  EXPECT_TRUE(superClassOf(described).isNil());
}

// ---- Instances ---------------------------------------------------------------------------------

TEST(ClassInstantiateDefaultObject, AnswersWhatTheConstructorMakesEachTime) {
  instancesMade = 0;
  lvrClass const described(0, lvString("Point"), makeInstance);
  EXPECT_EQ(instancesMade, 0);
  std::unique_ptr<lvReferencable> const first(described.instantiateDefaultObject());
  std::unique_ptr<lvReferencable> const second(described.instantiateDefaultObject());
  EXPECT_EQ(instancesMade, 2);
  EXPECT_NE(first, second);
  EXPECT_EQ(countOf(*first), 0);
}

TEST(ClassInstantiateDefaultObject, AnswersNullWithoutConstructor) {
  EXPECT_EQ(lvrClass(0, lvString("Point"), nullptr).instantiateDefaultObject(), nullptr);
}

TEST(ClassInstantiateDefaultObject, HandsOnANullOfTheConstructor) {
  lvrClass const described(0, lvString("Point"), []() -> lvReferencable* { return nullptr; });
  EXPECT_EQ(described.instantiateDefaultObject(), nullptr);
}

// ---- Name and superclass -----------------------------------------------------------------------

TEST(ClassSetClassName, SetsItOnce) {
  lvrClass described;
  lvString const first("First");
  EXPECT_EQ(described.setClassName(first), 0);
  EXPECT_EQ(described.setClassName(lvString("Second")), -1);
  EXPECT_EQ(described.setClassName(first), -1);
  EXPECT_EQ(described.setClassName(lvArg()), -1);
  EXPECT_TRUE(nameOf(described).eq(first));
}

TEST(ClassSetClassName, IsRefusedAfterANameOfTheConstructor) {
  lvString const name("First");
  lvrClass described(0, name, nullptr);
  EXPECT_EQ(described.setClassName(lvString("Second")), -1);
  EXPECT_TRUE(nameOf(described).eq(name));
}

TEST(ClassSetClassName, OfNilLeavesTheNameToBeSet) {
  lvrClass described;
  EXPECT_EQ(described.setClassName(lvArg()), 0);
  EXPECT_EQ(described.setClassName(integer(5)), 0);
  EXPECT_EQ(nameOf(described).getInt(), 5);
}

TEST(ClassSetClassName, TakesNoReferenceWhenItRefuses) {
  lvrClass described(0, lvString("First"), nullptr);
  lvArg const name = test::string("Second");
  EXPECT_EQ(described.setClassName(name), -1);
  EXPECT_EQ(countOf(name), 1);
}

TEST(ClassGetClassName, ReplacesWhatTheCellHeldButItsBookkeepingBits) {
  lvString const name("Point");
  lvrClass const described(0, name, nullptr);
  test::Probe::Log log;
  lvArg out(*new test::Probe(log));
  test::setBookkeeping(out, 0x40);
  EXPECT_EQ(described.getClassName(out), 0);
  EXPECT_EQ(log.destroyed, 1);
  EXPECT_TRUE(out.eq(name));
  EXPECT_EQ(test::bookkeepingOf(out), 0x40U);
}

TEST(ClassSetSuperClass, SetsItOnce) {
  lvrClass described;
  lvArg const base = newClass();
  EXPECT_EQ(described.setSuperClass(base), 0);
  EXPECT_EQ(described.setSuperClass(newClass()), -1);
  EXPECT_EQ(described.setSuperClass(base), -1);
  EXPECT_TRUE(superClassOf(described).eq(base));
  EXPECT_EQ(countOf(base), 2);
}

TEST(ClassSetSuperClass, IsRefusedAfterASuperclassOfTheConstructor) {
  lvArg const base = newClass();
  lvrClass described(0, lvString("Point"), base, nullptr);
  EXPECT_EQ(described.setSuperClass(newClass()), -1);
  EXPECT_TRUE(superClassOf(described).eq(base));
}

TEST(ClassSetSuperClass, RefusesWhatIsNoClass) {
  lvrClass described;
  EXPECT_EQ(described.setSuperClass(integer(5)), -1);
  EXPECT_EQ(described.setSuperClass(lvArg()), -1);
  EXPECT_EQ(described.setSuperClass(lvString("Base")), -1);
  EXPECT_EQ(described.setSuperClass(test::pointer(4)), -1);
  EXPECT_EQ(described.setSuperClass(lvArg(*makeInstance())), -1);
  EXPECT_TRUE(superClassOf(described).isNil());
  EXPECT_EQ(described.setSuperClass(newClass()), 0);
}

TEST(ClassGetSuperClass, ReplacesWhatTheCellHeld) {
  lvrClass const described;
  test::Probe::Log log;
  lvArg out(*new test::Probe(log));
  EXPECT_EQ(described.getSuperClass(out), 0);
  EXPECT_EQ(log.destroyed, 1);
  EXPECT_TRUE(out.isNil());
}

// ---- As an object ------------------------------------------------------------------------------

TEST(ClassGetClassDesc, AnswersTheInternedNameOfClasses) {
  lvrClass const described(0, lvString("Point"), nullptr);
  EXPECT_TRUE(described.getClassDesc().eq(lvString("Class")));
  EXPECT_EQ(&described.getClassDesc(), &lvrClass::getStaticClassDesc());
}

TEST(ClassFinalize, ReleasesNothing) {
  lvArg const name = test::string("Point");
  lvArg const base = newClass();
  lvrClass described(0, name, base, nullptr);
  EXPECT_EQ(described.finalize(), 0);
  EXPECT_TRUE(nameOf(described).eq(name));
  EXPECT_TRUE(superClassOf(described).eq(base));
}

TEST(ClassDestructor, RunsWithTheLastReference) {
  test::Probe::Log log;
  lvArg name(*new test::Probe(log));
  lvArg cell(*new lvrClass(0, name, nullptr));
  name.setNil();
  EXPECT_EQ(log.destroyed, 0);
  cell.setNil();
  EXPECT_EQ(log.destroyed, 1);
}

TEST(ClassObject, IsEquivalentToItselfOnly) {
  lvString const name("Point");
  lvrClass const first(0, name, nullptr);
  lvrClass const second(0, name, nullptr);
  EXPECT_EQ(first.equiv(first), 1);
  EXPECT_EQ(first.equiv(second), 0);
  EXPECT_EQ(first.hashCode(), 0U);
  EXPECT_EQ(first.compareTo(first), 0);
  EXPECT_NE(first.compareTo(second), 0);
}

TEST(ClassObject, KeepsTheHooksOfItsBase) {
  lvrClass described(0, lvString("Point"), nullptr);
  EXPECT_TRUE(described.getValue().isNil());
  EXPECT_EQ(described.__mark(), 0);
  EXPECT_EQ(described.__hook(), 0);
}

TEST(ClassSlots, FollowThoseOfTheBase) {
  using test::slotOf;
  EXPECT_EQ(slotOf(&lvrClass::equiv), 1);
  EXPECT_EQ(slotOf(&lvrClass::hashCode), 2);
  EXPECT_EQ(slotOf(&lvrClass::compareTo), 3);
  EXPECT_EQ(slotOf(&lvrClass::getValue), 4);
  EXPECT_EQ(slotOf(&lvrClass::__mark), 5);
  EXPECT_EQ(slotOf(&lvrClass::getClassDesc), 6);
  EXPECT_EQ(slotOf(&lvrClass::finalize), 7);
  EXPECT_EQ(slotOf(&lvrClass::__hook), 10);
  EXPECT_EQ(slotOf(&lvrClass::setClassName), 11);
  EXPECT_EQ(slotOf(&lvrClass::getClassName), 12);
  EXPECT_EQ(slotOf(&lvrClass::setSuperClass), 13);
  EXPECT_EQ(slotOf(&lvrClass::getSuperClass), 14);
  EXPECT_EQ(slotOf(&lvrClass::instantiateDefaultObject), test::NotVirtual);
}

// A first function of a derived class takes the slot behind the last one.
class ExtendedClass : public lvrClass {
 public:
  virtual void extra() {}
};

TEST(ClassSlots, EndWithGetSuperClass) { EXPECT_EQ(test::slotOf(&ExtendedClass::extra), 15); }

}  // namespace
