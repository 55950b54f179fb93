#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/SortedLists.h"
#include "support/UnusualObjects.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/reflect/lvrClass.h"

namespace {

using test::acting;
using test::addEach;
using test::bookkeepingOf;
using test::countOf;
using test::elementsOf;
using test::Held;
using test::integer;
using test::integers;
using test::isRestNil;
using test::logging;
using test::OwnSortedList;
using test::setBookkeeping;
using test::SortedArray;
using test::string;
using test::textOf;
using test::WithDuplicates;
using test::WithoutDuplicates;
using Layout = test::SortedLayout;

// --- Making --------------------------------------------------------------------------------------

TEST(SortedListNew, IsEmptyAndHasNoArray) {
  SortedArray const list(WithDuplicates);
  EXPECT_EQ(list->getSize(), 0);
  EXPECT_TRUE(list->isEmpty());
  EXPECT_EQ(Layout::array(*list), nullptr);
  EXPECT_EQ(Layout::capacity(*list), 0);
}

TEST(SortedListNew, GrowsByEight) {
  EXPECT_EQ(Layout::growStep(*SortedArray(WithDuplicates)), 8U);
  EXPECT_EQ(Layout::growStep(*SortedArray(WithoutDuplicates)), 8U);
}

TEST(SortedListNew, KeepsTheLowestByteOfItsArgument) {
  EXPECT_EQ(Layout::allowDuplicates(*SortedArray(0U)), 0U);
  EXPECT_EQ(Layout::allowDuplicates(*SortedArray(1U)), 1U);
  EXPECT_EQ(Layout::allowDuplicates(*SortedArray(0xFFU)), 0xFFU);
  EXPECT_EQ(Layout::allowDuplicates(*SortedArray(0xABCDEF12U)), 0x12U);
  EXPECT_EQ(Layout::growStep(*SortedArray(0xABCDEF12U)), 8U);
}

TEST(SortedListNew, LooksAtTheLowestBitOnly) {
  for (unsigned const keeping : {1U, 3U, 0xFFU, 0xFFFFFFFFU, 0x101U}) {
    EXPECT_EQ(elementsOf(*SortedArray(keeping, {5, 5})), "5 5 ") << keeping;
  }
  for (unsigned const replacing : {0U, 2U, 0xFEU, 0x100U, 0xFFFFFF00U}) {
    EXPECT_EQ(elementsOf(*SortedArray(replacing, {5, 5})), "5 nil ") << replacing;
  }
}

TEST(SortedListNew, GivesTheListTagToCellsThatHoldIt) {
  SortedArray list(WithDuplicates);
  EXPECT_EQ(list.cell().getType(), lvArg::ListType);
  EXPECT_EQ(lvLayoutAccess<lvReferencable>::typeByte(*list), 0x90);
}

TEST(SortedListNew, MadeByNameKeepsDuplicates) {
  lvReferencable* const made = lvrSortedArrayList::defaultCtorMethod();
  EXPECT_EQ(countOf(*made), 0);
  lvArg const holder(*made);
  auto& list = dynamic_cast<lvrSortedArrayList&>(*made);
  EXPECT_EQ(Layout::allowDuplicates(list), 1U);
  EXPECT_EQ(elementsOf(addEach(list, integers({5, 5}))), "5 5 ");
}

TEST(SortedListNew, IsOfTheClassSortedArrayList) {
  SortedArray const list(WithDuplicates);
  EXPECT_EQ(textOf(list->getClassDesc()), "SortedArrayList");
  EXPECT_TRUE(list->getClassDesc().eq(lvString("SortedArrayList")));
  EXPECT_EQ(&list->getClassDesc(), &lvrSortedArrayList::getStaticClassDesc());
}

TEST(SortedListNew, HasNothingBehindItsReservedOperations) {
  SortedArray const list(WithDuplicates, {1, 2});
  EXPECT_EQ(list->reserved14(), 0);
  EXPECT_EQ(list->reserved15(), 0);
  EXPECT_TRUE(list->reserved16().isNil());
  EXPECT_TRUE(list->reserved17().isNil());
  EXPECT_EQ(elementsOf(*list), "1 2 ");
}

// --- add -----------------------------------------------------------------------------------------

TEST(SortedListAdd, PutsTheElementsInAscendingOrder) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates, {4, 1, 9, -7, 0, 6, 5, 100, -8});
    EXPECT_EQ(elementsOf(*list), "-8 -7 0 1 4 5 6 9 100 ");
  }
}

