// What the sorted list allocates, and what becomes of it when memory runs out.
//
// The program is linked with --wrap for malloc, realloc and free: the array comes from realloc(),
// all the rest from operator new, which is replaced here too.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <new>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/Mallocs.h"
#include "support/Objects.h"
#include "support/SortedLists.h"
#include "tarselvalues/containers/lvSortedListEnumerator.h"
#include "tarselvalues/containers/lvSortedListIterator.h"

namespace {

using test::addEach;
using test::countOf;
using test::elementsOf;
using test::Held;
using test::integer;
using test::integers;
using test::isRestNil;
using test::Mallocs;
using test::OutOfMemory;
using test::OwnSortedList;
using test::SortedArray;
using test::string;
using test::WithDuplicates;
using test::WithoutDuplicates;
using Layout = test::SortedLayout;

constexpr int OutOfMemoryStatus = -12;

// How many blocks `action` asks for.
template <class Action>
int allocationsOf(Action const& action) {
  constexpr int plenty = 1000000;
  OutOfMemory const counting(plenty);
  action();
  return plenty - Mallocs::failAfter;
}

// Whether `action` ends with std::bad_alloc when no more than `after` allocations succeed.
template <class Action>
bool runsOutOfMemory(Action const& action, int after = 0) {
  try {
    OutOfMemory const out(after);
    action();
  } catch (std::bad_alloc const&) {
    return true;
  }
  return false;
}

// --- What is allocated ---------------------------------------------------------------------------

TEST(SortedListMemory, OfANewListIsTheObjectAlone) {
  EXPECT_EQ(allocationsOf([] { SortedArray const list(WithDuplicates); }), 1);
}

TEST(SortedListMemory, OfTheArrayIsGotWithEveryEighthElement) {
  SortedArray const list(WithDuplicates);
  EXPECT_EQ(allocationsOf([&] {
              for (int i = 0; i < 40; ++i) {
                list->add(integer(i));
              }
            }),
            5);
  EXPECT_EQ(Mallocs::cutTo, 40 * sizeof(lvArg));
}

TEST(SortedListMemory, IsNotNeededForLookupsAndRemovals) {
  SortedArray const list(WithDuplicates, {1, 5, 5, 9});
  SortedArray const other(WithDuplicates, {1, 5, 9});
  EXPECT_EQ(allocationsOf([&] {
              list->contains(integer(5));
              list->indexOf(integer(5));
              list->lastIndexOf(integer(5));
              list->get(2);
              list->equals(*other);
              list->add(lvArg());
              list->removeEntry(1);
              list->expand(8);
              list->clear();
            }),
            0);
}

TEST(SortedListMemory, OfTheArrayGrowsOnceForAllThatIsTakenIn) {
  SortedArray const other(WithDuplicates);
  for (int i = 0; i < 50; ++i) {
    other->add(integer(2 * i));
  }
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates, {1, 3, 5});
    int const cursors = duplicates != 0 ? 1 : 2;  // One to count with, one to take with.
    EXPECT_EQ(allocationsOf([&] { list->addAll(*other); }), 1 + cursors);
    EXPECT_EQ(Mallocs::cutTo, 53 * sizeof(lvArg));
  }
}

TEST(SortedListMemory, OfACursorIsFreedByItsHandle) {
  SortedArray list(WithDuplicates, {1, 2});
  int const alive = Mallocs::alive;
  {
    lvSortedListEnumerator const enumerator(*list, 0);
    lvSortedListIterator const iterator(list.cell(), 0);
    EXPECT_EQ(Mallocs::alive, alive + 2);
  }
  EXPECT_EQ(Mallocs::alive, alive);
}

TEST(SortedListMemory, OfTheArrayIsFreedByClear) {
  SortedArray const list(WithDuplicates, {1, 2, 3});
  int const alive = Mallocs::alive;
  list->clear();
  EXPECT_EQ(Mallocs::alive, alive - 1);
  list->clear();
  EXPECT_EQ(Mallocs::alive, alive - 1);
}

