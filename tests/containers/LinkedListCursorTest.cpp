#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "support/Cells.h"
#include "support/Nodes.h"
#include "support/Objects.h"

namespace {

using test::acting;
using test::append;
using test::countOf;
using test::forward;
using test::Held;
using test::integer;
using test::LinkedList;
using test::string;
using Cursor = std::unique_ptr<lviRealListEnumerator>;
using Iterator = std::unique_ptr<lviRealListIterator>;
using RWIterator = std::unique_ptr<lviRealListRWIterator>;

// A kind of cursor: its name in the tests, and how a list makes one, seen as a `Seen`.
template <class Seen>
struct CursorKind {
  char const* name;
  std::unique_ptr<Seen> (*make)(lvrDLList& list);
};

template <class Seen>
std::ostream& operator<<(std::ostream& out, CursorKind<Seen> const& kind) {
  return out << kind.name;
}

template <class Seen>
std::string nameOf(testing::TestParamInfo<CursorKind<Seen>> const& kind) {
  return kind.param.name;
}

Cursor newEnumerator(lvrDLList& list) { return Cursor(list.getListEnumerator()); }
template <class Seen>
std::unique_ptr<Seen> newIterator(lvrDLList& list) {
  return std::unique_ptr<Seen>(list.getListIterator());
}
template <class Seen>
std::unique_ptr<Seen> newRWIterator(lvrDLList& list) {
  return std::unique_ptr<Seen>(list.getListRWIterator());
}

// A cursor of each kind over 1 to 5.
class LinkedListCursor : public ::testing::TestWithParam<CursorKind<lviRealListEnumerator>> {
 protected:
  LinkedListCursor() : cursor(cursorOf(*list)) {}

  static Cursor cursorOf(lvrDLList& walked) { return GetParam().make(walked); }

  void expectOn(int index) const {
    EXPECT_EQ(cursor->getIndex(), index);
    EXPECT_EQ(cursor->getValue().getInt(), index + 1);
  }
  void expectOnNone(int index) const {
    EXPECT_EQ(cursor->getIndex(), index);
    EXPECT_TRUE(cursor->getValue().isNil());
  }
  void goBehindTheLast() const {
    cursor->gotoIndex(4);
    cursor->gotoNext();
  }

  LinkedList list{1, 2, 3, 4, 5};
  Cursor cursor;
};

INSTANTIATE_TEST_SUITE_P(
    OfEachKind, LinkedListCursor,
    ::testing::Values(
        CursorKind<lviRealListEnumerator>{"Enumerator", &newEnumerator},
        CursorKind<lviRealListEnumerator>{"Iterator", &newIterator<lviRealListEnumerator>},
        CursorKind<lviRealListEnumerator>{"RWIterator", &newRWIterator<lviRealListEnumerator>}),
    &nameOf<lviRealListEnumerator>);

// --- Stepping ------------------------------------------------------------------------------------

TEST_P(LinkedListCursor, StandsBeforeTheFirstElement) { expectOnNone(-1); }

TEST_P(LinkedListCursor, StepsForwardAndThenStandsBehindTheLast) {
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(cursor->gotoNext());
    expectOn(i);
  }
  for (int again = 0; again < 2; ++again) {
    EXPECT_FALSE(cursor->gotoNext());
    expectOnNone(5);
  }
}

TEST_P(LinkedListCursor, StepsBackAndThenStandsBeforeTheFirst) {
  cursor->gotoIndex(2);
  for (int i = 1; i >= 0; --i) {
    EXPECT_TRUE(cursor->gotoPrevious());
    expectOn(i);
  }
  for (int again = 0; again < 2; ++again) {
    EXPECT_FALSE(cursor->gotoPrevious());
    expectOnNone(-1);
  }
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(0);
}

TEST_P(LinkedListCursor, StepsBackFromBehindTheLastOntoTheLast) {
  goBehindTheLast();
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(4);
}

TEST_P(LinkedListCursor, DoesNotStepBackFromItsStart) {
  EXPECT_FALSE(cursor->gotoPrevious());
  expectOnNone(-1);
}

TEST_P(LinkedListCursor, StepsThroughAnEmptyListFromItsStartToItsEndAndBack) {
  LinkedList const empty;
  cursor = cursorOf(*empty);
  EXPECT_FALSE(cursor->gotoNext());
  expectOnNone(0);
  EXPECT_FALSE(cursor->gotoPrevious());
  expectOnNone(-1);
  EXPECT_FALSE(cursor->gotoPrevious());
  expectOnNone(-1);
}

