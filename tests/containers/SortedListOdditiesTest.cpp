// What looks like a mistake in the sorted list, and is not.

#include <gtest/gtest.h>

#include <memory>

#include "support/Cells.h"
#include "support/IgnoreLeaks.h"
#include "support/Objects.h"
#include "support/SortedLists.h"

namespace {

using test::addEach;
using test::countOf;
using test::elementsOf;
using test::Held;
using test::integer;
using test::SortedArray;
using test::string;
using test::WithDuplicates;
using test::WithoutDuplicates;
using Cursor = std::unique_ptr<lviRealSortedListEnumerator>;

Cursor cursorAt(lvrSortedArrayList const& list, int position) {
  return Cursor(list.getSortedListEnumerator(position));
}

TEST(SortedListOddities, APresentElementAddedWithoutDuplicatesLeavesANilAtTheEnd) {
  SortedArray const list(WithoutDuplicates, {1, 5, 9});
  list->add(integer(5));
  EXPECT_EQ(elementsOf(*list), "1 5 9 nil ");
  EXPECT_EQ(list->getSize(), 4);
}

TEST(SortedListOddities, ANilAtTheEndHidesTheElementsBeforeIt) {
  SortedArray const list(WithoutDuplicates, {9, 9});
  EXPECT_EQ(elementsOf(*list), "9 nil ");
  EXPECT_FALSE(list->contains(integer(9)));
  list->add(integer(9));
  EXPECT_EQ(elementsOf(*list), "9 nil 9 ");
}

TEST(SortedListOddities, NilIsAddedToAnEmptyListOnly) {
  SortedArray const list(WithDuplicates);
  list->add(lvArg());
  EXPECT_EQ(list->getSize(), 1);
  SortedArray const other(WithDuplicates, {1});
  other->add(lvArg());
  EXPECT_EQ(other->getSize(), 1);
}

TEST(SortedListOddities, ASecondNilOverwritesTheElementBehindTheFirst) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    Held<lvrSortedArrayList> const list(duplicates);
    lvArg const lost = string("lost");
    addEach(*list, {lvArg(), lost, string("next")});
    list->add(lvArg());
    EXPECT_EQ(elementsOf(*list), "nil 'next' nil ");
    EXPECT_EQ(countOf(lost), 1);
  }
}

TEST(SortedListOddities, ASecondNilInAListOfNilAloneChangesNothing) {
  SortedArray const list(WithDuplicates);
  addEach(*list, {lvArg(), lvArg(), lvArg()});
  EXPECT_EQ(elementsOf(*list), "nil ");
}

TEST(SortedListOddities, ASecondNilFoundAtTheEndChangesNothing) {
  SortedArray const list(WithoutDuplicates, {9, 9});
  list->add(lvArg());
  EXPECT_EQ(elementsOf(*list), "9 nil ");
}

TEST(SortedListOddities, AShorterListComparesGreater) {
  SortedArray const shorter(WithDuplicates, {1, 2});
  SortedArray const longer(WithDuplicates, {1, 2, 3});
  EXPECT_EQ(shorter->compareTo(*longer), 1);
  EXPECT_EQ(longer->compareTo(*shorter), -1);
}

TEST(SortedListOddities, ACursorMadeAtAnElementGivesTheOneBehindIt) {
  SortedArray const list(WithDuplicates, {10, 20, 30});
  EXPECT_EQ(cursorAt(*list, 0)->next().getInt(), 10);
  EXPECT_EQ(cursorAt(*list, 1)->next().getInt(), 30);
}

TEST(SortedListOddities, ACursorMadeBeyondTheEndGivesNilBeforeTheLastElement) {
  SortedArray const list(WithDuplicates, {10, 20});
  Cursor const cursor = cursorAt(*list, 3);
  EXPECT_TRUE(cursor->hasPrevious());
  EXPECT_TRUE(cursor->previous().isNil());
  EXPECT_EQ(cursor->previous().getInt(), 20);
  EXPECT_EQ(cursor->previous().getInt(), 10);
}

TEST(SortedListOddities, TheNextIndexOfACursorBeforeItsFirstStepIsTheSize) {
  SortedArray const list(WithDuplicates, {10, 20});
  Cursor const cursor = cursorAt(*list, 0);
  EXPECT_EQ(cursor->nextIndex(), 2);
  cursor->next();
  EXPECT_EQ(cursor->nextIndex(), 1);
}

TEST(SortedListOddities, TheIteratorChangesNothing) {
  SortedArray const list(WithDuplicates, {10, 20, 30});
  std::unique_ptr<lviRealSortedListIterator> const iterator(list->getSortedListIterator(0));
  iterator->next();
  iterator->add(integer(15));
  iterator->set(integer(12));
  iterator->remove();
  EXPECT_EQ(elementsOf(*list), "10 20 30 ");
  EXPECT_EQ(iterator->next().getInt(), 20);
}

TEST(SortedListOddities, EqualListsAreNotEquivalentAndHashToZero) {
  SortedArray list(WithDuplicates, {1, 2});
  SortedArray other(WithDuplicates, {1, 2});
  EXPECT_TRUE(list->equals(*other));
  EXPECT_EQ(list->equiv(*other), 0);
  EXPECT_EQ(list->equiv(*list), 1);
  EXPECT_EQ(list.cell().equiv(other.cell()), 0);
  EXPECT_EQ(list->hashCode(), 0U);
}

TEST(SortedListOddities, IntegersFarApartStandInTheOrderOfTheirWrappedDifference) {
  SortedArray const list(WithDuplicates, {-2147483647 - 1, 2147483647});
  EXPECT_EQ(elementsOf(*list), "2147483647 -2147483648 ");
}

TEST(SortedListOddities, ADestructorWithoutFinalizeReleasesNothing) {
  lvArg const element = string("element");
  {
    test::IgnoreLeaks const ignore;
    auto* const list = new lvrSortedArrayList(WithDuplicates);
    list->add(element);
    delete list;
  }
  EXPECT_EQ(countOf(element), 2);
  EXPECT_EQ(element.getReferencable()->__removeRef(), 0);  // What stays behind is the array.
}

TEST(SortedListOddities, APresentElementTakenInWithoutDuplicatesLengthensNothing) {
  SortedArray const list(WithoutDuplicates, {1, 5, 9});
  list->addAll(*SortedArray(WithDuplicates, {5}));
  EXPECT_EQ(elementsOf(*list), "1 5 9 ");
}

}  // namespace