TEST(SortedListAdd, PutsAnElementIntoEachGap) {
  for (int const value : {0, 2, 4, 6, 8}) {
    SortedArray const list(WithDuplicates, {1, 3, 5, 7});
    EXPECT_EQ(list->add(integer(value)), 0);
    ASSERT_EQ(list->getSize(), 5);
    for (int i = 1; i < 5; ++i) {
      EXPECT_LT(list->get(i - 1).getInt(), list->get(i).getInt()) << "with " << value;
    }
  }
}

TEST(SortedListAdd, OrdersTheKindsByTheirTags) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  addEach(*list, {*lvrClass::defaultCtorMethod(), lvVector(3), lvHashMap(3), string("text"),
                  acting(nullptr), test::pointer(8), integer(1000)});
  EXPECT_EQ(elementsOf(*list), "1000 <tag 12> <tag 18> 'text' <tag 24> <tag 25> <tag 27> ");
}

TEST(SortedListAdd, OrdersStringsByTheirText) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  addEach(*list, {string("pear"), string("apple"), string("fig"), string("")});
  EXPECT_EQ(elementsOf(*list), "'' 'apple' 'fig' 'pear' ");
}

TEST(SortedListAdd, AnswersZeroWhateverItDoes) {
  SortedArray const list(WithoutDuplicates);
  EXPECT_EQ(list->add(integer(1)), 0);
  EXPECT_EQ(list->add(integer(1)), 0);
  EXPECT_EQ(list->add(lvArg()), 0);
  EXPECT_EQ(SortedArray(WithDuplicates)->add(lvArg()), 0);
}

TEST(SortedListAdd, OfNilIntoAnEmptyListStoresIt) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates);
    list->add(lvArg());
    EXPECT_EQ(elementsOf(*list), "nil ");
    EXPECT_TRUE(list->contains(lvArg()));
  }
}

TEST(SortedListAdd, OfNilIntoAListThatHoldsNoneDoesNothing) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates, {1, 2, 3, 4, 5, 6, 7, 8});
    list->add(lvArg());
    EXPECT_EQ(elementsOf(*list), "1 2 3 4 5 6 7 8 ");
    EXPECT_EQ(Layout::capacity(*list), 8);
  }
}

TEST(SortedListAdd, OfAnEqualElementKeepsBothWithDuplicates) {
  SortedArray const list(WithDuplicates, {1, 5, 9});
  list->add(integer(5));
  EXPECT_EQ(elementsOf(*list), "1 5 5 9 ");
  EXPECT_EQ(list->indexOf(integer(5)), 1);
  EXPECT_EQ(list->lastIndexOf(integer(5)), 2);
}

TEST(SortedListAdd, PutsAnEqualElementBeforeTheOneThatTheBisectionMeets) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  std::vector<lvArg> const twins = {string("twin"), string("twin"), string("twin")};
  addEach(*list, twins);
  EXPECT_TRUE(list->get(0).eq(twins[1]));
  EXPECT_TRUE(list->get(1).eq(twins[2]));
  EXPECT_TRUE(list->get(2).eq(twins[0]));
}

TEST(SortedListAdd, OfAnEqualElementReplacesItWithoutDuplicates) {
  Held<lvrSortedArrayList> const list(WithoutDuplicates);
  lvArg const first = string("twin");
  lvArg const second = string("twin");
  addEach(*list, {first, second});
  EXPECT_TRUE(list->get(0).eq(second));
  EXPECT_EQ(countOf(first), 1);
  EXPECT_EQ(countOf(second), 2);
}

TEST(SortedListAdd, TakesOneReference) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    Held<lvrSortedArrayList> const list(duplicates);
    lvArg const element = string("element");
    list->add(element);
    EXPECT_EQ(countOf(element), 2);
    list->add(string("another"));
    list->add(string("zebra"));
    EXPECT_EQ(countOf(element), 2);
  }
}

