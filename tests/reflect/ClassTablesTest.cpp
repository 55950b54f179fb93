// How the tables of a class are made and filled, whatever their entries stand for.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <numeric>
#include <vector>

#include "support/Cells.h"
#include "support/ClassTables.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::allKinds;
using test::ClassTable;
using test::fill;
using test::integer;
using test::keptClass;
using test::keptSubclass;
using test::kindOf;
using test::tableOf;
using test::tablesOf;
using test::Words;
using test::WordSize;
using test::wordsOf;
using test::wordsPerEntry;
using Bytes = std::vector<unsigned char>;

constexpr auto Fields = lvrClass::Fields;
constexpr auto Methods2 = lvrClass::Methods2;
constexpr int GapOfOneEntry = -1;
constexpr int MostEntries = 65535;

// `count` words that differ, from `first` on.
Words wordsFrom(std::uintptr_t first, std::size_t count) {
  Words words(count);
  std::iota(words.begin(), words.end(), first);
  return words;
}

// Words for `entries` entries of a kind.
Words entriesFrom(std::uintptr_t first, std::size_t entries, lvrClass::OffsetTableType kind) {
  return wordsFrom(first, entries * wordsPerEntry(kind));
}

Words operator+(Words front, Words const& back) {
  front.insert(front.end(), back.begin(), back.end());
  return front;
}

// The words in a block of exactly their size, with `gap` bytes of junk between entries.
Bytes withGaps(Words const& words, std::size_t wordsEach, std::size_t gap) {
  std::size_t const width = wordsEach * WordSize;
  std::size_t const entries = words.size() / wordsEach;
  Bytes bytes(entries * (width + gap) - gap, 0xEE);
  for (std::size_t i = 0; i < entries; ++i) {
    std::memcpy(&bytes[i * (width + gap)], &words[i * wordsEach], width);
  }
  return bytes;
}

// An array of pairs of an entry and its name, each in a slot of the entry's width.
Words interleaved(Words const& entries, std::vector<char const*> const& names,
                  lvrClass::OffsetTableType kind) {
  Words pairs;
  std::size_t const width = wordsPerEntry(kind);
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (std::size_t k = 0; k < width; ++k) {
      pairs.push_back(entries[i * width + k]);
    }
    pairs.push_back(reinterpret_cast<std::uintptr_t>(names[i]));
    pairs.resize(pairs.size() + width - 1, 0xEEEE);
  }
  return pairs;
}

int lookup(lvrClass const& described, char const* name, lvrClass::OffsetTableType kind = Fields) {
  return described.localLookupIndex(kind, lvString(name));
}

// The map of names of a table.
lvrHashMap const& namesOf(lvrClass const& described, lvrClass::OffsetTableType kind) {
  return dynamic_cast<lvrHashMap const&>(*tableOf(described, kind)->names.getReferencable());
}

// ---- The array of tables -----------------------------------------------------------------------

TEST(ClassTable, IsEmptyWhenNew) {
  ClassTable const table;
  EXPECT_EQ(table.count, 0);
  EXPECT_EQ(table.entryWidth, 0);
  EXPECT_EQ(table.entries, nullptr);
  EXPECT_TRUE(table.names.isNil());
}

TEST(ClassTables, AreNotThereInANewClass) {
  EXPECT_EQ(tablesOf(keptClass()), nullptr);
  EXPECT_EQ(tablesOf(keptSubclass(keptClass())), nullptr);
}

TEST(ClassNeedReflection, MakesRoomForTenTablesThatAreNotThere) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.needReflection(), 0);
  ASSERT_NE(tablesOf(described), nullptr);
  for (unsigned i = 0; i < 10; ++i) {
    EXPECT_EQ(tablesOf(described)[i], nullptr);
  }
}

TEST(ClassNeedReflection, KeepsTheTablesThatAreThere) {
  lvrClass& described = keptClass();
  described.needReflection();
  described.needOffsetTable(Fields, 1, nullptr);
  ClassTable* const* const tables = tablesOf(described);
  ClassTable const* const table = tableOf(described, Fields);
  EXPECT_EQ(described.needReflection(), 0);
  EXPECT_EQ(tablesOf(described), tables);
  EXPECT_EQ(tableOf(described, Fields), table);
}

// ---- One table ---------------------------------------------------------------------------------

