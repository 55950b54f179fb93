// What the tables of a class allocate, and what becomes of the class when memory runs out.
//
// The program is linked with --wrap for malloc, calloc, realloc and free.

#include <gtest/gtest.h>

#include <new>

#include "support/Callocs.h"
#include "support/Cells.h"
#include "support/ClassTables.h"
#include "support/IgnoreLeaks.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::keptClass;
using test::Mallocs;
using test::OutOfMemory;
using test::tableOf;
using test::Words;

constexpr auto Fields = lvrClass::Fields;

Words const entries{1, 2, 3};
char const* const names[] = {"first", "second", "third"};

// Whether `action` says that it failed, in one way or the other, with so much memory.
template <class Action>
bool failsAfter(int allocations, Action const& action) {
  OutOfMemory const without(allocations);
  try {
    return action() != 0;
  } catch (std::bad_alloc const&) {
    return true;
  }
}

// Has the allocations of `fillTable` fail at the first, then at the second, until it succeeds. What
// fails must leave no table and, but for the array of tables, nothing allocated.
template <class FillTable>
int failuresOf(FillTable const& fillTable) {
  lvrClass& described = keptClass();
  described.needReflection();
  int failures = 0;
  int const before = Mallocs::alive;
  while (failsAfter(failures, [&] { return fillTable(described); })) {
    int const after = Mallocs::alive;
    EXPECT_EQ(after, before) << "after failure " << failures;
    EXPECT_EQ(tableOf(described, Fields), nullptr);
    EXPECT_EQ(described.getNItems(Fields), 0);
    ++failures;
  }
  EXPECT_EQ(test::wordsOf(described, Fields), entries);
  return failures;
}

TEST(ClassTablesMemory, MissingForTheArrayLeavesTheClassWithoutIt) {
  lvrClass& described = keptClass();
  EXPECT_TRUE(failsAfter(0, [&] { return described.needReflection(); }));
  EXPECT_EQ(test::tablesOf(described), nullptr);
  EXPECT_EQ(described.needReflection(), 0);
  EXPECT_NE(test::tablesOf(described), nullptr);
}

TEST(ClassTablesMemory, MissingForNoEntriesKeepsNoTableFromBeingMade) {
  lvrClass& described = keptClass();
  EXPECT_FALSE(failsAfter(2, [&] { return described.needOffsetTable(Fields, 0, nullptr); }));
  EXPECT_NE(tableOf(described, Fields), nullptr);
  EXPECT_EQ(described.getNItems(Fields), 0);
}

TEST(ClassTablesMemory, MissingForANewTableLeavesTheClassAsItWas) {
  for (int after = 0; after < 3; ++after) {  // The array, the table, its entries.
    lvrClass& described = keptClass();
    EXPECT_TRUE(failsAfter(after, [&] { return described.needOffsetTable(Fields, 3, nullptr); }));
    EXPECT_EQ(tableOf(described, Fields), nullptr);
    EXPECT_EQ(described.needOffsetTable(Fields, 3, nullptr), 0);
    EXPECT_EQ(described.getNItems(Fields), 3);
  }
}

TEST(ClassTablesMemory, MissingForEntriesIsAnsweredWithMinusOne) {
  lvrClass& described = keptClass();
  described.needReflection();
  OutOfMemory const without(1);
  EXPECT_EQ(described.needOffsetTable(Fields, 3, nullptr), -1);
}

TEST(ClassTablesMemory, MissingForNamesLeavesTheTableUnnamed) {
  lvrClass& described = keptClass();
  described.needOffsetTable(Fields, 3, nullptr);
  EXPECT_TRUE(failsAfter(0, [&] { return described.needNames(Fields, 3); }));
  EXPECT_TRUE(tableOf(described, Fields)->names.isNil());
  EXPECT_EQ(described.needNames(Fields, 3), 0);
}

TEST(ClassTablesMemory, MissingAnywhereLeavesTheClassWithoutTheTable) {
  int const failures = failuresOf([](lvrClass& described) {
    return described.setDirectObjectOffsets(Fields, 3, entries.data(), 0);
  });
  EXPECT_EQ(failures, 2);  // The table and its entries.
}

TEST(ClassTablesMemory, MissingForNamedEntriesLeavesTheClassWithoutTheTable) {
  int const failures = failuresOf([](lvrClass& described) {
    return described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), names);
  });
  // Besides, the map, its buckets, for each name an entry, and what interning it takes.
  EXPECT_GE(failures, 2 + 2 + 3);
}

TEST(ClassTablesMemory, MissingForInterleavedEntriesLeavesTheClassWithoutTheTable) {
  char const* const others[] = {"first of a pair", "second of a pair", "third of a pair"};
  Words pairs;
  for (std::size_t i = 0; i < 3; ++i) {
    pairs.push_back(entries[i]);
    pairs.push_back(reinterpret_cast<std::uintptr_t>(others[i]));
  }
  int const failures = failuresOf([&pairs](lvrClass& described) {
    return described.setDirectObjectInterleavedNamedOffsets(Fields, 3, pairs.data());
  });
  EXPECT_GE(failures, 2 + 2 + 3);
}

TEST(ClassTablesMemory, OfARefusedTableIsNone) {
  lvrClass& described = keptClass();
  described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), names);
  int const before = Mallocs::alive;
  int const status = described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), names);
  int const after = Mallocs::alive;
  EXPECT_EQ(status, -1);
  EXPECT_EQ(after, before);
}

// How many blocks `make` leaves allocated.
template <class Make>
int leftBehindBy(Make const& make) {
  test::IgnoreLeaks const leaks;
  int const before = Mallocs::alive;
  make();
  return Mallocs::alive - before;
}

TEST(ClassMemory, OfAClassWithoutTablesIsFreedWithIt) {
  EXPECT_EQ(leftBehindBy([] { lvClass(0, lvString("Point"), nullptr); }), 0);
}

TEST(ClassOddities, AClassThatGoesLeavesItsTablesAllocated) {
  int const left = leftBehindBy([] {
    lvClass const described;
    described->setDirectObjectOffsets(Fields, 3, entries.data(), 0);
  });
  EXPECT_EQ(left, 3);  // The array of tables, the table, its entries.
}

TEST(ClassOddities, AClassThatGoesLeavesTheNamesOfItsTablesAllocated) {
  lvString const interned[] = {names[0], names[1], names[2]};
  int const before = test::countOf(interned[0]);
  int const left = leftBehindBy([] {
    lvClass const described;
    described->setDirectObjectNamedOffsets(Fields, 3, entries.data(), names);
  });
  EXPECT_EQ(left, 3 + 2 + 3);  // Besides, the map, its buckets, and its three entries.
  for (lvString const& name : interned) {
    EXPECT_EQ(test::countOf(name), before + 1);
  }
}

}  // namespace
