#include "tarselvalues/reflect/lvtClassRegistry.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "support/Cells.h"
#include "support/Registries.h"
#include "support/Slots.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/reflect/LayoutAccess.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

using test::countOf;
using test::integer;
using test::setOf;

char const* const builtinNames[] = {"Class",  "DLList",   "HashMap", "Stack",
                                    "String", "TupleSet", "Vector"};

// A registry of its own with the built-in classes.
class BuiltinClasses : public ::testing::Test {
 protected:
  BuiltinClasses() { registry.addBuiltinClasses(); }

  // Whether the class of that name makes default objects of the type.
  template <class Object>
  bool makes(char const* name) {
    lvClass const described(registry.getClass(lvString(name)));
    lvArg const made(*described->instantiateDefaultObject());
    auto const& object = *made.getReferencable();
    return typeid(object) == typeid(Object) && countOf(made) == 1;
  }

  lvtClassRegistry registry;
};

// ---- The one registry --------------------------------------------------------------------------

TEST(ClassRegistryGetInstance, AnswersTheSameRegistryEachTime) {
  lvtClassRegistry* const first = lvtClassRegistry::getInstance();
  ASSERT_NE(first, nullptr);
  lvArg const described = first->getClass(lvString("Vector"));
  EXPECT_EQ(lvtClassRegistry::getInstance(), first);
  EXPECT_TRUE(first->getClass(lvString("Vector")).eq(described));
}

TEST(ClassRegistryGetInstance, AnswersARegistryWithTheBuiltinClasses) {
  for (char const* const name : builtinNames) {
    lvArg const described = lvtClassRegistry::getInstance()->getClass(lvString(name));
    EXPECT_EQ(described.getType(), lvArg::ClassType) << name;
  }
}

// ---- The built-in classes ----------------------------------------------------------------------

TEST_F(BuiltinClasses, AreSeven) {
  EXPECT_EQ(test::namesIn(registry), "Class DLList HashMap Stack String TupleSet Vector ");
}

TEST_F(BuiltinClasses, CarryTheirNames) {
  for (char const* const name : builtinNames) {
    lvArg const described = registry.getClass(lvString(name));
    ASSERT_EQ(described.getType(), lvArg::ClassType) << name;
    EXPECT_TRUE(lvClass(described).getClassDesc().eq(lvString(name))) << name;
  }
}

TEST_F(BuiltinClasses, HaveNeitherSuperclassNorTables) {
  for (char const* const name : builtinNames) {
    lvClass const described(registry.getClass(lvString(name)));
    lvArg superClass = integer(1);
    EXPECT_EQ(described->getSuperClass(superClass), 0);
    EXPECT_TRUE(superClass.isNil()) << name;
    for (unsigned kind = 0; kind < lvrClass::TableCount; ++kind) {
      EXPECT_EQ(described->getNItems(static_cast<lvrClass::OffsetTableType>(kind)), 0) << name;
    }
  }
}

TEST_F(BuiltinClasses, MakeTheirDefaultObjects) {
  EXPECT_TRUE(makes<lvrClass>("Class"));
  EXPECT_TRUE(makes<lvrDLList>("DLList"));
  EXPECT_TRUE(makes<lvrStack>("Stack"));
  EXPECT_TRUE(makes<lvrString>("String"));
  EXPECT_TRUE(makes<lvrTupleSet>("TupleSet"));
  EXPECT_TRUE(makes<lvrVector>("Vector"));
}

TEST_F(BuiltinClasses, AreHeldByTheRegistryAlone) {
  for (char const* const name : builtinNames) {
    lvArg const described = registry.getClass(lvString(name));
    EXPECT_EQ(countOf(described), 2) << name;  // The set's and this one.
  }
}

TEST_F(BuiltinClasses, AreInternedUnderTheirNames) {
  ASSERT_EQ(setOf(registry).getSize(), 7);
  for (int i = 0; i < 7; ++i) {
    EXPECT_TRUE(setOf(registry).getKey(i).eq(lvString(builtinNames[i])));
  }
}