TEST(SortedListAdd, LeavesTheBookkeepingOfTheCellBehind) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  lvArg marked = integer(1);
  setBookkeeping(marked, 0x20);
  addEach(*list, {marked, marked, marked});
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(bookkeepingOf(list->get(i)), 0U);
  }
}

TEST(SortedListAdd, GrowsTheArrayByEight) {
  SortedArray const list(WithDuplicates);
  for (int i = 0; i < 40; ++i) {
    list->add(integer(i * 7 % 40));
    EXPECT_EQ(Layout::capacity(*list), i / 8 * 8 + 8);
    EXPECT_TRUE(isRestNil(*list));
  }
}

TEST(SortedListAdd, GrowsAFullListBeforeItTakesTheNilBehindTheEnd) {
  SortedArray const list(WithoutDuplicates, {1, 2, 3, 4, 5, 6, 7, 8});
  list->add(integer(5));
  EXPECT_EQ(elementsOf(*list), "1 2 3 4 5 6 7 8 nil ");
  EXPECT_EQ(Layout::capacity(*list), 16);
  EXPECT_TRUE(isRestNil(*list));
}

// An object that is equal to all others of its kind.
class EqualObject : public test::ActingObject {
 public:
  using ActingObject::ActingObject;
  int compareTo(lvReferencable const& /*other*/) const override { return 0; }
};

TEST(SortedListAdd, ReleasesTheReplacedElementWhenTheListIsWholeAgain) {
  Held<lvrSortedArrayList> const list(WithoutDuplicates);
  std::string seen;
  list->add(*new EqualObject([&] {
    seen = elementsOf(*list);
    list->clear();
  }));
  list->add(*new EqualObject(nullptr));
  EXPECT_EQ(seen, "<tag 18> nil ");
  EXPECT_TRUE(list->isEmpty());
}

// --- The steps of it -----------------------------------------------------------------------------

// Searches 1, 5, 5, 5, 9.
class SortedListSearch : public ::testing::Test {
 protected:
  struct Answer {
    int position;
    bool found;
  };

  Answer search(int value, int low = 0, int high = lvrSortedArrayList::WholeList) const {
    bool found = value % 2 == 0;  // Must be overwritten.
    int const position = list->search(integer(value), &found, low, high);
    return {position, found};
  }
  static void expectAnswer(Answer const& answer, int position, bool found) {
    EXPECT_EQ(answer.position, position);
    EXPECT_EQ(answer.found, found);
  }

  SortedArray list{WithDuplicates, {1, 5, 5, 5, 9}};
};

TEST_F(SortedListSearch, AnswersTheEqualElementThatTheBisectionMeetsFirst) {
  expectAnswer(search(5), 2, true);
  expectAnswer(search(1), 0, true);
  expectAnswer(search(9), 4, true);
  expectAnswer(search(5, 0, 2), 1, true);
  expectAnswer(search(5, 3, 5), 3, true);
}

TEST_F(SortedListSearch, AnswersTheLastProbedPositionWhenNothingIsEqual) {
  expectAnswer(search(0), 0, false);
  expectAnswer(search(2), 0, false);
  expectAnswer(search(6), 3, false);
  expectAnswer(search(10), 4, false);
  SortedArray const three(WithDuplicates, {1, 5, 9});
  EXPECT_EQ(three->search(integer(3), nullptr, 0, INT_MAX), 0);
  EXPECT_EQ(three->search(integer(6), nullptr, 0, INT_MAX), 2);
}

TEST_F(SortedListSearch, LooksOnlyBetweenTheBounds) {
  expectAnswer(search(1, 1, 5), 1, false);
  expectAnswer(search(9, 0, 4), 3, false);
  expectAnswer(search(5, 4, 5), 4, false);
}

TEST_F(SortedListSearch, CutsTheBoundsToTheList) {
  expectAnswer(search(1, -100, INT_MAX), 0, true);
  expectAnswer(search(1, INT_MIN, 1), 0, true);
  expectAnswer(search(9, 4, 6), 4, true);
}