TEST(ClassNeedOffsetTable, MakesUnnamedZeroesOfTheWidthOfTheKind) {
  for (auto const kind : allKinds()) {
    SCOPED_TRACE(kind);
    lvrClass& described = keptClass();
    EXPECT_EQ(described.needOffsetTable(kind, 3, nullptr), 0);
    ClassTable const* const table = tableOf(described, kind);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->count, 3);
    bool const isMethod = kind == 2 || kind == 4 || kind == 8;
    EXPECT_EQ(table->entryWidth, isMethod ? 2 * sizeof(void*) : sizeof(void*));
    EXPECT_EQ(wordsOf(described, kind), Words(3 * wordsPerEntry(kind), 0));
    EXPECT_TRUE(table->names.isNil());
  }
}

TEST(ClassNeedOffsetTable, MakesNoOtherTable) {
  for (auto const kind : allKinds()) {
    lvrClass& described = keptClass();
    described.needOffsetTable(kind, 1, nullptr);
    for (auto const other : allKinds()) {
      EXPECT_EQ(tableOf(described, other) != nullptr, other == kind);
    }
  }
}

TEST(ClassNeedOffsetTable, KeepsATableThatIsThere) {
  lvrClass& described = keptClass();
  fill(described, Fields, Words{7, 8});
  ClassTable const* const table = tableOf(described, Fields);
  EXPECT_EQ(described.needOffsetTable(Fields, 5, nullptr), 0);
  EXPECT_EQ(described.needOffsetTable(Fields, -1, nullptr), 0);
  EXPECT_EQ(tableOf(described, Fields), table);
  EXPECT_EQ(wordsOf(described, Fields), (Words{7, 8}));
}

TEST(ClassNeedOffsetTable, RefusesAKindAboveNine) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.needOffsetTable(kindOf(10), 1, nullptr), -1);
  EXPECT_EQ(described.needOffsetTable(kindOf(0xFFFFFFFFU), 1, nullptr), -1);
  described.needReflection();
  EXPECT_EQ(described.needOffsetTable(kindOf(10), 1, nullptr), -1);
  EXPECT_EQ(described.needOffsetTable(lvrClass::Functions9, 1, nullptr), 0);
}

TEST(ClassNeedOffsetTable, TakesAsManyEntriesAsTheCountHolds) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.needOffsetTable(Fields, -1, nullptr), -1);
  EXPECT_EQ(described.needOffsetTable(Fields, MostEntries + 1, nullptr), -1);
  EXPECT_EQ(tableOf(described, Fields), nullptr);
  EXPECT_EQ(described.needOffsetTable(Fields, MostEntries, nullptr), 0);
  EXPECT_EQ(described.getNItems(Fields), MostEntries);
}

TEST(ClassNeedOffsetTable, MakesATableWithoutEntries) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.needOffsetTable(Fields, 0, nullptr), 0);
  ASSERT_NE(tableOf(described, Fields), nullptr);
  EXPECT_EQ(described.getNItems(Fields), 0);
}

TEST(ClassNeedOffsetTable, CopiesABaseToTheFrontAndZeroesTheRest) {
  for (auto const kind : allKinds()) {
    SCOPED_TRACE(kind);
    Words const own = entriesFrom(10, 2, kind);
    lvrClass& base = keptClass();
    base.setDirectObjectOffsets(kind, 2, own.data(), 0);
    lvrClass& described = keptClass();
    EXPECT_EQ(described.needOffsetTable(kind, 5, tableOf(base, kind)), 0);
    EXPECT_EQ(wordsOf(described, kind), own + Words(3 * wordsPerEntry(kind), 0));
    EXPECT_EQ(wordsOf(base, kind), own);
  }
}

TEST(ClassNeedOffsetTable, CopiesNothingFromABaseWithoutEntries) {
  ClassTable const base;
  lvrClass& described = keptClass();
  EXPECT_EQ(described.needOffsetTable(Fields, 2, &base), 0);
  EXPECT_EQ(wordsOf(described, Fields), (Words{0, 0}));
}

TEST(ClassNeedOffsetTable, CopiesNoMoreOfABaseThanThereIsRoomFor) {
  lvrClass& base = keptClass();
  fill(base, Fields, Words{1, 2, 3});
  lvrClass& described = keptClass();
  EXPECT_EQ(described.needOffsetTable(Fields, 2, tableOf(base, Fields)), 0);
  EXPECT_EQ(wordsOf(described, Fields), (Words{1, 2}));
}