TEST_P(LinkedListCursor, MovesByItself) {
  Cursor const other = cursorOf(*list);
  other->gotoIndex(3);
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(0);
  EXPECT_EQ(other->getIndex(), 3);
}

// --- Jumping -------------------------------------------------------------------------------------

TEST_P(LinkedListCursor, JumpsToAnyElement) {
  for (int const index : {4, 0, 3, 2, 1}) {
    EXPECT_TRUE(cursor->gotoIndex(index));
    expectOn(index);
  }
  goBehindTheLast();
  EXPECT_TRUE(cursor->gotoIndex(1));
  expectOn(1);
}

TEST_P(LinkedListCursor, StandsNowhereWhenItCannotJump) {
  for (int const index : {5, 6, INT_MAX, -6, -7, INT_MIN}) {
    cursor->gotoIndex(2);
    EXPECT_FALSE(cursor->gotoIndex(index)) << index;
    expectOnNone(-1);
  }
  LinkedList const empty;
  EXPECT_FALSE(cursorOf(*empty)->gotoIndex(0));
  EXPECT_FALSE(cursorOf(*empty)->gotoIndex(-1));
}

TEST_P(LinkedListCursor, DoesNotMoveFromNowhere) {
  cursor->gotoIndex(5);
  EXPECT_FALSE(cursor->gotoNext());
  expectOnNone(-1);
  EXPECT_FALSE(cursor->gotoPrevious());
  expectOnNone(-1);
}

TEST_P(LinkedListCursor, LeavesNowhereWithTheNextJumpThatSucceeds) {
  cursor->gotoIndex(5);
  EXPECT_FALSE(cursor->gotoIndex(7));
  EXPECT_FALSE(cursor->gotoNext());
  EXPECT_TRUE(cursor->gotoIndex(1));
  expectOn(1);
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(2);
}

// --- Matching ------------------------------------------------------------------------------------

// Finds one integer, and writes down what it was asked about.
struct Search {
  explicit Search(int value) : wanted(value) {}
  static bool matches(lvArg const& value, void* ctx) {
    auto& search = *static_cast<Search*>(ctx);
    search.asked += std::to_string(value.getInt()) + " ";
    return value.getInt() == search.wanted;
  }

  int wanted;
  std::string asked;
};

TEST_P(LinkedListCursor, StepsForwardToAMatch) {
  Search search(3);
  EXPECT_TRUE(cursor->gotoNextMatching(&Search::matches, &search));
  expectOn(2);
  EXPECT_EQ(search.asked, "1 2 3 ");
}

TEST_P(LinkedListCursor, StandsBehindTheLastWhenNothingAheadMatches) {
  cursor->gotoIndex(2);
  Search search(3);  // Which it stands on.
  EXPECT_FALSE(cursor->gotoNextMatching(&Search::matches, &search));
  EXPECT_EQ(search.asked, "4 5 ");
  expectOnNone(5);
}

TEST_P(LinkedListCursor, StepsBackToAMatch) {
  goBehindTheLast();
  Search search(4);
  EXPECT_TRUE(cursor->gotoPreviousMatching(&Search::matches, &search));
  expectOn(3);
  EXPECT_EQ(search.asked, "5 4 ");
}

TEST_P(LinkedListCursor, StandsBeforeTheFirstWhenNothingBehindItMatches) {
  cursor->gotoIndex(2);
  Search search(3);  // Which it stands on.
  EXPECT_FALSE(cursor->gotoPreviousMatching(&Search::matches, &search));
  EXPECT_EQ(search.asked, "2 1 ");
  expectOnNone(-1);
}

TEST_P(LinkedListCursor, AsksAboutNothingWhereThereIsNoStep) {
  Search search(1);
  EXPECT_FALSE(cursor->gotoPreviousMatching(&Search::matches, &search));
  goBehindTheLast();
  EXPECT_FALSE(cursor->gotoNextMatching(&Search::matches, &search));
  cursor->gotoIndex(5);
  EXPECT_FALSE(cursor->gotoNextMatching(&Search::matches, &search));
  EXPECT_FALSE(cursor->gotoPreviousMatching(&Search::matches, &search));
  EXPECT_EQ(search.asked, "");
}

// --- The reference -------------------------------------------------------------------------------

TEST_P(LinkedListCursor, HoldsOneReferenceToItsList) {
  EXPECT_EQ(countOf(*list), 2);
  cursor->gotoNext();
  EXPECT_EQ(countOf(*list), 2);
  cursor.reset();
  EXPECT_EQ(countOf(*list), 1);
}

