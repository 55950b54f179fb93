#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <ostream>
#include <string>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/SortedLists.h"

namespace {

using test::countOf;
using test::integer;
using test::SortedArray;
using test::string;
using test::WithDuplicates;
using Cursor = std::unique_ptr<lviRealSortedListEnumerator>;

// How a cursor is got from a list.
struct CursorMaker {
  std::string name;
  lviRealSortedListEnumerator* (*make)(lvrSortedArrayList& list, int position);
};

std::ostream& operator<<(std::ostream& out, CursorMaker const& maker) { return out << maker.name; }

std::string nameOfCursor(testing::TestParamInfo<CursorMaker> const& info) {
  return info.param.name;
}

lviRealSortedListEnumerator* newEnumerator(lvrSortedArrayList& list, int position) {
  return list.getSortedListEnumerator(position);
}

lviRealSortedListEnumerator* newIterator(lvrSortedArrayList& list, int position) {
  return list.getSortedListIterator(position);
}

// Both cursors walk in the same way, here over 10, 20 and 30.
class SortedListCursor : public ::testing::TestWithParam<CursorMaker> {
 protected:
  static Cursor cursorOf(lvrSortedArrayList& walked, int position) {
    return Cursor(GetParam().make(walked, position));
  }
  Cursor at(int position) const { return cursorOf(*list, position); }

  // What next(), or previous(), answers until nothing is left in that direction.
  static std::string allNext(lviRealSortedListEnumerator& cursor) {
    std::string values;
    while (cursor.hasNext()) {
      values += test::brief(cursor.next()) + " ";
    }
    return values;
  }
  static std::string allPrevious(lviRealSortedListEnumerator& cursor) {
    std::string values;
    while (cursor.hasPrevious()) {
      values += test::brief(cursor.previous()) + " ";
    }
    return values;
  }

  static void expectWays(lviRealSortedListEnumerator const& cursor, bool next, bool previous) {
    EXPECT_EQ(cursor.hasNext(), next);
    EXPECT_EQ(cursor.hasPrevious(), previous);
  }
  static void expectIndices(lviRealSortedListEnumerator const& cursor, int next, int previous) {
    EXPECT_EQ(cursor.nextIndex(), next);
    EXPECT_EQ(cursor.previousIndex(), previous);
  }

  SortedArray list{WithDuplicates, {10, 20, 30}};
};

INSTANTIATE_TEST_SUITE_P(OfTheList, SortedListCursor,
                         ::testing::Values(CursorMaker{"Enumerator", &newEnumerator},
                                           CursorMaker{"Iterator", &newIterator}),
                         &nameOfCursor);

TEST_P(SortedListCursor, AtZeroGivesAllElements) { EXPECT_EQ(allNext(*at(0)), "10 20 30 "); }

TEST_P(SortedListCursor, BelowZeroIsAsAtZero) {
  for (int const position : {-1, -2, INT_MIN}) {
    Cursor const cursor = at(position);
    expectWays(*cursor, true, false);
    expectIndices(*cursor, 3, -1);
    EXPECT_EQ(allNext(*cursor), "10 20 30 ");
  }
}

TEST_P(SortedListCursor, AtAnElementGivesThoseBehindIt) {
  EXPECT_EQ(allNext(*at(1)), "30 ");
  EXPECT_EQ(allNext(*at(2)), "");
}

TEST_P(SortedListCursor, AtAnElementGivesThoseBeforeItBackwards) {
  EXPECT_EQ(allPrevious(*at(1)), "10 ");
  EXPECT_EQ(allPrevious(*at(2)), "20 10 ");
}

TEST_P(SortedListCursor, AtTheSizeGivesNothingForwardAndAllBackwards) {
  Cursor const cursor = at(3);
  expectWays(*cursor, false, true);
  expectIndices(*cursor, 3, 2);
  EXPECT_TRUE(cursor->next().isNil());
  EXPECT_EQ(allPrevious(*cursor), "30 20 10 ");
}

TEST_P(SortedListCursor, BeforeItsFirstStepKnowsItsNeighbours) {
  expectWays(*at(0), true, false);
  expectIndices(*at(0), 3, -1);
  expectWays(*at(1), true, true);
  expectIndices(*at(1), 2, 0);
  expectWays(*at(2), false, true);
  expectIndices(*at(2), 3, 1);
}

TEST_P(SortedListCursor, KnowsItsNeighboursAtEachStep) {
  Cursor const cursor = at(0);
  EXPECT_EQ(cursor->next().getInt(), 10);
  expectWays(*cursor, true, false);
  expectIndices(*cursor, 1, -1);
  EXPECT_EQ(cursor->next().getInt(), 20);
  expectWays(*cursor, true, true);
  expectIndices(*cursor, 2, 0);
  EXPECT_EQ(cursor->next().getInt(), 30);
  expectWays(*cursor, false, true);
  expectIndices(*cursor, 3, 1);
}

TEST_P(SortedListCursor, AtItsEndGivesNilAndStaysThere) {
  Cursor const cursor = at(0);
  allNext(*cursor);
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(cursor->next().isNil());
    expectWays(*cursor, false, true);
    expectIndices(*cursor, 3, 1);
  }
  EXPECT_EQ(cursor->previous().getInt(), 20);
}

