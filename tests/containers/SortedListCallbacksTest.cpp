// What elements, and other lists' cursors, may do to the sorted list that compares, merges or
// releases them.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/ActingItems.h"
#include "support/SortedLists.h"

namespace {

using test::acting;
using test::ActingRank;
using test::addEach;
using test::countOf;
using test::elementsOf;
using test::Held;
using test::integer;
using test::integers;
using test::isRestNil;
using test::OwnSortedList;
using test::ranked;
using test::rankOf;
using test::SortedArray;
using test::string;
using test::WithDuplicates;
using test::WithoutDuplicates;
using Action = test::Act::Action;

constexpr int Endless = 1000;

std::string ranksOf(lviSortedList const& list) {
  std::string text;
  for (int i = 0; i < list.getSize(); ++i) {
    text += std::to_string(rankOf(list.get(i))) + " ";
  }
  return text;
}

lvArg actingRank(int rank, Action onCompare) {
  auto& item = *new ActingRank(rank);
  lvArg cell(item);
  item.onCompare = std::move(onCompare);
  return cell;
}

// --- Searching and adding ------------------------------------------------------------------------

// A list of the ranks 1, 3 and 5.
class SortedListWhileComparing : public ::testing::TestWithParam<unsigned> {
 protected:
  SortedListWhileComparing() : list(GetParam()) {
    addEach(*list, {ranked(1), ranked(3), ranked(5)});
  }

  SortedArray list;
};

TEST_P(SortedListWhileComparing, FindsNothingInAListThatIsCleared) {
  lvArg const wanted = actingRank(3, [this] { list->clear(); });
  EXPECT_FALSE(list->contains(wanted));
  EXPECT_TRUE(list->isEmpty());
}

TEST_P(SortedListWhileComparing, GivesNoPositionInAListThatIsCleared) {
  lvArg const wanted = actingRank(3, [this] { list->clear(); });
  EXPECT_EQ(list->indexOf(wanted), -1);
  addEach(*list, {ranked(1), ranked(3)});
  EXPECT_EQ(list->lastIndexOf(wanted), -1);
}

TEST_P(SortedListWhileComparing, AddsToAListThatIsEmptied) {
  for (int const rank : {0, 3, 9}) {
    list->add(actingRank(rank, [this] { list->finalize(); }));
    EXPECT_EQ(ranksOf(*list), std::to_string(rank) + " ");
    EXPECT_TRUE(isRestNil(*list));
  }
}

TEST_P(SortedListWhileComparing, AddsToAListThatGrows) {
  int next = 100;
  list->add(actingRank(4, [this, &next] {
    for (int i = 0; i < 40; ++i) {
      list->add(ranked(next++));
    }
  }));
  EXPECT_EQ(list->getSize(), next - 100 + 4);
  EXPECT_EQ(ranksOf(*list).substr(0, 8), "1 3 4 5 ");
}

TEST_P(SortedListWhileComparing, AddsToAListThatLosesTheElementBesideThePlace) {
  int comparisons = 0;
  list->add(actingRank(9, [this, &comparisons] {
    if (++comparisons == 3) {  // After the search.
      list->removeEntry(2);
      list->removeEntry(1);
    }
  }));
  EXPECT_EQ(ranksOf(*list), "1 9 ");
}

TEST_P(SortedListWhileComparing, EndsTheSearchForTheLastThoughEachComparisonAddsAnEqualOne) {
  int added = 0;
  lvArg const wanted = actingRank(5, [this, &added] {
    if (added < Endless) {
      ++added;
      list->add(ranked(5));
    }
  });
  EXPECT_NE(list->lastIndexOf(wanted), -1);
  EXPECT_LT(added, 20);
  EXPECT_NE(list->indexOf(wanted), -1);
  EXPECT_LT(added, 40);
}

TEST_P(SortedListWhileComparing, LetsAnElementThatIsReplacedOrRemovedChangeTheList) {
  SortedArray const other(GetParam());
  other->add(acting([&other] { other->clear(); }));
  other->removeEntry(0);
  EXPECT_TRUE(other->isEmpty());
  other->add(acting([&other] { other->add(integer(4)); }));
  other->clear();
  EXPECT_EQ(elementsOf(*other), "4 ");
}

INSTANTIATE_TEST_SUITE_P(Duplicates, SortedListWhileComparing,
                         ::testing::Values(WithDuplicates, WithoutDuplicates));

// --- Comparing lists -----------------------------------------------------------------------------

// Two equal lists; the first object of `list` acts when it is compared.
class SortedListCompareTo : public ::testing::Test {
 protected:
  SortedListCompareTo() : list(WithDuplicates, {1, 2}), acts(*new ActingRank(1)) {
    addEach(*list, {lvArg(acts), string("x")});
  }