TEST_P(LinkedListCursor, KeepsTheListAliveWhereverItStands) {
  for (int const index : {0, 1, 2}) {
    bool isGone = false;
    {
      LinkedList const other{1};
      other->insert(acting([&isGone] { isGone = true; }), -1);
      cursor = cursorOf(*other);
    }
    cursor->gotoIndex(index);
    EXPECT_FALSE(isGone);
    EXPECT_EQ(cursor->getValue().isNil(), index == 2);
    cursor.reset();
    EXPECT_TRUE(isGone);
  }
}

TEST_P(LinkedListCursor, GivesACopyOfTheValueWithAReferenceOfItsOwn) {
  lvArg const value = string("value");
  list->insert(value, 0);
  cursor->gotoNext();
  EXPECT_EQ(countOf(value), 2);
  lvArg copy = cursor->getValue();
  EXPECT_EQ(countOf(value), 3);
  copy.setInt(1);
  EXPECT_TRUE(cursor->getValue().eq(value));
}

// --- While the list changes ----------------------------------------------------------------------

TEST_P(LinkedListCursor, MeetsElementsThatAreAppended) {
  cursor->gotoIndex(4);
  append(*list, {6});
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(5);
}

TEST_P(LinkedListCursor, StaysOnItsElementWhenOthersGo) {
  cursor->gotoIndex(2);
  list->remove(4);
  list->remove(0);
  EXPECT_EQ(cursor->getValue().getInt(), 3);
  EXPECT_TRUE(cursor->gotoNext());
  EXPECT_EQ(cursor->getValue().getInt(), 4);
  EXPECT_FALSE(cursor->gotoNext());
}

TEST_P(LinkedListCursor, StandsOnTheNextElementWhenItsOwnIsTakenAway) {
  cursor->gotoIndex(2);
  list->remove(2);
  EXPECT_EQ(cursor->getValue().getInt(), 4);
  EXPECT_EQ(cursor->getIndex(), 2);
  EXPECT_TRUE(cursor->gotoNext());
  EXPECT_EQ(cursor->getValue().getInt(), 5);
  EXPECT_EQ(cursor->getIndex(), 3);
}

TEST_P(LinkedListCursor, StandsBehindTheLastWhenTheLastIsTakenAwayUnderIt) {
  cursor->gotoIndex(4);
  EXPECT_EQ(list->remove(integer(5)), 0);
  expectOnNone(4);
  EXPECT_FALSE(cursor->gotoNext());
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(3);
}

TEST_P(LinkedListCursor, StepsBackFromWhereItsElementWas) {
  cursor->gotoIndex(2);
  list->remove(2);
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(1);
}

TEST_P(LinkedListCursor, StepsOnFromWhereItsElementWas) {
  cursor->gotoIndex(1);
  list->remove(1);
  list->remove(1);
  EXPECT_TRUE(cursor->gotoNext());
  EXPECT_EQ(cursor->getValue().getInt(), 5);
  EXPECT_EQ(cursor->getIndex(), 2);
}

TEST_P(LinkedListCursor, StandsOnNoElementAfterClear) {
  cursor->gotoIndex(2);
  list->clear();
  expectOnNone(0);
  EXPECT_FALSE(cursor->gotoNext());
  EXPECT_FALSE(cursor->gotoPrevious());
  expectOnNone(-1);
}

TEST_P(LinkedListCursor, WalksAListThatIsFilledAgain) {
  cursor->gotoIndex(1);
  list->clear();
  append(*list, {7, 8, 9});
  EXPECT_EQ(cursor->getValue().getInt(), 8);
  EXPECT_TRUE(cursor->gotoNext());
  EXPECT_EQ(cursor->getValue().getInt(), 9);
  EXPECT_FALSE(cursor->gotoNext());
}

TEST_P(LinkedListCursor, SurvivesThatSeveralStandOnTheElementThatGoes) {
  Cursor other = cursorOf(*list);
  Cursor const third = cursorOf(*list);
  for (lviRealListEnumerator* const each : {cursor.get(), other.get(), third.get()}) {
    each->gotoIndex(1);
  }
  list->remove(1);
  other.reset();
  EXPECT_EQ(cursor->getValue().getInt(), 3);
  EXPECT_TRUE(third->gotoNext());
  EXPECT_EQ(third->getValue().getInt(), 4);
}

TEST_P(LinkedListCursor, MayGoWhileItsElementIsTakenAway) {
  cursor->gotoIndex(1);
  list->remove(1);
  cursor.reset();
  EXPECT_EQ(forward(*list), "1 3 4 5 ");
  EXPECT_EQ(countOf(*list), 1);
}