TEST(ClassNeedOffsetTable, CopiesNothingFromABaseOfAnotherWidth) {
  lvrClass& base = keptClass();
  fill(base, Fields, Words{1, 2, 3, 4});
  lvrClass& described = keptClass();
  EXPECT_EQ(described.needOffsetTable(Methods2, 2, tableOf(base, Fields)), 0);
  EXPECT_EQ(wordsOf(described, Methods2), (Words{0, 0, 0, 0}));
}

// ---- Names -------------------------------------------------------------------------------------

TEST(ClassNeedNames, IsRefusedWithoutTheTable) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.needNames(Fields, 1), -1);
  described.needReflection();
  EXPECT_EQ(described.needNames(Fields, 1), -1);
  described.needOffsetTable(lvrClass::Functions1, 1, nullptr);
  EXPECT_EQ(described.needNames(Fields, 1), -1);
  EXPECT_EQ(described.needNames(kindOf(10), 1), -1);
  EXPECT_EQ(described.needNames(kindOf(0xFFFFFFFFU), 1), -1);
}

TEST(ClassNeedNames, MakesAHashMapWithThreeBucketsMoreThanNames) {
  lvrClass& described = keptClass();
  described.needOffsetTable(Fields, 2, nullptr);
  EXPECT_EQ(described.needNames(Fields, 4), 0);
  EXPECT_EQ(tableOf(described, Fields)->names.getType(), lvArg::MapType);
  EXPECT_EQ(lvLayoutAccess<lvrHashMap>::hashSize(namesOf(described, Fields)), 7U);
  EXPECT_EQ(namesOf(described, Fields).getSize(), 0);
  EXPECT_EQ(test::countOf(namesOf(described, Fields)), 1);
}

TEST(ClassNeedNames, KeepsTheNamesThatAreThere) {
  lvrClass& described = keptClass();
  described.needOffsetTable(Fields, 2, nullptr);
  described.needNames(Fields, 0);
  lvrHashMap const* const names = &namesOf(described, Fields);
  EXPECT_EQ(described.needNames(Fields, 9), 0);
  EXPECT_EQ(&namesOf(described, Fields), names);
  EXPECT_EQ(lvLayoutAccess<lvrHashMap>::hashSize(*names), 3U);
}

TEST(ClassNeedNames, WorksForATableWithoutEntries) {
  lvrClass& described = keptClass();
  described.needOffsetTable(Fields, 0, nullptr);
  EXPECT_EQ(described.needNames(Fields, 0), 0);
  EXPECT_EQ(lookup(described, "x"), -1);
}

TEST(ClassLocalLookupIndex, FindsNothingWhereThereIsNothing) {
  lvrClass& described = keptClass();
  EXPECT_EQ(lookup(described, "x"), -1);
  described.needReflection();
  EXPECT_EQ(lookup(described, "x"), -1);
  described.needOffsetTable(Fields, 2, nullptr);
  EXPECT_EQ(lookup(described, "x"), -1);
  described.needNames(Fields, 2);
  EXPECT_EQ(lookup(described, "x"), -1);
}

// A class with the fields "x" and "y", and another table of the entry "z".
lvrClass& keptPoint() {
  lvrClass& described = keptClass();
  Words const entries{11, 12};
  char const* const names[] = {"x", "y", "z"};
  described.setDirectObjectNamedOffsets(Fields, 2, entries.data(), names);
  described.setDirectObjectNamedOffsets(lvrClass::Fields6, 1, entries.data(), names + 2);
  return described;
}

TEST(ClassLocalLookupIndex, FindsNothingInAKindAboveNine) {
  EXPECT_EQ(lookup(keptPoint(), "x", kindOf(10)), -1);
  EXPECT_EQ(lookup(keptPoint(), "x", kindOf(0xFFFFFFFFU)), -1);
}

TEST(ClassLocalLookupIndex, FindsNamesOfItsKindOnly) {
  lvrClass& described = keptPoint();
  EXPECT_EQ(lookup(described, "x"), 0);
  EXPECT_EQ(lookup(described, "y"), 1);
  EXPECT_EQ(lookup(described, "z"), -1);
  EXPECT_EQ(lookup(described, "z", lvrClass::Fields6), 0);
  EXPECT_EQ(lookup(described, "x", lvrClass::Fields6), -1);
  EXPECT_EQ(lookup(described, "x", lvrClass::Functions1), -1);
}

TEST(ClassLocalLookupIndex, TakesTextsThatAreNotInterned) {
  EXPECT_EQ(keptPoint().localLookupIndex(Fields, test::string("y")), 1);
}