TEST_F(SortedListSearch, OfNoPositionsAnswersTheLowerBound) {
  expectAnswer(search(5, 2, 2), 2, false);
  expectAnswer(search(5, 3, 1), 3, false);
  expectAnswer(search(5, -4, -2), 0, false);
  expectAnswer(search(5, -4, 0), 0, false);
  expectAnswer(search(5, 5), 5, false);
  expectAnswer(search(5, 77), 77, false);
  expectAnswer(search(5, INT_MAX), INT_MAX, false);
}

TEST_F(SortedListSearch, OfAnEmptyListAnswersTheLowerBound) {
  list->clear();
  expectAnswer(search(5), 0, false);
  expectAnswer(search(5, 3), 3, false);
}

TEST_F(SortedListSearch, NeedsNoPlaceForTheFlag) {
  EXPECT_EQ(list->search(integer(9), nullptr, 0, INT_MAX), 4);
  EXPECT_EQ(list->search(integer(9), nullptr, 5, 5), 5);
}

TEST(SortedListExpand, GrowsByEightOrStraightToWhatIsNeeded) {
  SortedArray const list(WithDuplicates);
  EXPECT_EQ(list->expand(3), 0);
  EXPECT_EQ(Layout::capacity(*list), 8);
  EXPECT_EQ(list->expand(9), 0);
  EXPECT_EQ(Layout::capacity(*list), 16);
  EXPECT_EQ(list->expand(100), 0);
  EXPECT_EQ(Layout::capacity(*list), 100);
  EXPECT_EQ(list->expand(108), 0);
  EXPECT_EQ(Layout::capacity(*list), 108);
  EXPECT_TRUE(isRestNil(*list));
}

TEST(SortedListExpand, ToWhatIsThereDoesNothing) {
  SortedArray const list(WithDuplicates, {1, 2});
  lvArg const* const array = Layout::array(*list);
  for (int const needed : {8, 3, 0, -1, INT_MIN}) {
    EXPECT_EQ(list->expand(needed), 0);
    EXPECT_EQ(Layout::array(*list), array);
    EXPECT_EQ(Layout::capacity(*list), 8);
  }
}

TEST(SortedListExpand, OfAnEmptyListToNothingAllocatesNothing) {
  SortedArray const list(WithDuplicates);
  for (int const needed : {0, -1}) {
    EXPECT_EQ(list->expand(needed), 0);
    EXPECT_EQ(Layout::array(*list), nullptr);
    EXPECT_EQ(Layout::capacity(*list), 0);
  }
}

TEST(SortedListExpand, KeepsTheElements) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  lvArg const element = string("element");
  addEach(*list, {element, integer(1)});
  EXPECT_EQ(list->expand(1000), 0);
  EXPECT_EQ(elementsOf(*list), "1 'element' ");
  EXPECT_EQ(countOf(element), 2);
  EXPECT_TRUE(isRestNil(*list));
}

TEST(SortedListRemoveEntry, ClosesTheGap) {
  SortedArray const list(WithDuplicates, {1, 2, 3, 4});
  list->removeEntry(1);
  EXPECT_EQ(elementsOf(*list), "1 3 4 ");
  list->removeEntry(2);
  EXPECT_EQ(elementsOf(*list), "1 3 ");
  list->removeEntry(0);
  EXPECT_EQ(elementsOf(*list), "3 ");
  list->removeEntry(0);
  EXPECT_TRUE(list->isEmpty());
  EXPECT_EQ(Layout::capacity(*list), 8);
  EXPECT_TRUE(isRestNil(*list));
}

TEST(SortedListRemoveEntry, WithoutAnElementDoesNothing) {
  SortedArray const list(WithDuplicates, {1, 2});
  for (int const position : {-1, 2, 3, 8, INT_MAX, INT_MIN}) {
    list->removeEntry(position);
    EXPECT_EQ(elementsOf(*list), "1 2 ") << position;
  }
  SortedArray const empty(WithDuplicates);
  empty->removeEntry(0);
  EXPECT_EQ(empty->getSize(), 0);
}

TEST(SortedListRemoveEntry, ReleasesTheElementAndNoOther) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  std::vector<lvArg> const elements = {string("a"), string("b"), string("c")};
  addEach(*list, elements);
  list->removeEntry(1);
  EXPECT_EQ(countOf(elements[0]), 2);
  EXPECT_EQ(countOf(elements[1]), 1);
  EXPECT_EQ(countOf(elements[2]), 2);
}