TEST_P(LinkedListCursor, KeepsNothingOfAnElementThatWasTakenAway) {
  lvArg const value = string("value");
  list->insert(value, 0);
  cursor->gotoNext();
  EXPECT_EQ(list->remove(value), 0);
  EXPECT_EQ(countOf(value), 1);
}

TEST_P(LinkedListCursor, KeptOnALastElementByItsNegativeIndexLosesItForGood) {
  cursor->gotoIndex(-1);
  list->remove(-1);
  expectOnNone(-1);
  EXPECT_TRUE(cursor->gotoNext());
  expectOn(0);
}

// Calls a function of the test's own for each element, and matches none.
bool callsBack(lvArg const& value, void* ctx) {
  (*static_cast<std::function<void(int)>*>(ctx))(value.getInt());
  return false;
}

TEST_P(LinkedListCursor, GoesOnWhenThePredicateTakesItsElementAway) {
  std::string asked;
  std::function<void(int)> remove = [&](int value) {
    asked += std::to_string(value) + " ";
    EXPECT_EQ(list->remove(integer(value)), 0);
  };
  EXPECT_FALSE(cursor->gotoNextMatching(&callsBack, &remove));
  EXPECT_EQ(asked, "1 3 5 ");  // It steps on from the element that took the place.
  EXPECT_EQ(forward(*list), "2 4 ");
}

TEST_P(LinkedListCursor, StopsWhenThePredicateClearsTheList) {
  int asked = 0;
  std::function<void(int)> clear = [&](int /*value*/) {
    ++asked;
    list->clear();
  };
  EXPECT_FALSE(cursor->gotoNextMatching(&callsBack, &clear));
  EXPECT_EQ(asked, 1);
  append(*list, {1, 2, 3, 4, 5});
  cursor->gotoIndex(3);
  EXPECT_FALSE(cursor->gotoPreviousMatching(&callsBack, &clear));
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(list->getSize(), 0);
}

TEST_P(LinkedListCursor, MayDropTheLastReferenceToItsListInAPredicate) {
  bool isGone = false;
  lvArg holder = *lvrDLList::defaultCtorMethod();
  auto& dropped = dynamic_cast<lvrDLList&>(*holder.getReferencable());
  dropped.insert(acting([&isGone] { isGone = true; }), -1);
  cursor = cursorOf(dropped);
  std::function<void(int)> drop = [&holder](int /*value*/) { holder.setNil(); };
  EXPECT_FALSE(cursor->gotoNextMatching(&callsBack, &drop));
  EXPECT_FALSE(isGone);
  cursor.reset();
  EXPECT_TRUE(isGone);
}

// --- While elements go that use the cursor -------------------------------------------------------

TEST_P(LinkedListCursor, StandsOnNothingWhileTheElementUnderItGoesInClear) {
  bool isGone = false;
  list->insert(acting([&] {
                 isGone = true;
                 expectOnNone(0);
                 EXPECT_FALSE(cursor->gotoNext());
                 EXPECT_FALSE(cursor->gotoPrevious());
               }),
               0);
  cursor->gotoNext();
  list->clear();
  EXPECT_TRUE(isGone);
  expectOnNone(-1);
}

TEST_P(LinkedListCursor, FindsItsWayOutWhileAnElementBeforeItGoesInClear) {
  int steps = 0;
  list->insert(acting([&] {
                 while (cursor->gotoNext()) {
                   ++steps;
                 }
                 EXPECT_FALSE(cursor->gotoPrevious());
               }),
               0);
  cursor->gotoIndex(2);
  list->clear();
  EXPECT_LE(steps, 3);
  expectOnNone(-1);
}

TEST_P(LinkedListCursor, StepsOntoNoElementThatHasGoneInClear) {
  bool isGone = false;
  list->insert(acting([&] {
                 isGone = true;
                 EXPECT_FALSE(cursor->gotoPrevious());
                 expectOnNone(-1);
               }),
               3);
  cursor->gotoIndex(4);  // The elements before it go first.
  list->clear();
  EXPECT_TRUE(isGone);
}

TEST_P(LinkedListCursor, MayBeMadeAndMovedWhileElementsGoInClear) {
  Cursor made;
  list->insert(acting([&] {
                 append(*list, {8, 9});
                 made = cursorOf(*list);
                 made->gotoIndex(1);
               }),
               2);
  list->clear();
  EXPECT_EQ(made->getValue().getInt(), 9);
  EXPECT_EQ(forward(*list), "8 9 ");
}