TEST(SortedListMemory, IsAllFreedWithTheList) {
  int const alive = Mallocs::alive;
  {
    Held<lvrSortedArrayList> const list(WithoutDuplicates);
    addEach(*list, {string("a"), string("b"), string("b"), lvArg(), integer(1)});
    list->addAll(*SortedArray(WithDuplicates, {1, 2, 2, 3, 4, 5, 6, 7}));
    list->addAll(*list);
  }
  EXPECT_EQ(Mallocs::alive, alive);
}

TEST(SortedListMemory, MissingForTheListIsReported) {
  int const alive = Mallocs::alive;
  EXPECT_TRUE(runsOutOfMemory([] { lvrSortedArrayList::defaultCtorMethod(); }));
  EXPECT_EQ(Mallocs::alive, alive);
}

TEST(SortedListMemory, MissingForACursorIsReportedAndLeavesTheListAlone) {
  SortedArray list(WithDuplicates, {1, 2});
  SortedArray const other(WithDuplicates, {1, 2});
  int const alive = Mallocs::alive;
  EXPECT_TRUE(runsOutOfMemory([&] { lvSortedListEnumerator const cursor(*list, 0); }));
  EXPECT_TRUE(runsOutOfMemory([&] { lvSortedListIterator const cursor(list.cell(), 0); }));
  EXPECT_TRUE(runsOutOfMemory([&] { list->compareTo(*other); }));
  EXPECT_TRUE(runsOutOfMemory([&] { list->containsAll(*other); }));
  EXPECT_EQ(Mallocs::alive, alive);
  EXPECT_EQ(elementsOf(*list), "1 2 ");
}

// --- Growth that fails in add() ------------------------------------------------------------------

// Adds without memory, with all that the process prints going to standard error.
void addWithoutMemory(lvrSortedArrayList& list, lvArg const& value) {
  dup2(STDERR_FILENO, STDOUT_FILENO);
  OutOfMemory const out;
  list.add(value);
}

void expectExit(lvrSortedArrayList& list, lvArg const& value) {
  EXPECT_EXIT(addWithoutMemory(list, value), ::testing::ExitedWithCode(13), ::testing::IsEmpty());
}

TEST(SortedListGrowthOddities, ThatFailsForANewElementEndsTheProcess) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates, {1, 2, 3, 4, 5, 6, 7, 8});
    expectExit(*list, integer(0));
    expectExit(*list, integer(9));
    expectExit(*list, string("text"));
  }
}

TEST(SortedListGrowthOddities, ThatFailsForAPresentElementEndsTheProcess) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates, {1, 2, 3, 4, 5, 6, 7, 8});
    expectExit(*list, integer(5));
  }
}

TEST(SortedListGrowth, IsNotTriedForNil) {
  SortedArray const list(WithDuplicates, {1, 2, 3, 4, 5, 6, 7, 8});
  SortedArray const nils(WithDuplicates);
  addEach(*nils, {lvArg()});
  addEach(*nils, integers({1, 2, 3, 4, 5, 6, 7}));
  OutOfMemory const out;
  list->add(lvArg());
  nils->add(lvArg());
  EXPECT_EQ(list->getSize(), 8);
  EXPECT_EQ(nils->getSize(), 8);
}

TEST(SortedListGrowth, IsNotTriedWhileThereIsRoom) {
  SortedArray const list(WithDuplicates, {1});
  std::vector<lvArg> const more = integers({2, 3, 4, 5, 6, 7, 8});
  {
    OutOfMemory const out;
    EXPECT_EQ(list->expand(8), 0);
    addEach(*list, more);
  }
  EXPECT_EQ(elementsOf(*list), "1 2 3 4 5 6 7 8 ");
}

TEST(SortedListGrowth, ThatFailsLeavesAnEmptyListEmpty) {
  lvArg const element = string("element");
  SortedArray const list(WithDuplicates);
  {
    OutOfMemory const out;
    EXPECT_EQ(list->add(element), 0);
    EXPECT_EQ(list->add(lvArg()), 0);
  }
  EXPECT_TRUE(list->isEmpty());
  EXPECT_EQ(Layout::array(*list), nullptr);
  EXPECT_EQ(countOf(element), 1);
  list->add(element);
  EXPECT_EQ(elementsOf(*list), "'element' ");
  EXPECT_TRUE(isRestNil(*list));
}