TEST(SortedListRemoveEntry, LeavesAListThatTheRemovedElementMayUse) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  std::string seen;
  addEach(*list, integers({1, 2}));
  list->add(acting([&] {
    seen = elementsOf(*list);
    list->clear();
  }));
  list->removeEntry(2);
  EXPECT_EQ(seen, "1 2 ");
  EXPECT_TRUE(list->isEmpty());
}

TEST(SortedListInsertEmptyEntry, MovesTheElementsUpAndLeavesTheSize) {
  SortedArray const list(WithDuplicates, {1, 2, 3});
  list->insertEmptyEntry(1);
  EXPECT_EQ(elementsOf(*list), "1 nil 2 ");
  EXPECT_EQ(Layout::array(*list)[3].getInt(), 3);
}

TEST(SortedListInsertEmptyEntry, AtTheEndMovesNothing) {
  SortedArray const list(WithDuplicates, {1, 2, 3});
  list->insertEmptyEntry(3);
  EXPECT_EQ(elementsOf(*list), "1 2 3 ");
  EXPECT_TRUE(isRestNil(*list));
}

TEST(SortedListInsertEmptyEntry, WithoutRoomOrBeyondTheListDoesNothing) {
  SortedArray const full(WithDuplicates, {1, 2, 3, 4, 5, 6, 7, 8});
  full->insertEmptyEntry(0);
  EXPECT_EQ(elementsOf(*full), "1 2 3 4 5 6 7 8 ");
  SortedArray const list(WithDuplicates, {1, 2, 3});
  for (int const position : {-1, 4, INT_MAX, INT_MIN}) {
    list->insertEmptyEntry(position);
    EXPECT_EQ(elementsOf(*list), "1 2 3 ") << position;
  }
  SortedArray const empty(WithDuplicates);
  empty->insertEmptyEntry(0);
  EXPECT_EQ(Layout::array(*empty), nullptr);
}

// --- Asking --------------------------------------------------------------------------------------

TEST(SortedListGet, AnswersTheElementOrNil) {
  SortedArray const list(WithDuplicates, {1, 5, 9});
  EXPECT_EQ(list->get(0).getInt(), 1);
  EXPECT_EQ(list->get(2).getInt(), 9);
  for (int const position : {-1, 3, 8, INT_MAX, INT_MIN}) {
    EXPECT_TRUE(list->get(position).isNil()) << position;
  }
  EXPECT_TRUE(SortedArray(WithDuplicates)->get(0).isNil());
}

TEST(SortedListGet, AnswersACopyWithAReferenceOfItsOwn) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  lvArg const element = string("element");
  list->add(element);
  lvArg const copy = list->get(0);
  EXPECT_TRUE(copy.eq(element));
  EXPECT_EQ(countOf(element), 3);
}

TEST(SortedListIsEmpty, IsSoForAListOfNoElementsOnly) {
  SortedArray const list(WithDuplicates, {1});
  EXPECT_FALSE(list->isEmpty());
  list->removeEntry(0);
  EXPECT_TRUE(list->isEmpty());
  list->add(lvArg());
  EXPECT_FALSE(list->isEmpty());
}

TEST(SortedListContains, FindsEveryElementAndNothingElse) {
  SortedArray const list(WithDuplicates, {1, 3, 5, 7});
  for (int const value : {1, 3, 5, 7}) {
    EXPECT_TRUE(list->contains(integer(value))) << value;
    EXPECT_FALSE(list->contains(integer(value + 1))) << value + 1;
  }
  EXPECT_FALSE(list->contains(integer(0)));
  EXPECT_FALSE(list->contains(lvArg()));
  EXPECT_FALSE(list->contains(string("1")));
  EXPECT_FALSE(SortedArray(WithDuplicates)->contains(integer(1)));
}

TEST(SortedListContains, ComparesTheContentsOfStrings) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  list->add(string("text"));
  EXPECT_TRUE(list->contains(string("text")));
  EXPECT_FALSE(list->contains(string("tex")));
}