TEST_P(LinkedListCursor, MayGoWhileElementsGoInClear) {
  Cursor other = cursorOf(*list);
  cursor->gotoIndex(4);
  list->insert(acting([&] { cursor.reset(); }), 2);
  list->insert(acting([&] { other.reset(); }), 4);
  other->gotoIndex(2);
  list->clear();
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(countOf(*list), 1);
}

TEST_P(LinkedListCursor, MayTakeItsListAlongWhenItGoes) {
  std::string log;
  {
    LinkedList const other;
    for (char const* const name : {"a ", "b ", "c "}) {
      other->insert(test::logging(log, name), -1);
    }
    cursor = cursorOf(*other);
  }
  cursor->gotoIndex(1);
  cursor.reset();
  EXPECT_EQ(log, "a b c ");
}

// --- Removing ------------------------------------------------------------------------------------

// A cursor of each kind that removes, over 1 to 4.
class LinkedListIterator : public ::testing::TestWithParam<CursorKind<lviRealListIterator>> {
 protected:
  void expectOn(int index, int value) const {
    EXPECT_EQ(cursor->getIndex(), index);
    EXPECT_EQ(cursor->getValue().getInt(), value);
  }
  void expectOnNone(int index) const {
    EXPECT_EQ(cursor->getIndex(), index);
    EXPECT_TRUE(cursor->getValue().isNil());
  }
  void expectElements(std::string const& ahead) const { EXPECT_EQ(forward(*list), ahead); }

  LinkedList list{1, 2, 3, 4};
  Iterator cursor{GetParam().make(*list)};
};

INSTANTIATE_TEST_SUITE_P(
    OfEachKind, LinkedListIterator,
    ::testing::Values(
        CursorKind<lviRealListIterator>{"Iterator", &newIterator<lviRealListIterator>},
        CursorKind<lviRealListIterator>{"RWIterator", &newRWIterator<lviRealListIterator>}),
    &nameOf<lviRealListIterator>);

TEST_P(LinkedListIterator, RemovesItsElementAndStandsOnTheNextUnderTheSameIndex) {
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->remove());
  expectOn(1, 3);
  EXPECT_TRUE(cursor->remove());
  expectOn(1, 4);
  expectElements("1 4 ");
  EXPECT_EQ(test::backward(*list), "4 1 ");
}

TEST_P(LinkedListIterator, StandsBehindTheLastAfterItRemovedTheLast) {
  cursor->gotoIndex(3);
  EXPECT_TRUE(cursor->remove());
  expectOnNone(3);
  EXPECT_EQ(list->getSize(), 3);
  EXPECT_FALSE(cursor->gotoNext());
  EXPECT_TRUE(cursor->gotoPrevious());
  expectOn(2, 3);
}

TEST_P(LinkedListIterator, RemovesAllElementsFromTheFirstOn) {
  cursor->gotoNext();
  for (int left = 3; left >= 0; --left) {
    EXPECT_TRUE(cursor->remove());
    EXPECT_EQ(list->getSize(), left);
  }
  expectOnNone(0);
  EXPECT_FALSE(cursor->remove());
  append(*list, {9});
  expectElements("9 ");
}

TEST_P(LinkedListIterator, RemovesAsItComesToThem) {
  while (cursor->gotoNext()) {
    if (cursor->getValue().getInt() % 2 == 0) {
      EXPECT_TRUE(cursor->remove());
      cursor->gotoPrevious();
    }
  }
  expectElements("1 3 ");
}

TEST_P(LinkedListIterator, RemovesNothingBeforeTheFirstElement) {
  EXPECT_FALSE(cursor->remove());
  expectOnNone(-1);
  expectElements("1 2 3 4 ");
}

TEST_P(LinkedListIterator, RemovesNothingBehindTheLastElement) {
  cursor->gotoIndex(3);
  cursor->gotoNext();
  EXPECT_FALSE(cursor->remove());
  expectOnNone(4);
  expectElements("1 2 3 4 ");
}

TEST_P(LinkedListIterator, RemovesNothingBehindTheLastElementEvenOfALongerList) {
  cursor->gotoIndex(3);
  cursor->gotoNext();
  append(*list, {5, 6});
  EXPECT_FALSE(cursor->remove());
  expectElements("1 2 3 4 5 6 ");
}