  // An equal list, in a cell that has the only reference to it.
  lvArg same() const {
    SortedArray const twin(WithDuplicates, {1, 2});
    return addEach(*twin, {ranked(1), string("x")});
  }

  SortedArray list;
  ActingRank& acts;
};

TEST_F(SortedListCompareTo, SurvivesThatTheListIsCleared) {
  lvArg const other = same();
  acts.onCompare = [this] { list->clear(); };
  EXPECT_NE(list->compareTo(*other.getReferencable()), 0);
  EXPECT_TRUE(list->isEmpty());
}

TEST_F(SortedListCompareTo, SurvivesThatTheOtherIsCleared) {
  lvArg const other = same();
  auto& cleared = static_cast<lvrSortedArrayList&>(*other.getReferencable());
  acts.onCompare = [&cleared] { cleared.clear(); };
  EXPECT_NE(list->compareTo(cleared), 0);
}

TEST_F(SortedListCompareTo, EndsThoughEachComparisonLengthensBoth) {
  lvArg const other = same();
  auto& longer = static_cast<lvrSortedArrayList&>(*other.getReferencable());
  int added = 0;
  Action const lengthen = [this, &longer, &added] {
    if (added < Endless) {
      lvArg const more = lvArg(acts);
      list->add(more);
      longer.add(more);
      ++added;
    }
  };
  acts.onCompare = lengthen;
  list->compareTo(longer);
  EXPECT_LT(added, 10);
}

TEST_F(SortedListCompareTo, KeepsAnElementThatIsTakenOutOfTheListAround) {
  SortedArray const lists(WithDuplicates);
  lists->add(same());
  acts.onCompare = [&lists] { lists->clear(); };
  EXPECT_FALSE(lists->contains(lvArg(*list)));
  EXPECT_TRUE(lists->isEmpty());
}

// --- Lists that are not the library's own --------------------------------------------------------

// A list that does something when a cursor is made, and at each step of one; or has no cursors.
class ActingSortedList : public OwnSortedList {
 public:
  explicit ActingSortedList(std::vector<lvArg> elements) : OwnSortedList(std::move(elements)) {}

  lviRealSortedListEnumerator* getSortedListEnumerator(int position) const override {
    onCursor();
    return cursorless ? nullptr
                      : new Cursor(OwnSortedList::getSortedListEnumerator(position), onStep);
  }

  test::Act onCursor;
  test::Act onStep;
  bool cursorless = false;

 private:
  class Cursor : public lviRealSortedListEnumerator {
   public:
    Cursor(lviRealSortedListEnumerator* walk, test::Act onStep)
        : walk_(walk), onStep_(std::move(onStep)) {}
    bool hasNext() const override { return walk_->hasNext(); }
    bool hasPrevious() const override { return walk_->hasPrevious(); }
    lvArg next() override {
      onStep_();
      return walk_->next();
    }
    int nextIndex() const override { return walk_->nextIndex(); }
    lvArg previous() override {
      onStep_();
      return walk_->previous();
    }
    int previousIndex() const override { return walk_->previousIndex(); }

   private:
    std::unique_ptr<lviRealSortedListEnumerator> walk_;
    test::Act onStep_;
  };
};

// A list of 1, 2 and 3, and one of 2, 5 and 7 that acts.
class SortedListWithAnActingOne : public ::testing::TestWithParam<unsigned> {
 protected:
  SortedListWithAnActingOne() : list(GetParam(), {1, 2, 3}), other(integers({2, 5, 7})) {}

  Action adding(int n) {
    return [this, n] {
      for (int i = 0; i < n; ++i) {
        list->add(integer(100 + added++));
      }
    };
  }