TEST_P(SortedListCursor, SteppedBackFromTheFirstElementStartsOver) {
  Cursor const cursor = at(0);
  EXPECT_EQ(cursor->next().getInt(), 10);
  EXPECT_TRUE(cursor->previous().isNil());
  expectWays(*cursor, true, false);
  expectIndices(*cursor, 3, -1);
  EXPECT_EQ(allNext(*cursor), "10 20 30 ");
}

TEST_P(SortedListCursor, SteppedBackFromItsStartStaysThere) {
  Cursor const cursor = at(0);
  EXPECT_TRUE(cursor->previous().isNil());
  EXPECT_EQ(cursor->next().getInt(), 10);
}

TEST_P(SortedListCursor, TurnsRoundAnywhere) {
  Cursor const cursor = at(1);
  EXPECT_EQ(cursor->next().getInt(), 30);
  EXPECT_EQ(cursor->previous().getInt(), 20);
  EXPECT_EQ(cursor->next().getInt(), 30);
  EXPECT_EQ(cursor->previous().getInt(), 20);
  EXPECT_EQ(cursor->previous().getInt(), 10);
  expectWays(*cursor, true, false);
  expectIndices(*cursor, 1, -1);
  EXPECT_EQ(cursor->next().getInt(), 20);
}

TEST_P(SortedListCursor, BeyondTheSizeHasNotStartedAndStandsAtTheEnd) {
  for (int const position : {4, 100, INT_MAX}) {
    Cursor const cursor = at(position);
    expectWays(*cursor, false, true);
    expectIndices(*cursor, 3, -1);
    EXPECT_TRUE(cursor->next().isNil());
    expectIndices(*cursor, 3, -1);
  }
}

TEST_P(SortedListCursor, OfNoElementsStepsNowhere) {
  SortedArray const empty(WithDuplicates);
  SortedArray const emptied(WithDuplicates, {1});
  emptied->removeEntry(0);
  for (lvrSortedArrayList* const walked : {&*empty, &*emptied}) {
    for (int const position : {-1, 0, 1, 2}) {
      Cursor const cursor = cursorOf(*walked, position);
      expectWays(*cursor, false, false);
      expectIndices(*cursor, 0, -1);
      EXPECT_TRUE(cursor->next().isNil());
      EXPECT_TRUE(cursor->previous().isNil());
    }
  }
}

TEST_P(SortedListCursor, OfOneElementGivesIt) {
  SortedArray const one(WithDuplicates, {7});
  Cursor const cursor = cursorOf(*one, 0);
  expectWays(*cursor, true, false);
  EXPECT_EQ(cursor->next().getInt(), 7);
  expectWays(*cursor, false, false);
  expectIndices(*cursor, 1, -1);
}