TEST_P(LinkedListIterator, RemovesNothingFromNowhere) {
  cursor->gotoIndex(1);
  cursor->gotoIndex(4);
  EXPECT_FALSE(cursor->remove());
  expectElements("1 2 3 4 ");
  EXPECT_TRUE(cursor->gotoIndex(1));
  EXPECT_TRUE(cursor->remove());
  expectElements("1 3 4 ");
}

TEST_P(LinkedListIterator, RemovesNothingFromAnEmptyList) {
  list->clear();
  EXPECT_FALSE(cursor->remove());
  cursor->gotoNext();
  EXPECT_FALSE(cursor->remove());
  EXPECT_EQ(list->getSize(), 0);
}

TEST_P(LinkedListIterator, DropsTheElement) {
  lvArg const value = string("value");
  list->insert(value, 1);
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->remove());
  EXPECT_EQ(countOf(value), 1);
}

TEST_P(LinkedListIterator, TakesElementsAwayUnderAnotherOne) {
  Iterator const other = GetParam().make(*list);
  cursor->gotoIndex(1);
  other->gotoIndex(1);
  EXPECT_TRUE(other->remove());
  EXPECT_TRUE(other->remove());
  expectOn(1, 4);
  EXPECT_TRUE(cursor->remove());
  EXPECT_EQ(other->getIndex(), 1);
  EXPECT_TRUE(other->getValue().isNil());
  expectElements("1 ");
}

TEST_P(LinkedListIterator, RemovesWhatHasThePositionOfAnElementTakenAway) {
  cursor->gotoIndex(1);
  list->remove(1);
  EXPECT_TRUE(cursor->remove());
  expectElements("1 4 ");
  expectOn(1, 4);
}

TEST_P(LinkedListIterator, RemovesNothingWhereNoElementHasItsPositionAnyMore) {
  cursor->gotoIndex(3);
  list->remove(0);
  EXPECT_FALSE(cursor->remove());
  expectElements("2 3 4 ");
  EXPECT_EQ(cursor->getValue().getInt(), 4);
}

TEST_P(LinkedListIterator, RemovesByItsPositionThoughItsElementHasMoved) {
  cursor->gotoIndex(1);
  list->remove(0);
  EXPECT_TRUE(cursor->remove());  // What is at 1 now is the element behind its own.
  expectElements("2 4 ");
  expectOn(1, 4);
}

TEST_P(LinkedListIterator, RemovesNothingAfterClear) {
  cursor->gotoIndex(1);
  list->clear();
  EXPECT_FALSE(cursor->remove());
  append(*list, {7});
  expectElements("7 ");
}

TEST_P(LinkedListIterator, MayRemoveFromWithinItsPredicate) {
  std::function<void(int)> remove = [this](int /*value*/) { EXPECT_TRUE(cursor->remove()); };
  EXPECT_FALSE(cursor->gotoNextMatching(&callsBack, &remove));
  expectElements("2 4 ");
}

TEST_P(LinkedListIterator, HasMovedOnWhenTheElementGoes) {
  bool isGone = false;
  list->insert(acting([&] {
                 isGone = true;
                 expectOn(1, 2);
                 expectElements("1 2 3 4 ");
                 EXPECT_TRUE(cursor->remove());
               }),
               1);
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->remove());
  EXPECT_TRUE(isGone);
  expectOn(1, 3);
  expectElements("1 3 4 ");
}

TEST_P(LinkedListIterator, MayGoWithTheElementThatItRemoves) {
  list->insert(acting([this] { cursor.reset(); }), 1);
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->remove());
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(countOf(*list), 1);
  expectElements("1 2 3 4 ");
}

TEST_P(LinkedListIterator, MayTakeTheListAlongWithTheElementThatItRemoves) {
  bool isListGone = false;
  list->insert(acting([&isListGone] { isListGone = true; }), 0);
  list->insert(acting([this] {
                 list.cell().setNil();
                 cursor.reset();
               }),
               1);
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->remove());
  EXPECT_TRUE(isListGone);
}

TEST_P(LinkedListIterator, RemovesNothingWhileItsListIsCleared) {
  bool isGone = false;
  list->insert(acting([&] {
                 isGone = true;
                 EXPECT_FALSE(cursor->remove());
               }),
               0);
  cursor->gotoIndex(2);
  list->clear();
  EXPECT_TRUE(isGone);
  EXPECT_EQ(list->getSize(), 0);
}

// A list that notes what its cursors ask of it.
class NotingList : public lvrDLList {
 public:
  using lvrDLList::remove;
  bool insert(lvArg const& value, int index) override {
    notes += "insert " + std::to_string(index) + " ";
    return lvrDLList::insert(value, index);
  }
  lvArg remove(int index) override {
    notes += "remove " + std::to_string(index) + " ";
    return isKeeping ? lvArg() : lvrDLList::remove(index);
  }