TEST(SortedListGrowth, ThatFailsInAnEmptiedArrayFreesIt) {
  SortedArray const list(WithDuplicates, {1});
  list->removeEntry(0);
  int const alive = Mallocs::alive;
  {
    OutOfMemory const out;
    EXPECT_EQ(list->expand(9), OutOfMemoryStatus);
  }
  EXPECT_EQ(Mallocs::alive, alive - 1);
  EXPECT_EQ(Layout::array(*list), nullptr);
}

// --- Growth that fails elsewhere -----------------------------------------------------------------

// What is left of a list that lost its array: nothing, but a list that can be used.
void expectLost(lvrSortedArrayList& list, int capacity) {
  EXPECT_TRUE(list.isEmpty());
  EXPECT_EQ(Layout::array(list), nullptr);
  EXPECT_EQ(Layout::capacity(list), capacity);
  EXPECT_EQ(list.compareTo(*SortedArray(WithDuplicates)), 0);
  EXPECT_EQ(list.indexOf(integer(1)), -1);
  EXPECT_TRUE(list.get(0).isNil());
  list.removeEntry(0);
  list.insertEmptyEntry(0);
  addEach(list, integers({2, 1}));
  EXPECT_EQ(elementsOf(list), "1 2 ");
  EXPECT_TRUE(isRestNil(list));
}

TEST(SortedListExpandWithoutMemory, AnswersMinusTwelveAndLosesTheElements) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  lvArg const element = string("element");
  addEach(*list, {element, integer(1)});
  int const alive = Mallocs::alive;
  {
    OutOfMemory const out;
    EXPECT_EQ(list->expand(9), OutOfMemoryStatus);
  }
  EXPECT_EQ(countOf(element), 1);
  EXPECT_EQ(Mallocs::alive, alive - 1);
  expectLost(*list, 16);
}

TEST(SortedListExpandWithoutMemory, RaisesTheCapacityAllTheSame) {
  SortedArray const list(WithDuplicates);
  {
    OutOfMemory const out;
    EXPECT_EQ(list->expand(100), OutOfMemoryStatus);
  }
  expectLost(*list, 100);
}

TEST(SortedListExpandWithoutMemory, IsTriedAgainByTheNextCall) {
  SortedArray const list(WithDuplicates);
  {
    OutOfMemory const out;
    EXPECT_EQ(list->expand(100), OutOfMemoryStatus);
    EXPECT_EQ(list->expand(50), OutOfMemoryStatus);
  }
  EXPECT_EQ(list->expand(50), 0);
  EXPECT_NE(Layout::array(*list), nullptr);
  EXPECT_GE(Layout::capacity(*list), 50);
  EXPECT_TRUE(isRestNil(*list));
}

TEST(SortedListExpandWithoutMemory, LeavesCursorsWithNothingToRead) {
  SortedArray const list(WithDuplicates, {1, 2, 3});
  lvSortedListEnumerator const cursor(*list, 1);
  {
    OutOfMemory const out;
    list->expand(9);
  }
  EXPECT_FALSE(cursor->hasNext());
  EXPECT_TRUE(cursor->next().isNil());
  EXPECT_TRUE(cursor->previous().isNil());
}

TEST(SortedListExpandWithoutMemory, LetsTheLostElementsUseTheList) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  list->add(test::acting([&] {
    Mallocs::failAfter = Mallocs::Never;
    list->add(integer(7));
  }));
  {
    OutOfMemory const out;
    EXPECT_EQ(list->expand(9), OutOfMemoryStatus);
  }
  EXPECT_EQ(elementsOf(*list), "7 ");
}

TEST(SortedListExpand, OfMoreCellsThanMemoryCanHaveAnswersMinusTwelve) {
  SortedArray const list(WithDuplicates, {1});
  constexpr int cells = 0x20000001;  // Of eight bytes each: 8 bytes modulo 2 to the 32.
  OutOfMemory const out(sizeof(void*) == 4 ? Mallocs::Never : 0);
  EXPECT_EQ(list->expand(cells), OutOfMemoryStatus);
  EXPECT_EQ(list->expand(INT_MAX), OutOfMemoryStatus);
  EXPECT_TRUE(list->isEmpty());
}