TEST(SortedListContainsAll, IsTrueWhenEveryElementIsFound) {
  SortedArray const list(WithDuplicates, {1, 3, 5, 7});
  EXPECT_TRUE(list->containsAll(*SortedArray(WithDuplicates, {3, 7})));
  EXPECT_TRUE(list->containsAll(*SortedArray(WithDuplicates, {1, 1, 1, 1, 1})));
  EXPECT_TRUE(list->containsAll(*list));
}

TEST(SortedListContainsAll, IsFalseWhenOneIsMissing) {
  SortedArray const list(WithDuplicates, {1, 3, 5, 7});
  EXPECT_FALSE(list->containsAll(*SortedArray(WithDuplicates, {0, 1, 3})));
  EXPECT_FALSE(list->containsAll(*SortedArray(WithDuplicates, {1, 4, 7})));
  EXPECT_FALSE(list->containsAll(*SortedArray(WithDuplicates, {1, 3, 8})));
  EXPECT_FALSE(SortedArray(WithDuplicates)->containsAll(*list));
}

TEST(SortedListContainsAll, OfAnEmptyListIsTrue) {
  SortedArray const empty(WithDuplicates);
  EXPECT_TRUE(empty->containsAll(*empty));
  EXPECT_TRUE(empty->containsAll(*SortedArray(WithoutDuplicates)));
  EXPECT_TRUE(SortedArray(WithDuplicates, {1})->containsAll(*empty));
}

TEST(SortedListContainsAll, LooksForNilAsForAnyOther) {
  SortedArray const nils(WithDuplicates);
  nils->add(lvArg());
  EXPECT_FALSE(SortedArray(WithDuplicates, {1})->containsAll(*nils));
  EXPECT_TRUE(nils->containsAll(*nils));
}

TEST(SortedListContainsAll, AsksTheCursorOfTheOtherListNotItsSize) {
  SortedArray const list(WithDuplicates, {1, 3});
  Held<OwnSortedList> const more(integers({1, 3}), 100);
  Held<OwnSortedList> const less(integers({1, 4}), 0);
  EXPECT_TRUE(list->containsAll(*more));
  EXPECT_FALSE(list->containsAll(*less));
  EXPECT_EQ(more->cursorsMade(), 1);
  EXPECT_EQ(more->cursorsAlive() + less->cursorsAlive(), 0);
}

TEST(SortedListIndexOf, IsTheFirstOfEqualElementsWithDuplicates) {
  for (int equal = 1; equal <= 20; ++equal) {
    SortedArray const list(WithDuplicates, {1, 2, 9});
    for (int i = 0; i < equal; ++i) {
      list->add(integer(5));
    }
    EXPECT_EQ(list->indexOf(integer(5)), 2) << equal;
    EXPECT_EQ(list->lastIndexOf(integer(5)), 1 + equal) << equal;
  }
}

TEST(SortedListIndexOf, FindsElementsAtBothEnds) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates, {1, 5, 9});
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(list->indexOf(integer(4 * i + 1)), i);
      EXPECT_EQ(list->lastIndexOf(integer(4 * i + 1)), i);
    }
  }
  SortedArray const same(WithDuplicates, {4, 4, 4, 4});
  EXPECT_EQ(same->indexOf(integer(4)), 0);
  EXPECT_EQ(same->lastIndexOf(integer(4)), 3);
}

TEST(SortedListIndexOf, OfAMissingValueIsMinusOne) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates, {1, 5, 9});
    for (int const missing : {0, 3, 6, 10}) {
      EXPECT_EQ(list->indexOf(integer(missing)), -1);
      EXPECT_EQ(list->lastIndexOf(integer(missing)), -1);
    }
    EXPECT_EQ(SortedArray(duplicates)->indexOf(integer(1)), -1);
    EXPECT_EQ(SortedArray(duplicates)->lastIndexOf(lvArg()), -1);
  }
}