  std::string notes;
  bool isKeeping = false;
};

TEST(LinkedListIteratorOfADerivedList, RemovesThroughTheListsOwnRemove) {
  Held<NotingList> const list;
  append(*list, {1, 2, 3});
  list->notes.clear();
  Iterator const cursor = newIterator<lviRealListIterator>(*list);
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->remove());
  EXPECT_EQ(list->notes, "remove 1 ");
}

TEST(LinkedListIteratorOfADerivedList, StaysOnAnElementThatTheListDoesNotRemove) {
  Held<NotingList> const list;
  append(*list, {1, 2, 3});
  list->isKeeping = true;
  Iterator const cursor = newIterator<lviRealListIterator>(*list);
  cursor->gotoIndex(1);
  EXPECT_FALSE(cursor->remove());
  EXPECT_EQ(cursor->getIndex(), 1);
  EXPECT_EQ(cursor->getValue().getInt(), 2);
}

// --- Inserting -----------------------------------------------------------------------------------

// A cursor that inserts, over 1 to 3.
class LinkedListRWIterator : public ::testing::Test {
 protected:
  LinkedList list{1, 2, 3};
  RWIterator cursor{list->getListRWIterator()};
};

TEST_F(LinkedListRWIterator, IsWritableWhereverItStands) {
  EXPECT_TRUE(cursor->isWritable());
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->isWritable());
  cursor->gotoIndex(7);
  EXPECT_TRUE(cursor->isWritable());
}

TEST_F(LinkedListRWIterator, InsertsBeforeItsElementAndStaysOnIt) {
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->insert(integer(7)));
  EXPECT_EQ(cursor->getIndex(), 2);
  EXPECT_EQ(cursor->getValue().getInt(), 2);
  EXPECT_TRUE(cursor->insert(integer(8)));
  EXPECT_EQ(cursor->getIndex(), 3);
  EXPECT_EQ(forward(*list), "1 7 8 2 3 ");
  EXPECT_EQ(test::backward(*list), "3 2 8 7 1 ");
}

TEST_F(LinkedListRWIterator, InsertsBeforeTheFirstElement) {
  cursor->gotoIndex(0);
  EXPECT_TRUE(cursor->insert(integer(7)));
  EXPECT_EQ(cursor->getIndex(), 1);
  EXPECT_TRUE(cursor->gotoPrevious());
  EXPECT_EQ(cursor->getValue().getInt(), 7);
  EXPECT_EQ(forward(*list), "7 1 2 3 ");
}

TEST_F(LinkedListRWIterator, AppendsWhenItStandsBehindTheLast) {
  cursor->gotoIndex(2);
  cursor->gotoNext();
  EXPECT_TRUE(cursor->insert(integer(7)));
  EXPECT_EQ(cursor->getIndex(), 4);
  EXPECT_TRUE(cursor->getValue().isNil());
  EXPECT_TRUE(cursor->insert(integer(8)));
  EXPECT_EQ(forward(*list), "1 2 3 7 8 ");
  EXPECT_TRUE(cursor->gotoPrevious());
  EXPECT_EQ(cursor->getValue().getInt(), 8);
}

TEST_F(LinkedListRWIterator, FillsAnEmptyListOnceItStandsBehindTheLast) {
  list->clear();
  EXPECT_FALSE(cursor->insert(integer(7)));
  cursor->gotoNext();
  EXPECT_TRUE(cursor->insert(integer(8)));
  EXPECT_EQ(cursor->getIndex(), 1);
  EXPECT_EQ(forward(*list), "8 ");
}

TEST_F(LinkedListRWIterator, InsertsNothingBeforeItsFirstStep) {
  EXPECT_FALSE(cursor->insert(integer(7)));
  EXPECT_EQ(cursor->getIndex(), -1);
  EXPECT_EQ(forward(*list), "1 2 3 ");
}

TEST_F(LinkedListRWIterator, InsertsNothingFromNowhere) {
  cursor->gotoIndex(3);
  EXPECT_FALSE(cursor->insert(integer(7)));
  EXPECT_EQ(cursor->getIndex(), -1);
  EXPECT_EQ(forward(*list), "1 2 3 ");
}

TEST_F(LinkedListRWIterator, InsertsNothingWhereTheListHasNoSuchPositionAnyMore) {
  cursor->gotoIndex(2);
  cursor->gotoNext();
  list->remove(0);
  EXPECT_FALSE(cursor->insert(integer(7)));
  EXPECT_EQ(cursor->getIndex(), 3);
  EXPECT_EQ(forward(*list), "2 3 ");
}