// --- Taking in another list ----------------------------------------------------------------------

class SortedListMergeMemory : public ::testing::Test {
 protected:
  // What becomes of a full list that takes `other` in, or itself where that is null, after so many
  // allocations. No block may be left over.
  static std::string outcome(unsigned duplicates, lviSortedList const* other, int after) {
    std::string result(100, ' ');  // Its block is there before and after.
    int const alive = Mallocs::alive;
    {
      SortedArray const list(duplicates, {10, 20, 30, 40, 50, 60, 70, 80});
      std::string const before = elementsOf(*list);
      bool const thrown = runsOutOfMemory(
          [&] { EXPECT_TRUE(list->addAll(other != nullptr ? *other : *list)); }, after);
      EXPECT_TRUE(isRestNil(*list));
      if (elementsOf(*list) == before) {
        result = thrown ? "thrown " : "same ";
      } else if (list->isEmpty()) {
        EXPECT_FALSE(thrown);
        expectLost(*list, 16);
        result = "lost ";
      } else {
        EXPECT_FALSE(thrown);
        result = elementsOf(*list);
      }
    }
    EXPECT_EQ(Mallocs::alive, alive);
    return result;
  }

  SortedArray other{WithDuplicates, {5, 15, 85}};
};

TEST_F(SortedListMergeMemory, MissingForTheArrayLosesTheElementsAndForACursorNone) {
  EXPECT_EQ(outcome(WithDuplicates, &*other, 0), "lost ");
  EXPECT_EQ(outcome(WithDuplicates, &*other, 1), "thrown ");
  EXPECT_EQ(outcome(WithDuplicates, &*other, 2), "5 10 15 20 30 40 50 60 70 80 85 ");
  EXPECT_EQ(elementsOf(*other), "5 15 85 ");
}

TEST_F(SortedListMergeMemory, MissingWithoutDuplicatesDoesTheSame) {
  EXPECT_EQ(outcome(WithoutDuplicates, &*other, 0), "thrown ");
  EXPECT_EQ(outcome(WithoutDuplicates, &*other, 1), "lost ");
  EXPECT_EQ(outcome(WithoutDuplicates, &*other, 2), "thrown ");
  EXPECT_EQ(outcome(WithoutDuplicates, &*other, 3), "5 10 15 20 30 40 50 60 70 80 85 ");
}

TEST_F(SortedListMergeMemory, MissingForACopyOfTheListLeavesItAsItWas) {
  EXPECT_EQ(outcome(WithDuplicates, nullptr, 0), "thrown ");
  EXPECT_EQ(outcome(WithDuplicates, nullptr, 1), "same ");
  EXPECT_EQ(outcome(WithDuplicates, nullptr, 2), "lost ");
  EXPECT_EQ(outcome(WithDuplicates, nullptr, 3), "thrown ");
  EXPECT_EQ(outcome(WithDuplicates, nullptr, 4),
            "10 10 20 20 30 30 40 40 50 50 60 60 70 70 80 80 ");
}

TEST(SortedListMergeOddities, AListThatCannotGrowLosesItsElementsAndAnswersTrue) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  lvArg const mine = string("mine");
  lvArg const theirs = string("theirs");
  list->add(mine);
  Held<OwnSortedList> const others(std::vector<lvArg>(8, theirs));
  int const before = countOf(theirs);
  {
    OutOfMemory const out;
    EXPECT_TRUE(list->addAll(*others));
  }
  EXPECT_TRUE(list->isEmpty());
  EXPECT_EQ(countOf(mine), 1);
  EXPECT_EQ(countOf(theirs), before);
  EXPECT_EQ(others->cursorsAlive(), 0);
}

TEST_F(SortedListMergeMemory, IsNotNeededForTheArrayWhenTheElementsFit) {
  SortedArray const list(WithDuplicates, {1, 2, 3, 4, 5});
  EXPECT_EQ(allocationsOf([&] { list->addAll(*other); }), 1);
  EXPECT_EQ(elementsOf(*list), "1 2 3 4 5 5 15 85 ");
}

}  // namespace