TEST(SortedListIndexOf, IsWhereTheBisectionEndsWithoutDuplicates) {
  SortedArray const list(WithoutDuplicates, {5});
  list->insertEmptyEntry(0);
  for (int i = 0; i < 2; ++i) {
    list->add(integer(5));
    list->insertEmptyEntry(0);
  }
  EXPECT_EQ(elementsOf(*list), "nil nil nil ");
  EXPECT_EQ(list->indexOf(lvArg()), 1);
  EXPECT_EQ(list->lastIndexOf(lvArg()), 1);
}

// --- Comparing -----------------------------------------------------------------------------------

int compare(std::initializer_list<int> left, std::initializer_list<int> right) {
  return SortedArray(WithDuplicates, left)->compareTo(*SortedArray(WithDuplicates, right));
}

TEST(SortedListCompare, IsZeroForTheSameList) {
  SortedArray const list(WithDuplicates, {1, 2});
  EXPECT_EQ(list->compareTo(*list), 0);
  EXPECT_TRUE(list->equals(*list));
}

TEST(SortedListCompare, IsZeroForEqualElements) {
  EXPECT_EQ(compare({1, 2, 3}, {3, 2, 1}), 0);
  EXPECT_EQ(compare({}, {}), 0);
  EXPECT_EQ(SortedArray(WithDuplicates, {1})->compareTo(*SortedArray(WithoutDuplicates, {1})), 0);
}

TEST(SortedListCompare, OfSizesIsTheOtherSizeLessThisOne) {
  EXPECT_EQ(compare({1, 2}, {1, 2, 3}), 1);
  EXPECT_EQ(compare({1, 2, 3}, {1, 2}), -1);
  EXPECT_EQ(compare({9, 9, 9, 9}, {1}), -3);
  EXPECT_EQ(compare({}, {1, 2}), 2);
  EXPECT_EQ(compare({1, 2}, {}), -2);
}

TEST(SortedListCompare, IsThatOfTheFirstElementsThatDiffer) {
  EXPECT_EQ(compare({1, 3}, {1, 2}), 1);
  EXPECT_EQ(compare({1, 2}, {1, 9}), -7);
  EXPECT_EQ(compare({4, 5, 6}, {1, 50, 60}), 3);
  EXPECT_EQ(compare({1, 50, 60}, {4, 5, 6}), -3);
}

TEST(SortedListCompare, OfAnotherKindIsTheDifferenceOfTheKinds) {
  SortedArray const list(WithDuplicates, {1});
  auto const order = [&](lvArg const& other) { return list->compareTo(*other.getReferencable()); };
  EXPECT_EQ(order(lvHashMap(3)), 1);
  EXPECT_EQ(order(string("text")), 6);
  EXPECT_EQ(order(test::newPlainObject()), 7);
  EXPECT_EQ(order(*lvrClass::defaultCtorMethod()), -2);
}

TEST(SortedListCompare, OfAListThatIsNotSortedIsMinusOne) {
  SortedArray const list(WithDuplicates);
  EXPECT_EQ(list->compareTo(*lvVector(3).getReferencable()), -1);
  EXPECT_EQ(list->compareTo(*test::newListLike().getReferencable()), -1);
}

TEST(SortedListCompare, WalksASortedListOfAnyClass) {
  SortedArray const list(WithDuplicates, {1, 3});
  Held<OwnSortedList> const same(integers({1, 3}));
  Held<OwnSortedList> const less(integers({1, 2}));
  Held<OwnSortedList> const more(integers({1, 7, 9}));
  EXPECT_EQ(list->compareTo(*same), 0);
  EXPECT_TRUE(list->equals(*same));
  EXPECT_EQ(list->compareTo(*less), 1);
  EXPECT_EQ(list->compareTo(*more), 1);
  EXPECT_EQ(same->cursorsMade(), 2);
  EXPECT_EQ(same->cursorsAlive() + less->cursorsAlive() + more->cursorsAlive(), 0);
}

TEST(SortedListCompare, OfASortedListUnderAnotherKindLooksAtTheKind) {
  Held<OwnSortedList> const own(integers({1}), 1, lvReferencable::MapKind);
  EXPECT_EQ(SortedArray(WithDuplicates, {1})->compareTo(*own), 1);
}