TEST(ClassLocalLookupIndex, FindsNothingUnderOtherCells) {
  lvrClass const& described = keptPoint();
  EXPECT_EQ(described.localLookupIndex(Fields, lvArg()), -1);
  EXPECT_EQ(described.localLookupIndex(Fields, integer(1)), -1);
  EXPECT_EQ(lookup(described, ""), -1);
  EXPECT_EQ(lookup(described, "X"), -1);
}

TEST(ClassLocalLookupIndex, DoesNotSearchSuperclasses) {
  lvrClass& described = keptSubclass(keptPoint());
  EXPECT_EQ(lookup(described, "x"), -1);
  Words const entries{13};
  char const* const names[] = {"own"};
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, 1, entries.data(), names), 0);
  EXPECT_EQ(described.getNItems(Fields), 3);
  EXPECT_EQ(lookup(described, "x"), -1);
}

TEST(ClassGetNItems, IsZeroWithoutTheTable) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.getNItems(Fields), 0);
  described.needReflection();
  EXPECT_EQ(described.getNItems(Fields), 0);
  fill(described, Fields, Words{1});
  EXPECT_EQ(described.getNItems(lvrClass::Functions1), 0);
  EXPECT_EQ(described.getNItems(kindOf(10)), 0);
  EXPECT_EQ(described.getNItems(kindOf(0xFFFFFFFFU)), 0);
}

TEST(ClassGetNItems, CountsOwnAndInheritedEntries) {
  lvrClass& described = keptSubclass(keptPoint());
  EXPECT_EQ(described.getNItems(Fields), 0);
  fill(described, Fields, Words{1, 2, 3});
  EXPECT_EQ(described.getNItems(Fields), 5);
}

// ---- Filling -----------------------------------------------------------------------------------

TEST(ClassSetDirectObjectOffsets, OfANullTableDoesNothing) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.setDirectObjectOffsets(Fields, 3, nullptr, 0), 0);
  EXPECT_EQ(described.setDirectObjectOffsets(kindOf(10), 3, nullptr, 0), 0);
  EXPECT_EQ(tablesOf(described), nullptr);
  fill(described, Fields, Words{5});
  EXPECT_EQ(described.setDirectObjectOffsets(Fields, 3, nullptr, 0), 0);
  EXPECT_EQ(wordsOf(described, Fields), Words{5});
}

TEST(ClassSetDirectObjectOffsets, CopiesTheEntries) {
  for (auto const kind : allKinds()) {
    SCOPED_TRACE(kind);
    Words const entries = entriesFrom(20, 3, kind);
    Bytes const packed = withGaps(entries, wordsPerEntry(kind), 0);
    lvrClass& described = keptClass();
    EXPECT_EQ(described.setDirectObjectOffsets(kind, 3, packed.data(), 0), 0);
    EXPECT_EQ(described.getNItems(kind), 3);
    EXPECT_EQ(wordsOf(described, kind), entries);
    EXPECT_TRUE(tableOf(described, kind)->names.isNil());
  }
}

TEST(ClassSetDirectObjectOffsets, SkipsTheGapsBetweenEntries) {
  for (auto const kind : allKinds()) {
    for (std::size_t const gap : {std::size_t{1}, WordSize, std::size_t{13}}) {
      SCOPED_TRACE(testing::Message() << "kind " << kind << ", gap " << gap);
      Words const entries = entriesFrom(20, 3, kind);
      Bytes const spaced = withGaps(entries, wordsPerEntry(kind), gap);
      lvrClass& described = keptClass();
      EXPECT_EQ(described.setDirectObjectOffsets(kind, 3, spaced.data(), static_cast<int>(gap)), 0);
      EXPECT_EQ(wordsOf(described, kind), entries);
    }
  }
}

TEST(ClassSetDirectObjectOffsets, TakesAGapOfMinusOneForTheWidthOfAnEntry) {
  for (auto const kind : allKinds()) {
    SCOPED_TRACE(kind);
    std::size_t const width = wordsPerEntry(kind);
    Words const entries = entriesFrom(20, 3, kind);
    Bytes const spaced = withGaps(entries, width, width * WordSize);
    lvrClass& described = keptClass();
    EXPECT_EQ(described.setDirectObjectOffsets(kind, 3, spaced.data(), GapOfOneEntry), 0);
    EXPECT_EQ(wordsOf(described, kind), entries);
  }
}