TEST_F(BuiltinClasses, LeaveOutTheSortedListAndTheSerializer) {
  EXPECT_TRUE(registry.getClass(lvString("SortedArrayList")).isNil());
  EXPECT_TRUE(registry.getClass(lvString("CommonSerializer")).isNil());
  EXPECT_TRUE(registry.getClass(lvString("Referencable")).isNil());
}

TEST_F(BuiltinClasses, StayWhenTheyAreAddedAgain) {
  lvArg const before = registry.getClass(lvString("Stack"));
  registry.addBuiltinClasses();
  EXPECT_TRUE(registry.getClass(lvString("Stack")).eq(before));
  EXPECT_EQ(setOf(registry).getSize(), 7);
}

TEST_F(BuiltinClasses, AreNotReplaced) {
  lvArg const before = registry.getClass(lvString("String"));
  lvClass const other;
  EXPECT_EQ(registry.putClass(lvString("String"), other), -1);
  EXPECT_TRUE(registry.getClass(lvString("String")).eq(before));
  EXPECT_EQ(countOf(other), 1);
}

TEST(AddBuiltinClasses, LeavesClassesUnderTheirNamesInPlace) {
  lvtClassRegistry registry;
  lvClass const own;
  registry.putClass(lvString("HashMap"), own);
  registry.addBuiltinClasses();
  EXPECT_TRUE(registry.getClass(lvString("HashMap")).eq(own));
  EXPECT_EQ(setOf(registry).getSize(), 7);
}

// Takes no class, but says which ones it was given.
class RecordingRegistry : public lvtClassRegistry {
 public:
  int putClass(lvArg const& name, lvArg const& classHandle) override {
    names += test::textOf(name) + " ";
    EXPECT_EQ(classHandle.getType(), lvArg::ClassType);
    EXPECT_EQ(countOf(classHandle), 1);
    return -1;
  }

  std::string names;
};

TEST(AddBuiltinClasses, RegistersThemInTheirOrderThroughTheVirtualFunction) {
  RecordingRegistry registry;
  registry.addBuiltinClasses();
  EXPECT_EQ(registry.names, "Class DLList HashMap Stack String TupleSet Vector ");
  EXPECT_TRUE(registry.getClass(lvString("Vector")).isNil());
}

TEST(ClassRegistryOddities, TheDefaultObjectOfTheHashMapClassIsAVector) {
  lvClass const described(lvtClassRegistry::getInstance()->getClass(lvString("HashMap")));
  lvArg const made(*described->instantiateDefaultObject());
  EXPECT_NE(dynamic_cast<lvrVector const*>(made.getReferencable()), nullptr);
  EXPECT_EQ(made.getType(), lvArg::ListType);
}

// ---- Registering -------------------------------------------------------------------------------

TEST(ClassRegistryConstructor, MakesAnEmptyRegistryWithRoomForEightClasses) {
  lvtClassRegistry const registry;
  using SetLayout = lvLayoutAccess<lvrTupleSet>;
  EXPECT_EQ(setOf(registry).getSize(), 0);
  EXPECT_EQ(SetLayout::allocated(setOf(registry)), 8);
  EXPECT_EQ(SetLayout::increment(setOf(registry)), 8U);
  EXPECT_EQ(SetLayout::setFlags(setOf(registry)), 0U);
  EXPECT_EQ(countOf(setOf(registry)), 1);
}

TEST(ClassRegistryPutClass, RegistersAClassUnderItsName) {
  lvtClassRegistry registry;
  lvClass const described;
  EXPECT_EQ(registry.putClass(lvString("Point"), described), 0);
  EXPECT_TRUE(registry.getClass(lvString("Point")).eq(described));
  EXPECT_EQ(countOf(described), 2);
}

TEST(ClassRegistryPutClass, KeepsTheFirstClassOfAName) {
  lvtClassRegistry registry;
  lvClass const first;
  lvClass const second;
  EXPECT_EQ(registry.putClass(lvString("Point"), first), 0);
  EXPECT_EQ(registry.putClass(lvString("Point"), second), -1);
  EXPECT_EQ(registry.putClass(test::string("Point"), first), -1);
  EXPECT_TRUE(registry.getClass(lvString("Point")).eq(first));
  EXPECT_EQ(countOf(first), 2);
  EXPECT_EQ(countOf(second), 1);
}