TEST(SortedListCompare, ReadsNilWhereTheOtherListEndsEarly) {
  SortedArray const list(WithDuplicates, {1, 3});
  EXPECT_EQ(list->compareTo(*Held<OwnSortedList>(integers({1}), 2)), 5);
  EXPECT_EQ(list->compareTo(*Held<OwnSortedList>(integers({1, 3, 5}), 2)), 0);
}

TEST(SortedListCompare, DecidesWhatIsEqual) {
  SortedArray const list(WithDuplicates, {1, 2});
  EXPECT_TRUE(list->equals(*SortedArray(WithDuplicates, {2, 1})));
  EXPECT_FALSE(list->equals(*SortedArray(WithDuplicates, {1, 3})));
  EXPECT_FALSE(list->equals(*SortedArray(WithDuplicates, {1})));
  EXPECT_TRUE(SortedArray(WithDuplicates)->equals(*SortedArray(WithoutDuplicates)));
}

TEST(SortedListCompare, OrdersListsInLists) {
  SortedArray longer(WithDuplicates, {1, 2});
  SortedArray shorter(WithDuplicates, {1});
  Held<lvrSortedArrayList> const lists(WithDuplicates);
  addEach(*lists, {shorter.cell(), longer.cell()});
  EXPECT_TRUE(lists->get(0).eq(longer.cell()));
  SortedArray twin(WithDuplicates, {1});
  EXPECT_EQ(lists->indexOf(twin.cell()), 1);
}

// --- Ending --------------------------------------------------------------------------------------

TEST(SortedListClear, FreesTheArray) {
  SortedArray const list(WithDuplicates, {1, 2, 3});
  list->clear();
  EXPECT_TRUE(list->isEmpty());
  EXPECT_EQ(Layout::array(*list), nullptr);
  EXPECT_EQ(Layout::capacity(*list), 0);
  list->clear();
  EXPECT_TRUE(list->isEmpty());
}

TEST(SortedListClear, ReleasesTheElements) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  lvArg const element = string("element");
  addEach(*list, {element, element, integer(1)});
  EXPECT_EQ(countOf(element), 3);
  list->clear();
  EXPECT_EQ(countOf(element), 1);
}

TEST(SortedListClear, LetsTheListBeFilledAgain) {
  SortedArray const list(WithDuplicates, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  list->clear();
  addEach(*list, integers({2, 1}));
  EXPECT_EQ(elementsOf(*list), "1 2 ");
  EXPECT_EQ(Layout::capacity(*list), 8);
  EXPECT_EQ(Layout::growStep(*list), 8U);
}

TEST(SortedListClear, LeavesAListThatTheReleasedElementsMayUse) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  addEach(*list, {integer(1), acting([&] { list->add(integer(7)); }), string("text")});
  list->clear();
  EXPECT_EQ(elementsOf(*list), "7 ");
}

TEST(SortedListFinalize, EmptiesTheListAndAnswersZero) {
  Held<lvrSortedArrayList> const list(WithDuplicates);
  lvArg const element = string("element");
  list->add(element);
  EXPECT_EQ(list->finalize(), 0);
  EXPECT_EQ(countOf(element), 1);
  EXPECT_TRUE(list->isEmpty());
  EXPECT_EQ(Layout::array(*list), nullptr);
  EXPECT_EQ(Layout::capacity(*list), 0);
  EXPECT_EQ(list->finalize(), 0);
}

TEST(SortedListFinalize, RunsWithTheLastReference) {
  std::string log;
  {
    Held<lvrSortedArrayList> const list(WithDuplicates);
    addEach(*list, {string("text"), logging(log, "gone")});
    EXPECT_EQ(log, "");
  }
  EXPECT_EQ(log, "gone");
}

TEST(SortedListFinalize, TakesAlongWhatTheElementsAddWhenTheyGo) {
  std::string log;
  {
    Held<lvrSortedArrayList> const list(WithDuplicates);
    auto* const target = &*list;
    list->add(acting([target, &log] { target->add(logging(log, "late")); }));
  }
  EXPECT_EQ(log, "late");
}

TEST(SortedListFinalize, EndsTheProcessWhenAnElementThrows) {
  EXPECT_EXIT(
      {
        Held<lvrSortedArrayList> const list(WithDuplicates);
        list->add(acting([] { throw 1; }));
      },
      ::testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