TEST(ClassSetDirectObjectOffsets, RefusesAGapBelowMinusOne) {
  lvrClass& described = keptClass();
  Words const entries{1, 2};
  EXPECT_EQ(described.setDirectObjectOffsets(Fields, 2, entries.data(), -2), -1);
  EXPECT_EQ(tableOf(described, Fields), nullptr);
}

TEST(ClassSetDirectObjectOffsets, RefusesATableThatIsThere) {
  lvrClass& described = keptClass();
  EXPECT_EQ(fill(described, Fields, Words{1, 2}), 0);
  EXPECT_EQ(fill(described, Fields, Words{3}), -1);
  Words const none;
  EXPECT_EQ(described.setDirectObjectOffsets(Fields, 0, &none, 0), -1);
  EXPECT_EQ(wordsOf(described, Fields), (Words{1, 2}));
}

TEST(ClassSetDirectObjectOffsets, RefusesKindsAboveNine) {
  lvrClass& described = keptClass();
  EXPECT_EQ(fill(described, kindOf(10), Words{1}), -1);
  EXPECT_EQ(fill(described, kindOf(0xFFFFFFFFU), Words{1}), -1);
  EXPECT_EQ(described.getNItems(kindOf(10)), 0);
}

TEST(ClassSetDirectObjectOffsets, OfNoEntriesMakesAnEmptyTable) {
  lvrClass& described = keptClass();
  unsigned char const nothing = 0;
  EXPECT_EQ(described.setDirectObjectOffsets(Fields, 0, &nothing, 0), 0);
  ASSERT_NE(tableOf(described, Fields), nullptr);
  EXPECT_EQ(described.getNItems(Fields), 0);
  EXPECT_EQ(fill(described, Fields, Words{1}), -1);
}

TEST(ClassSetDirectObjectOffsets, TakesAsManyEntriesAsTheCountHolds) {
  lvrClass& described = keptClass();
  Words const entries = wordsFrom(1, MostEntries + 1);
  EXPECT_EQ(described.setDirectObjectOffsets(Fields, -1, entries.data(), 0), -1);
  EXPECT_EQ(fill(described, Fields, entries), -1);
  EXPECT_EQ(tableOf(described, Fields), nullptr);
  EXPECT_EQ(fill(described, Fields, wordsFrom(1, MostEntries)), 0);
  EXPECT_EQ(wordsOf(described, Fields), wordsFrom(1, MostEntries));
}

TEST(ClassSetDirectObjectOffsets, CountsInheritedEntriesIntoTheLimit) {
  lvrClass& base = keptClass();
  fill(base, Fields, wordsFrom(1, MostEntries - 1));
  lvrClass& described = keptSubclass(base);
  EXPECT_EQ(fill(described, Fields, Words{1, 2}), -1);
  EXPECT_EQ(tableOf(described, Fields), nullptr);
  EXPECT_EQ(fill(described, Fields, Words{1}), 0);
  EXPECT_EQ(described.getNItems(Fields), MostEntries);
}

// ---- Inheriting --------------------------------------------------------------------------------

TEST(ClassTableInheritance, PutsTheEntriesOfTheSuperclassInFront) {
  for (auto const kind : allKinds()) {
    SCOPED_TRACE(kind);
    Words const inherited = entriesFrom(10, 2, kind);
    Words const own = entriesFrom(20, 3, kind);
    lvrClass& base = keptClass();
    base.setDirectObjectOffsets(kind, 2, inherited.data(), 0);
    lvrClass& described = keptSubclass(base);
    EXPECT_EQ(described.setDirectObjectOffsets(kind, 3, own.data(), 0), 0);
    EXPECT_EQ(described.getNItems(kind), 5);
    EXPECT_EQ(wordsOf(described, kind), inherited + own);
    EXPECT_EQ(wordsOf(base, kind), inherited);
  }
}

TEST(ClassTableInheritance, LeavesTheGapsToTheOwnEntries) {
  for (auto const kind : allKinds()) {
    SCOPED_TRACE(kind);
    Words const inherited = entriesFrom(10, 2, kind);
    Words const own = entriesFrom(20, 3, kind);
    Bytes const spaced = withGaps(own, wordsPerEntry(kind), 5);
    lvrClass& base = keptClass();
    base.setDirectObjectOffsets(kind, 2, inherited.data(), 0);
    lvrClass& described = keptSubclass(base);
    EXPECT_EQ(described.setDirectObjectOffsets(kind, 3, spaced.data(), 5), 0);
    EXPECT_EQ(wordsOf(described, kind), inherited + own);
  }
}