TEST(ClassRegistryPutClass, RegistersAClassUnderSeveralNames) {
  lvtClassRegistry registry;
  lvClass const described;
  EXPECT_EQ(registry.putClass(lvString("Point"), described), 0);
  EXPECT_EQ(registry.putClass(lvString("Alias"), described), 0);
  EXPECT_TRUE(registry.getClass(lvString("Point")).eq(registry.getClass(lvString("Alias"))));
}

TEST_F(BuiltinClasses, LeaveANameFreeThatIsGivenNoClass) {
  EXPECT_EQ(registry.putClass(lvString("Point"), lvArg()), 0);
  EXPECT_EQ(setOf(registry).getSize(), 7);
  lvClass const described;
  EXPECT_EQ(registry.putClass(lvString("Point"), described), 0);
  EXPECT_TRUE(registry.getClass(lvString("Point")).eq(described));
}

TEST_F(BuiltinClasses, MakeRoomForMore) {
  for (int i = 0; i < 30; ++i) {
    EXPECT_EQ(registry.putClass(lvString::valueOf(i * 7 % 30), integer(i)), 0);
  }
  for (int i = 0; i < 30; ++i) {
    EXPECT_EQ(registry.getClass(lvString::valueOf(i * 7 % 30)).getInt(), i);
  }
  EXPECT_EQ(setOf(registry).getSize(), 37);
  EXPECT_TRUE(makes<lvrVector>("Vector"));
}

TEST(ClassRegistryGetClass, AnswersNilForUnknownNames) {
  lvtClassRegistry registry;
  EXPECT_TRUE(registry.getClass(lvString("Point")).isNil());
  registry.putClass(lvString("Point"), lvClass());
  EXPECT_TRUE(registry.getClass(lvString("point")).isNil());
  EXPECT_TRUE(registry.getClass(lvString("")).isNil());
  EXPECT_TRUE(registry.getClass(lvArg()).isNil());
  EXPECT_TRUE(registry.getClass(integer(0)).isNil());
}

TEST(ClassRegistryGetClass, TakesNamesThatAreNotInterned) {
  lvtClassRegistry registry;
  lvClass const described;
  registry.putClass(lvString("Point"), described);
  EXPECT_TRUE(registry.getClass(test::string("Point")).eq(described));
}

TEST(ClassRegistryDestructor, ReleasesNamesAndClasses) {
  lvArg const name = test::string("Point");
  lvClass const described;
  {
    std::unique_ptr<lvtClassRegistry> const registry(new lvtClassRegistry);
    registry->putClass(name, described);
    EXPECT_EQ(countOf(name), 2);
  }
  EXPECT_EQ(countOf(name), 1);
  EXPECT_EQ(countOf(described), 1);
}

// ---- The binary interface ----------------------------------------------------------------------

TEST(ClassRegistrySlots, StandInTheOrderThatProgramsAreCompiledFor) {
  using test::slotOf;
  EXPECT_EQ(slotOf(&lvtClassRegistry::putClass), 3);
  EXPECT_EQ(slotOf(&lvtClassRegistry::getClass), 4);
  EXPECT_EQ(slotOf(&lvtClassRegistry::addBuiltinClasses), test::NotVirtual);
}

// The first operation that a derived class adds comes after all others.
class ExtendedRegistry : public lvtClassRegistry {
 public:
  virtual void added() {}
};

TEST(ClassRegistrySlots, EndWithGetClass) { EXPECT_EQ(test::slotOf(&ExtendedRegistry::added), 5); }

TEST(ClassRegistry, IsNoCountedObject) {
  EXPECT_FALSE((std::is_base_of_v<lvReferencable, lvtClassRegistry>));
  EXPECT_TRUE(std::is_polymorphic_v<lvtClassRegistry>);
  EXPECT_EQ(sizeof(lvtClassRegistry),
            lvLayoutAccess<lvtClassRegistry>::classesOffset + sizeof(lvArg));
}

}  // namespace