  SortedArray list;
  Held<ActingSortedList> other;
  int added = 0;
};

TEST_P(SortedListWithAnActingOne, MergesIntoAListThatGrowsWhenTheCursorIsMade) {
  other->onCursor = adding(20);
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_GE(list->getSize(), 3 + 20);
  EXPECT_TRUE(isRestNil(*list));
  EXPECT_EQ(elementsOf(*list).substr(0, 4), "1 2 ");
}

TEST_P(SortedListWithAnActingOne, MergesIntoAListThatGrowsAtEachStep) {
  other->onStep = adding(20);
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_GE(list->getSize(), 3);
  EXPECT_TRUE(isRestNil(*list));
}

TEST_P(SortedListWithAnActingOne, MergesIntoAListThatIsClearedWhenTheCursorIsMade) {
  other->onCursor = [this] { list->clear(); };
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_EQ(elementsOf(*list), "2 5 7 ");
}

TEST_P(SortedListWithAnActingOne, MergesIntoAListThatIsClearedAtEachStep) {
  other->onStep = [this] { list->clear(); };
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_TRUE(isRestNil(*list));
  EXPECT_LE(list->getSize(), 6);
}

TEST_P(SortedListWithAnActingOne, TakesAListWithoutCursorForAnEmptyOne) {
  other->cursorless = true;
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_EQ(elementsOf(*list), "1 2 3 ");
  EXPECT_TRUE(list->containsAll(*other));
  EXPECT_FALSE(list->equals(*other));
}

TEST_P(SortedListWithAnActingOne, ComparesThoughEachStepChangesTheList) {
  for (Action const& action : {adding(20), Action([this] { list->clear(); })}) {
    other->onStep = action;
    list->equals(*other);
    EXPECT_FALSE(list->containsAll(*other));
    EXPECT_EQ(other->cursorsAlive(), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Duplicates, SortedListWithAnActingOne,
                         ::testing::Values(WithDuplicates, WithoutDuplicates));

// --- Merging -------------------------------------------------------------------------------------

class SortedListWhileMerging : public ::testing::TestWithParam<unsigned> {
 protected:
  SortedListWhileMerging() : list(GetParam()), other(GetParam()) {}

  // Fills both, with elements of the list that act when they are compared.
  void fill(Action const& onCompare) {
    for (int const rank : {1, 3, 5}) {
      list->add(actingRank(rank, onCompare));
      other->add(ranked(rank + rank % 4));
    }
  }

  SortedArray list;
  SortedArray other;
};

TEST_P(SortedListWhileMerging, SurvivesWhatIsAddedToIt) {
  bool isMerging = false;
  fill([this, &isMerging] {
    if (isMerging) {
      list->add(integer(7));
    }
  });
  isMerging = true;
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_GE(list->getSize(), 3);
  EXPECT_TRUE(isRestNil(*list));
}

TEST_P(SortedListWhileMerging, SurvivesThatEitherListIsCleared) {
  for (bool const clearsTheOther : {false, true}) {
    list->clear();
    other->clear();
    bool isMerging = false;
    fill([this, &isMerging, clearsTheOther] {
      if (isMerging) {
        (clearsTheOther ? other : list)->clear();
      }
    });
    isMerging = true;
    EXPECT_TRUE(list->addAll(*other));
    EXPECT_TRUE(isRestNil(*list));
  }
}

TEST_P(SortedListWhileMerging, SurvivesItselfFromWithin) {
  bool isMerging = false;
  fill([this, &isMerging] {
    if (isMerging) {
      list->addAll(*other);
    }
  });
  isMerging = true;
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_TRUE(isRestNil(*list));
}

TEST_P(SortedListWhileMerging, LivesUntilItIsOverWhenAnElementLetsItGo) {
  auto& going = *new lvrSortedArrayList(GetParam());
  lvArg holder(going);
  going.add(actingRank(1, [&holder] { holder.setNil(); }));
  lvArg const kept = ranked(2);
  other->add(kept);
  EXPECT_TRUE(going.addAll(*other));
  EXPECT_TRUE(holder.isNil());
  EXPECT_EQ(countOf(kept), 2);
}

INSTANTIATE_TEST_SUITE_P(Duplicates, SortedListWhileMerging,
                         ::testing::Values(WithDuplicates, WithoutDuplicates));

// A list whose clear() leaves all as it is.
class KeepingList : public lvrSortedArrayList {
 public:
  KeepingList() : lvrSortedArrayList(WithDuplicates) {}
  void clear() override {
    if (++cleared > Endless) {
      lvrSortedArrayList::clear();
    }
  }

  int cleared = 0;
};

TEST(SortedListAddAll, DoesNotNeedTheVirtualClear) {
  Held<KeepingList> const list;
  SortedArray const other(WithDuplicates);
  list->add(actingRank(1, [&list] { list->add(integer(5)); }));
  other->add(ranked(2));
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_EQ(list->cleared, 0);
  EXPECT_EQ(ranksOf(*list), "1 2 ");
}

TEST(SortedListContainsAll, EndsThoughEachComparisonAddsToTheOther) {
  SortedArray const list(WithDuplicates);
  SortedArray const other(WithDuplicates);
  list->add(ranked(1));
  int added = 0;
  Action const adds = [&other, &added] {
    if (added < Endless) {
      other->add(other->get(0));
      ++added;
    }
  };
  other->add(actingRank(1, adds));
  EXPECT_TRUE(list->containsAll(*other));
  EXPECT_LT(added, 10);
}

TEST(SortedListAddAll, EndsThoughEachComparisonAddsToTheOther) {
  SortedArray const list(WithoutDuplicates);
  SortedArray const other(WithDuplicates);
  int added = 0;
  other->add(actingRank(1, [&other, &added] {
    if (added < Endless) {
      other->add(other->get(0));
      ++added;
    }
  }));
  EXPECT_TRUE(list->addAll(*other));
  EXPECT_LT(added, 10);
  EXPECT_EQ(list->getSize(), 1);
}

}  // namespace