TEST(ClassTableInheritance, IsAllThatAClassWithoutEntriesOfItsOwnHas) {
  lvrClass& base = keptClass();
  fill(base, Fields, Words{1, 2});
  lvrClass& described = keptSubclass(base);
  unsigned char const nothing = 0;
  EXPECT_EQ(described.setDirectObjectOffsets(Fields, 0, &nothing, 0), 0);
  EXPECT_EQ(wordsOf(described, Fields), (Words{1, 2}));
}

TEST(ClassTableInheritance, IsOfTheSameKindOnly) {
  lvrClass& base = keptClass();
  fill(base, lvrClass::Fields6, Words{1, 2});
  lvrClass& described = keptSubclass(base);
  fill(described, Fields, Words{3});
  EXPECT_EQ(wordsOf(described, Fields), Words{3});
}

TEST(ClassTableInheritance, DoesNothingWithASuperclassThatHasNoTables) {
  lvrClass& described = keptSubclass(keptClass());
  EXPECT_EQ(fill(described, Fields, Words{3}), 0);
  EXPECT_EQ(wordsOf(described, Fields), Words{3});
}

TEST(ClassTableInheritance, DoesNothingWithASuperclassThatIsNone) {
  test::Probe::Log log;
  lvArg mistagged;
  mistagged.setReferencableFast(*new test::Probe(log), lvArg::ClassType);
  for (lvArg const& superClass : {integer(4), test::string("Base"), mistagged}) {
    lvrClass& described = keptSubclass(superClass);
    EXPECT_EQ(fill(described, Fields, Words{3}), 0);
    EXPECT_EQ(wordsOf(described, Fields), Words{3});
  }
}

TEST(ClassTableInheritance, TakesTheTablesAsTheyAreWhenTheOwnOneIsFilled) {
  lvrClass& base = keptClass();
  lvrClass& early = keptSubclass(base);
  fill(early, Fields, Words{3});
  fill(base, Fields, Words{1});
  EXPECT_EQ(wordsOf(early, Fields), Words{3});
  lvrClass& late = keptClass();
  fill(late, lvrClass::Fields6, Words{4});
  late.setSuperClass(base);
  EXPECT_EQ(fill(late, Fields, Words{5}), 0);
  EXPECT_EQ(wordsOf(late, Fields), (Words{1, 5}));
}

TEST(ClassTableInheritance, LooksUpwardForTheFirstTableOfTheKind) {
  lvrClass& top = keptClass();
  fill(top, Fields, Words{1});
  fill(top, lvrClass::Fields6, Words{2});
  lvrClass& middle = keptSubclass(top);
  fill(middle, Fields, Words{3});
  lvrClass& lowest = keptSubclass(keptSubclass(middle));
  fill(lowest, Fields, Words{5});
  fill(lowest, lvrClass::Fields6, Words{6});
  EXPECT_EQ(wordsOf(lowest, Fields), (Words{1, 3, 5}));
  EXPECT_EQ(wordsOf(lowest, lvrClass::Fields6), (Words{2, 6}));
}

TEST(ClassTableInheritance, StopsAtATableWithoutEntries) {
  lvrClass& top = keptClass();
  fill(top, Fields, Words{1});
  lvrClass& middle = keptSubclass(top);
  middle.needOffsetTable(Fields, 0, nullptr);
  lvrClass& lowest = keptSubclass(middle);
  fill(lowest, Fields, Words{3});
  EXPECT_EQ(wordsOf(lowest, Fields), Words{3});
}

TEST(ClassTableInheritance, EndsInACircleOfSuperclasses) {
  lvrClass& first = keptClass();
  lvrClass& second = keptSubclass(first);
  EXPECT_EQ(first.setSuperClass(second), 0);
  EXPECT_EQ(fill(first, Fields, Words{1}), 0);
  EXPECT_EQ(fill(second, Fields, Words{2}), 0);
  EXPECT_EQ(wordsOf(first, Fields), Words{1});
  EXPECT_EQ(wordsOf(second, Fields), (Words{1, 2}));
  lvrClass& own = keptClass();
  EXPECT_EQ(own.setSuperClass(own), 0);
  EXPECT_EQ(fill(own, Fields, Words{3}), 0);
  EXPECT_EQ(wordsOf(own, Fields), Words{3});
}

// ---- Filling with names ------------------------------------------------------------------------

char const* const abc[] = {"a", "b", "c"};

