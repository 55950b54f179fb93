// What lets go of a container of exactly the library's own class while that compares or releases
// it: the container lives until it is done.

#include <gtest/gtest.h>

#include <memory>

#include "support/ActingItems.h"
#include "support/Cells.h"
#include "support/Objects.h"
#include "support/SortedLists.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"

namespace {

using test::acting;
using test::ActingRank;
using test::Held;
using test::integer;
using test::ranked;
using test::WithDuplicates;
using test::WithoutDuplicates;

// A container that only a cell holds, with an element that nobody else holds, behind all others.
template <class Container>
class OwnContainer {
 public:
  template <class... Arguments>
  explicit OwnContainer(Arguments... arguments)
      : container_(new Container(arguments...)), holder_(*container_) {}

  Container* operator->() const { return container_; }
  Container& operator*() const { return *container_; }

  // Empties the cell; the container, and so its element, must still be there then.
  test::Act::Action lettingGo() {
    return [this] {
      holder_.setNil();
      EXPECT_FALSE(isElementGone_);
    };
  }
  lvArg element() {
    Held<lvrVector> const vector(1);
    vector->insert(acting([this] { isElementGone_ = true; }), -1);
    return *vector;
  }
  bool isGone() const { return holder_.isNil() && isElementGone_; }

 private:
  bool isElementGone_ = false;
  Container* container_;
  lvArg holder_;
};

// Two lists, of which both go when their second elements are compared.
class OwnSortedListLetGo : public ::testing::TestWithParam<unsigned> {
 protected:
  OwnSortedListLetGo() : list(GetParam()), other(GetParam()) {
    addTo(list);
    addTo(other);
  }

  void expectBothToHaveGone() const {
    EXPECT_TRUE(list.isGone());
    EXPECT_TRUE(other.isGone());
  }

  OwnContainer<lvrSortedArrayList> list;
  OwnContainer<lvrSortedArrayList> other;

 private:
  void addTo(OwnContainer<lvrSortedArrayList>& filled) {
    auto& acts = *new ActingRank(2);
    test::addEach(*filled, {ranked(1), lvArg(acts), ranked(3), filled.element()});
    acts.onCompare = [this] {
      list.lettingGo()();
      other.lettingGo()();
    };
  }
};

TEST_P(OwnSortedListLetGo, ByAnElementThatIsComparedMerges) {
  EXPECT_TRUE(list->addAll(*other));
  expectBothToHaveGone();
}

TEST_P(OwnSortedListLetGo, ByAnElementThatIsComparedTellsWhetherItHasAll) {
  EXPECT_FALSE(list->containsAll(*other));  // Not the other's last element.
  expectBothToHaveGone();
}

TEST_P(OwnSortedListLetGo, ByAnElementThatIsComparedTellsTheOrder) {
  EXPECT_FALSE(list->equals(*other));
  expectBothToHaveGone();
}

INSTANTIATE_TEST_SUITE_P(Duplicates, OwnSortedListLetGo,
                         ::testing::Values(WithDuplicates, WithoutDuplicates));

TEST(OwnTupleSetLetGo, ByAnElementThatGoesIsClearedToItsEnd) {
  for (bool const isFinalized : {false, true}) {
    OwnContainer<lvrTupleSet> set(3, 1U, 0U);
    set->put(integer(1), acting(set.lettingGo()));
    set->put(integer(2), set.element());
    isFinalized ? set->finalize() : set->clear();
    EXPECT_TRUE(set.isGone());
  }
}

TEST(OwnLinkedListLetGo, ByAnElementThatACursorRemovesLivesAsLongAsTheCursor) {
  OwnContainer<lvrDLList> list;
  list->insert(acting(list.lettingGo()), -1);
  list->insert(list.element(), -1);
  {
    std::unique_ptr<lviRealListIterator> const cursor(list->getListIterator());
    EXPECT_TRUE(cursor->gotoNext());
    EXPECT_TRUE(cursor->remove());
    EXPECT_FALSE(list.isGone());
    EXPECT_EQ(cursor->getIndex(), 0);
  }
  EXPECT_TRUE(list.isGone());
}

}  // namespace
