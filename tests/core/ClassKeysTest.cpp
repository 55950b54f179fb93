// The names of the classes. What becomes of them before main() and after it, LoadTimeProgram.cpp
// and UnloadingProgram.cpp try.

#include <gtest/gtest.h>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "support/InternedTexts.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"

namespace {

using test::countOf;
using test::internedEntry;

char const* const namesAtLoad[] = {"Class",    "String",  "CommonSerializer",
                                   "TupleSet", "Vector",  "SortedArrayList",
                                   "DLList",   "HashMap", "Stack"};

TEST(ClassKeys, AreInternedAndHeldOnceTheLibraryIsLoaded) {
  for (char const* const name : namesAtLoad) {
    lvString::StringEntry const* const entry = internedEntry(name);
    ASSERT_NE(entry, nullptr) << name;
    EXPECT_GE(countOf(*entry), 1) << name;
  }
}

// Asks an object of the class for its key, and a second one whether it has the same.
template <class Object>
void expectKey(char const* name) {
  lvArg const one(*Object::defaultCtorMethod());
  lvArg const other(*Object::defaultCtorMethod());
  lvString const& key = one.getReferencable()->getClassDesc();
  EXPECT_STREQ(key, name);
  EXPECT_EQ(key.getReferencable(), internedEntry(name));
  EXPECT_EQ(&other.getReferencable()->getClassDesc(), &key);
  EXPECT_EQ(&Object::getStaticClassDesc(), &key);
}

TEST(ClassKeys, NameTheClassesOfTheObjects) {
  expectKey<lvrString>("String");
  expectKey<lvrHashMap>("HashMap");
  expectKey<lvrVector>("Vector");
  expectKey<lvrStack>("Stack");
  expectKey<lvrDLList>("DLList");
  expectKey<lvrSortedArrayList>("SortedArrayList");
  expectKey<lvrClass>("Class");
}

TEST(ClassKeys, NameATupleSetByItsBase) { expectKey<lvrTupleSet>("Referencable"); }

TEST(ClassKeys, NameTheSerializer) {
  lvArg const serializer(*new lvrCommonSerializer);
  EXPECT_STREQ(serializer.getReferencable()->getClassDesc(), "CommonSerializer");
}

TEST(ClassKeys, OfInternedStringsIsThatOfAllStrings) {
  lvString const interned("some text");
  EXPECT_EQ(&interned.getReferencable()->getClassDesc(), &lvrString::getStaticClassDesc());
}

TEST(ClassKeys, OfAClassOfTheUsersIsThatOfItsBase) {
  test::Probe::Log log;
  lvArg const probe(*new test::Probe(log));
  EXPECT_STREQ(probe.getReferencable()->getClassDesc(), "Referencable");
}

TEST(ClassKeys, ShareTheirEntriesWithHandlesOfTheSameText) {
  lvString const& key = lvrString::getStaticClassDesc();
  int const before = countOf(key);
  lvString const handle("String");
  EXPECT_EQ(handle.getReferencable(), key.getReferencable());
  EXPECT_EQ(countOf(key), before + 1);
}

}  // namespace