TEST(ClassSetDirectObjectNamedOffsets, FillsTheTableAndNamesItsEntries) {
  for (auto const kind : allKinds()) {
    SCOPED_TRACE(kind);
    Words const entries = entriesFrom(20, 3, kind);
    lvrClass& described = keptClass();
    EXPECT_EQ(described.setDirectObjectNamedOffsets(kind, 3, entries.data(), abc), 0);
    EXPECT_EQ(wordsOf(described, kind), entries);
    EXPECT_EQ(lookup(described, "a", kind), 0);
    EXPECT_EQ(lookup(described, "b", kind), 1);
    EXPECT_EQ(lookup(described, "c", kind), 2);
    EXPECT_EQ(namesOf(described, kind).getSize(), 3);
    EXPECT_EQ(lvLayoutAccess<lvrHashMap>::hashSize(namesOf(described, kind)), 6U);
  }
}

TEST(ClassSetDirectObjectNamedOffsets, KeepsNoPointerToTheNames) {
  Words const entries{1};
  char name[] = "abc";
  char const* const names[] = {name};
  lvrClass& described = keptClass();
  described.setDirectObjectNamedOffsets(Fields, 1, entries.data(), names);
  std::strcpy(name, "xyz");
  EXPECT_EQ(lookup(described, "abc"), 0);
  EXPECT_EQ(lookup(described, "xyz"), -1);
}

TEST(ClassSetDirectObjectNamedOffsets, UsesInternedNames) {
  Words const entries{1, 2, 3};
  lvString const name("a");
  int const before = test::countOf(name);
  lvrClass& described = keptClass();
  described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), abc);
  EXPECT_EQ(test::countOf(name), before + 1);
}

TEST(ClassSetDirectObjectNamedOffsets, GivesANameThatComesTwiceToTheLaterEntry) {
  Words const entries{1, 2, 3};
  char const* const names[] = {"same", "other", "same"};
  lvrClass& described = keptClass();
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), names), 0);
  EXPECT_EQ(lookup(described, "same"), 2);
  EXPECT_EQ(lookup(described, "other"), 1);
}

TEST(ClassSetDirectObjectNamedOffsets, LeavesAnEntryWithoutName) {
  Words const entries{1, 2, 3};
  char const* const names[] = {nullptr, "b", nullptr};
  lvrClass& described = keptClass();
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), names), 0);
  EXPECT_EQ(described.getNItems(Fields), 3);
  EXPECT_EQ(lookup(described, "b"), 1);
  EXPECT_EQ(namesOf(described, Fields).getSize(), 1);
}

TEST(ClassSetDirectObjectNamedOffsets, WithoutNamesFillsTheTableAlone) {
  Words const entries{1, 2, 3};
  lvrClass& described = keptClass();
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), nullptr), 0);
  EXPECT_EQ(wordsOf(described, Fields), entries);
  EXPECT_TRUE(tableOf(described, Fields)->names.isNil());
}

TEST(ClassSetDirectObjectNamedOffsets, OfANullTableDoesNothing) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, 3, nullptr, abc), 0);
  EXPECT_EQ(tablesOf(described), nullptr);
}

TEST(ClassSetDirectObjectNamedOffsets, OfNoEntriesMakesATableWithoutNamesInIt) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, 0, abc, abc), 0);
  EXPECT_EQ(described.getNItems(Fields), 0);
  EXPECT_EQ(namesOf(described, Fields).getSize(), 0);
}

TEST(ClassSetDirectObjectNamedOffsets, IsRefusedWithoutAddingNames) {
  lvrClass& described = keptPoint();
  Words const entries{3, 4, 5};
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), abc), -1);
  EXPECT_EQ(described.setDirectObjectNamedOffsets(kindOf(10), 3, entries.data(), abc), -1);
  EXPECT_EQ(described.setDirectObjectNamedOffsets(lvrClass::Functions1, -1, entries.data(), abc),
            -1);
  EXPECT_EQ(wordsOf(described, Fields), (Words{11, 12}));
  EXPECT_EQ(lookup(described, "a"), -1);
  EXPECT_EQ(lookup(described, "x"), 0);
  EXPECT_EQ(tableOf(described, lvrClass::Functions1), nullptr);
}

TEST(ClassSetDirectObjectNamedOffsets, LeavesUnnamedTablesUnnamed) {
  lvrClass& described = keptClass();
  fill(described, Fields, Words{1, 2, 3});
  Words const entries{4, 5, 6};
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), abc), -1);
  EXPECT_TRUE(tableOf(described, Fields)->names.isNil());
}