TEST_P(SortedListCursor, OfAFullArrayReadsNothingBehindIt) {
  SortedArray const full(WithDuplicates, {1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(allPrevious(*cursorOf(*full, 8)), "8 7 6 5 4 3 2 1 ");
  EXPECT_EQ(allPrevious(*cursorOf(*full, 9)), "nil 8 7 6 5 4 3 2 1 ");
}

TEST_P(SortedListCursor, MovesByItself) {
  Cursor const one = at(0);
  Cursor const other = at(0);
  one->next();
  one->next();
  EXPECT_EQ(other->next().getInt(), 10);
  EXPECT_EQ(one->next().getInt(), 30);
}

TEST_P(SortedListCursor, HoldsNoReferenceToItsList) {
  Cursor const cursor = at(0);
  cursor->next();
  EXPECT_EQ(countOf(*list), 1);
}

TEST_P(SortedListCursor, GivesCopiesWithAReferenceOfTheirOwn) {
  lvArg const element = string("element");
  list->add(element);
  Cursor const cursor = at(2);
  lvArg const copy = cursor->next();
  EXPECT_TRUE(copy.eq(element));
  EXPECT_EQ(countOf(element), 3);
}

// --- While the list changes ----------------------------------------------------------------------

TEST_P(SortedListCursor, HoldsAPositionNotAnElement) {
  Cursor const cursor = at(1);
  list->add(integer(5));
  EXPECT_EQ(cursor->next().getInt(), 20);
  list->removeEntry(0);
  list->removeEntry(0);
  EXPECT_EQ(cursor->previous().getInt(), 30);
}

TEST_P(SortedListCursor, MeetsElementsThatAreAdded) {
  Cursor const cursor = at(2);
  expectWays(*cursor, false, true);
  list->add(integer(40));
  expectWays(*cursor, true, true);
  expectIndices(*cursor, 3, 1);
  EXPECT_EQ(cursor->next().getInt(), 40);
}

TEST_P(SortedListCursor, SurvivesGrowth) {
  Cursor const cursor = at(1);
  Cursor const start = at(0);
  for (int i = 4; i <= 1000; ++i) {
    list->add(integer(10 * i));
  }
  EXPECT_EQ(cursor->next().getInt(), 30);
  EXPECT_EQ(start->next().getInt(), 10);
  expectIndices(*cursor, 3, 1);
}

TEST_P(SortedListCursor, IsAtTheEndWhenItsElementIsGone) {
  Cursor const cursor = at(2);
  list->removeEntry(1);
  expectWays(*cursor, false, true);
  EXPECT_TRUE(cursor->next().isNil());
  EXPECT_EQ(cursor->previous().getInt(), 30);
  EXPECT_EQ(cursor->previous().getInt(), 10);
}

TEST_P(SortedListCursor, IsCutToTheSizeWhenManyElementsAreGone) {
  Cursor const cursor = at(3);
  list->removeEntry(0);
  list->removeEntry(0);
  expectWays(*cursor, false, true);
  expectIndices(*cursor, 1, 0);
  EXPECT_EQ(cursor->previous().getInt(), 30);
  EXPECT_TRUE(cursor->previous().isNil());
}

TEST_P(SortedListCursor, FindsNothingInAListThatWasCleared) {
  for (int const position : {0, 1, 3, 4}) {
    SortedArray const walked(WithDuplicates, {1, 2, 3});
    Cursor const cursor = cursorOf(*walked, position);
    walked->clear();
    expectWays(*cursor, false, false);
    expectIndices(*cursor, 0, -1);
    EXPECT_TRUE(cursor->next().isNil());
    EXPECT_TRUE(cursor->previous().isNil());
  }
}

TEST_P(SortedListCursor, SteppedInAClearedListStartsOverWhenThatIsFilled) {
  Cursor const cursor = at(2);
  list->clear();
  cursor->next();
  list->add(integer(1));
  list->add(integer(2));
  EXPECT_EQ(allNext(*cursor), "1 2 ");
}

TEST_P(SortedListCursor, FindsNothingInAListThatWasFinalized) {
  Cursor const cursor = at(1);
  list->finalize();
  expectWays(*cursor, false, false);
  EXPECT_TRUE(cursor->next().isNil());
  EXPECT_TRUE(cursor->previous().isNil());
}

TEST_P(SortedListCursor, SteppedOnWhileAllElementsAreRemovedStops) {
  Cursor const cursor = at(0);
  EXPECT_EQ(cursor->next().getInt(), 10);
  list->removeEntry(0);
  EXPECT_EQ(cursor->next().getInt(), 30);
  list->removeEntry(1);
  EXPECT_FALSE(cursor->hasNext());
  EXPECT_EQ(test::elementsOf(*list), "20 ");
}

}  // namespace