TEST_F(LinkedListRWIterator, InsertsWhereItsElementWasTakenAway) {
  cursor->gotoIndex(1);
  list->remove(1);
  EXPECT_TRUE(cursor->insert(integer(7)));
  EXPECT_EQ(forward(*list), "1 7 3 ");
  EXPECT_EQ(cursor->getIndex(), 2);
  EXPECT_EQ(cursor->getValue().getInt(), 3);
}

TEST_F(LinkedListRWIterator, AppendsWhereTheLastElementWasTakenAway) {
  cursor->gotoIndex(2);
  list->remove(0);
  list->remove(-1);
  EXPECT_TRUE(cursor->insert(integer(7)));
  EXPECT_EQ(forward(*list), "2 7 ");
  EXPECT_EQ(cursor->getIndex(), 2);
}

TEST_F(LinkedListRWIterator, TakesOneReferenceToWhatItInserts) {
  lvArg const value = string("value");
  cursor->gotoIndex(1);
  cursor->insert(value);
  EXPECT_EQ(countOf(value), 2);
  cursor->gotoIndex(9);
  cursor->insert(value);
  EXPECT_EQ(countOf(value), 2);
}

TEST_F(LinkedListRWIterator, InsertsAndRemovesInTurn) {
  cursor->gotoIndex(1);
  for (int i = 10; i < 13; ++i) {
    EXPECT_TRUE(cursor->insert(integer(i)));
    EXPECT_EQ(cursor->remove(), i < 12);
  }
  EXPECT_EQ(forward(*list), "1 10 11 12 ");
}

TEST(LinkedListRWIteratorOfADerivedList, InsertsThroughTheListsOwnInsert) {
  Held<NotingList> const list;
  append(*list, {1, 2, 3});
  list->notes.clear();
  RWIterator const cursor(list->getListRWIterator());
  cursor->gotoIndex(1);
  EXPECT_TRUE(cursor->insert(integer(7)));
  EXPECT_EQ(list->notes, "insert 1 ");
}

// --- The cursor inside ---------------------------------------------------------------------------

TEST(LinkedListIteratorLogic, HoldsTheListWhileItLives) {
  LinkedList const list{1};
  {
    lvrDLList::IteratorLogic const logic(*list);
    EXPECT_EQ(countOf(*list), 2);
    EXPECT_EQ(logic.getIndex(), -1);
    EXPECT_TRUE(logic.getValue().isNil());
  }
  EXPECT_EQ(countOf(*list), 1);
}

TEST(LinkedListIteratorLogic, MatchesInTheDirectionThatItIsTold) {
  LinkedList const list{1, 2, 1, 2};
  lvrDLList::IteratorLogic logic(*list);
  Search forTwo(2);
  EXPECT_TRUE(logic.gotoMatching(&Search::matches, &forTwo, false));
  EXPECT_EQ(logic.getIndex(), 1);
  EXPECT_TRUE(logic.gotoMatching(&Search::matches, &forTwo, false));
  EXPECT_EQ(logic.getIndex(), 3);
  EXPECT_TRUE(logic.gotoMatching(&Search::matches, &forTwo, true));
  EXPECT_EQ(logic.getIndex(), 1);
}

TEST(LinkedListIteratorLogic, InsertsAndRemoves) {
  LinkedList const list{1, 2};
  lvrDLList::IteratorLogic logic(*list);
  EXPECT_TRUE(logic.gotoIndex(1));
  EXPECT_TRUE(logic.insert(integer(7)));
  EXPECT_TRUE(logic.remove());
  EXPECT_EQ(logic.getIndex(), 2);
  EXPECT_EQ(forward(*list), "1 7 ");
}

// A cursor that steps by two.
class SteppingByTwo : public lvrDLList::RealEnumerator {
 public:
  using RealEnumerator::RealEnumerator;
  bool gotoNext() override { return RealEnumerator::gotoNext() && RealEnumerator::gotoNext(); }
};

TEST(LinkedListIteratorLogic, MatchesByItsOwnStepsNotThoseOfADerivedCursor) {
  LinkedList const list{1, 2, 3};
  SteppingByTwo cursor(*list);
  Search search(3);
  EXPECT_TRUE(cursor.gotoNextMatching(&Search::matches, &search));
  EXPECT_EQ(search.asked, "1 2 3 ");
}

}  // namespace