// ---- Filling from pairs ------------------------------------------------------------------------

TEST(ClassSetDirectObjectInterleavedNamedOffsets, ReadsEntriesAndNamesInTurn) {
  for (auto const kind : allKinds()) {
    SCOPED_TRACE(kind);
    Words const entries = entriesFrom(20, 3, kind);
    Words const pairs = interleaved(entries, {"a", "b", "c"}, kind);
    lvrClass& described = keptClass();
    EXPECT_EQ(described.setDirectObjectInterleavedNamedOffsets(kind, 3, pairs.data()), 0);
    EXPECT_EQ(wordsOf(described, kind), entries);
    EXPECT_EQ(lookup(described, "a", kind), 0);
    EXPECT_EQ(lookup(described, "b", kind), 1);
    EXPECT_EQ(lookup(described, "c", kind), 2);
    EXPECT_EQ(namesOf(described, kind).getSize(), 3);
    EXPECT_EQ(lvLayoutAccess<lvrHashMap>::hashSize(namesOf(described, kind)), 6U);
  }
}

TEST(ClassSetDirectObjectInterleavedNamedOffsets, PutsTheEntriesOfTheSuperclassInFront) {
  for (auto const kind : {Fields, Methods2}) {
    Words const inherited = entriesFrom(10, 2, kind);
    Words const own = entriesFrom(20, 1, kind);
    lvrClass& base = keptClass();
    base.setDirectObjectOffsets(kind, 2, inherited.data(), 0);
    lvrClass& described = keptSubclass(base);
    Words const pairs = interleaved(own, {"a"}, kind);
    EXPECT_EQ(described.setDirectObjectInterleavedNamedOffsets(kind, 1, pairs.data()), 0);
    EXPECT_EQ(wordsOf(described, kind), inherited + own);
  }
}

TEST(ClassSetDirectObjectInterleavedNamedOffsets, LeavesAnEntryWithoutName) {
  Words const pairs = interleaved({1, 2}, {nullptr, "b"}, Fields);
  lvrClass& described = keptClass();
  EXPECT_EQ(described.setDirectObjectInterleavedNamedOffsets(Fields, 2, pairs.data()), 0);
  EXPECT_EQ(wordsOf(described, Fields), (Words{1, 2}));
  EXPECT_EQ(lookup(described, "b"), 1);
  EXPECT_EQ(namesOf(described, Fields).getSize(), 1);
}

TEST(ClassSetDirectObjectInterleavedNamedOffsets, OfANullTableDoesNothing) {
  lvrClass& described = keptClass();
  EXPECT_EQ(described.setDirectObjectInterleavedNamedOffsets(Fields, 3, nullptr), 0);
  EXPECT_EQ(tablesOf(described), nullptr);
}

TEST(ClassSetDirectObjectInterleavedNamedOffsets, IsRefusedWithoutAddingNames) {
  Words const pairs = interleaved({1}, {"a"}, Fields);
  lvrClass& described = keptPoint();
  EXPECT_EQ(described.setDirectObjectInterleavedNamedOffsets(Fields, 1, pairs.data()), -1);
  EXPECT_EQ(described.setDirectObjectInterleavedNamedOffsets(kindOf(10), 1, pairs.data()), -1);
  EXPECT_EQ(wordsOf(described, Fields), (Words{11, 12}));
  EXPECT_EQ(lookup(described, "a"), -1);
}

// ---- What looks like a mistake, and is not -----------------------------------------------------

TEST(ClassOddities, NamesCountFromTheFrontOfATableThatStartsWithInheritedEntries) {
  lvrClass& base = keptClass();
  fill(base, Fields, Words{1, 2});
  Words const own{3, 4, 5};
  lvrClass& first = keptSubclass(base);
  first.setDirectObjectNamedOffsets(Fields, 3, own.data(), abc);
  EXPECT_EQ(wordsOf(first, Fields), (Words{1, 2, 3, 4, 5}));
  lvrClass& second = keptSubclass(base);
  Words const pairs = interleaved(own, {"a", "b", "c"}, Fields);
  second.setDirectObjectInterleavedNamedOffsets(Fields, 3, pairs.data());
  for (lvrClass const* const described : {&first, &second}) {
    EXPECT_EQ(lookup(*described, "a"), 0);
    EXPECT_EQ(lookup(*described, "c"), 2);
  }
}

}  // namespace
