// Elements and keys that throw when they are compared or hashed, and predicates that throw.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <string>

#include "support/ActingItems.h"
#include "support/Pairs.h"
#include "support/Rings.h"
#include "support/SortedLists.h"

namespace {

using test::ActingRank;
using test::ActingText;
using test::append;
using test::countOf;
using test::elementsOf;
using test::entriesOf;
using test::Held;
using test::integer;
using test::ranked;
using test::rankOf;
using test::SortedArray;
using test::string;
using test::ThrowsAt;
using test::WithDuplicates;
using test::WithoutDuplicates;

// --- Maps ----------------------------------------------------------------------------------------

// A map with one key that acts, and a cell with an equal one that does.
class HashMapOfThrowingKeys : public ::testing::Test {
 protected:
  HashMapOfThrowingKeys() : map(1U), stored("key"), searched("key") {
    map->put(lvArg(*stored), integer(1));
  }

  void expectToThrowAndStay() {
    lvArg old = integer(77);
    EXPECT_THROW(map->get(lvArg(*searched)), std::bad_alloc);
    EXPECT_THROW(map->put(lvArg(*searched), integer(2), &old), std::bad_alloc);
    EXPECT_THROW(map->put(lvArg(*searched), lvArg(), &old), std::bad_alloc);
    EXPECT_EQ(old.getInt(), 77);
    EXPECT_EQ(entriesOf(*map), "'key'=1 ");
    EXPECT_EQ(countOf(*map), 1);
    EXPECT_EQ(countOf(*stored), 2);
    EXPECT_EQ(countOf(*searched), 1);
  }

  Held<lvrHashMap> map;
  Held<ActingText> stored;
  Held<ActingText> searched;
};

TEST_F(HashMapOfThrowingKeys, StaysAsItIsWhenAHashThrows) {
  searched->onHash = [] { throw std::bad_alloc(); };
  expectToThrowAndStay();
}

TEST_F(HashMapOfThrowingKeys, StaysAsItIsWhenAComparisonThrows) {
  stored->onEquiv = [] { throw std::bad_alloc(); };
  expectToThrowAndStay();
}

TEST(TupleSetPut, LeavesTheSetAsItIsWhicheverComparisonThrows) {
  int comparison = 0;
  for (bool done = false; !done;) {
    Held<lvrTupleSet> const set(3, 1U, 0U);
    lvArg const other = ranked(5);
    for (lvArg const& key : {ranked(1), ranked(3), other}) {
      set->put(key, integer(1));
    }
    Held<ActingRank> const key(4);
    ThrowsAt throws(++comparison);
    key->onCompare = std::ref(throws);
    try {
      set->put(lvArg(*key), integer(2));
      done = true;
    } catch (std::bad_alloc const&) {
    }
    EXPECT_EQ(set->getSize(), done ? 4 : 3);
    EXPECT_EQ(countOf(*key), done ? 2 : 1);
    EXPECT_EQ(countOf(other), 2);
    EXPECT_EQ(countOf(*set), 1);
  }
  EXPECT_GE(comparison, 3);
}

TEST(TupleSetGet, PassesOnWhatAKeyThrows) {
  Held<lvrTupleSet> const set(3, 1U, 0U);
  set->put(ranked(1), integer(10));
  Held<ActingRank> const key(1);
  key->onCompare = [] { throw std::bad_alloc(); };
  EXPECT_THROW(set->get(lvArg(*key)), std::bad_alloc);
  key->onCompare = nullptr;
  EXPECT_EQ(set->get(lvArg(*key)).getInt(), 10);
  EXPECT_EQ(countOf(*set), 1);
}

// --- The vector ----------------------------------------------------------------------------------

TEST(VectorOfThrowingElements, StaysAsItIs) {
  Held<lvrVector> const vector(3);
  Held<ActingText> const acts("acts");
  vector->insert(lvArg(*acts), -1);
  append(*vector, {1});
  acts->onEquiv = [] { throw std::bad_alloc(); };
  EXPECT_THROW(vector->getElementPos(string("last")), std::bad_alloc);
  EXPECT_THROW(vector->remove(string("acts")), std::bad_alloc);
  EXPECT_EQ(elementsOf(*vector), "'acts' 1 ");
  EXPECT_EQ(countOf(*vector), 1);
  EXPECT_EQ(countOf(*acts), 2);
}

// --- Cursors -------------------------------------------------------------------------------------

bool throwsAtTwo(lvArg const& value, void* /*context*/) {
  if (value.getInt() == 2) {
    throw std::bad_alloc();
  }
  return false;
}

template <class List>
class ThrowingPredicate : public ::testing::Test {};

using Lists = ::testing::Types<lvrVector, lvrDLList>;
TYPED_TEST_SUITE(ThrowingPredicate, Lists, );

TYPED_TEST(ThrowingPredicate, LeavesTheCursorOnTheElementThatItWasShown) {
  lvArg const holder(*TypeParam::defaultCtorMethod());
  auto& list = static_cast<TypeParam&>(*holder.getReferencable());
  append(list, {1, 2, 3});
  std::unique_ptr<lviRealListEnumerator> const cursor(list.getListEnumerator());
  EXPECT_THROW(cursor->gotoNextMatching(throwsAtTwo, nullptr), std::bad_alloc);
  EXPECT_EQ(cursor->getValue().getInt(), 2);
  EXPECT_TRUE(cursor->gotoNext());
  EXPECT_THROW(cursor->gotoPreviousMatching(throwsAtTwo, nullptr), std::bad_alloc);
  EXPECT_EQ(cursor->getIndex(), 1);
}

// --- The sorted list -----------------------------------------------------------------------------

class SortedListOfThrowingElements : public ::testing::TestWithParam<unsigned> {
 protected:
  SortedListOfThrowingElements() : list(GetParam()), first(1), last(5) {
    test::addEach(*list, {lvArg(*first), ranked(3), lvArg(*last)});
  }

  void expectToBeWhole() {
    EXPECT_TRUE(test::isRestNil(*list));
    EXPECT_EQ(countOf(*list), 1);
    for (int const rank : {1, 3, 5}) {
      EXPECT_TRUE(list->contains(ranked(rank))) << rank;
    }
    for (int i = 1; i < list->getSize(); ++i) {
      EXPECT_LE(rankOf(list->get(i - 1)), rankOf(list->get(i)));
    }
  }

  SortedArray list;
  Held<ActingRank> first;
  Held<ActingRank> last;
};

TEST_P(SortedListOfThrowingElements, StaysAsItIsWhicheverComparisonOfAnAddedOneThrows) {
  int comparison = 0;
  for (bool done = false; !done;) {
    Held<ActingRank> const value(4);
    ThrowsAt throws(++comparison);
    value->onCompare = std::ref(throws);
    try {
      list->add(lvArg(*value));
      done = true;
    } catch (std::bad_alloc const&) {
      EXPECT_EQ(list->getSize(), 3);
    }
    EXPECT_EQ(countOf(*value), done ? 2 : 1);
  }
  EXPECT_EQ(list->getSize(), 4);
  EXPECT_GE(comparison, 3);
  expectToBeWhole();
}

TEST_P(SortedListOfThrowingElements, HasAllItHadWhicheverComparisonOfAMergeThrows) {
  SortedArray const other(GetParam());
  lvArg const between = ranked(4);
  test::addEach(*other, {ranked(2), between, ranked(5), ranked(6)});
  int comparison = 0;
  for (bool done = false; !done;) {
    ThrowsAt throws(++comparison);
    first->onCompare = std::ref(throws);
    last->onCompare = std::ref(throws);
    try {
      list->addAll(*other);
      done = true;
    } catch (std::bad_alloc const&) {
    }
    first->onCompare = nullptr;
    last->onCompare = nullptr;
    expectToBeWhole();
  }
  EXPECT_GE(comparison, 3);
  list->clear();
  EXPECT_EQ(countOf(between), 2);
}

TEST_P(SortedListOfThrowingElements, PassesOnWhatComparingListsThrows) {
  Held<test::OwnSortedList> const other(std::vector<lvArg>{ranked(1), lvArg(*first), ranked(5)});
  first->onCompare = [] { throw std::bad_alloc(); };
  EXPECT_THROW(list->compareTo(*other), std::bad_alloc);
  EXPECT_THROW(list->equals(*other), std::bad_alloc);
  EXPECT_THROW(list->containsAll(*other), std::bad_alloc);
  EXPECT_EQ(other->cursorsAlive(), 0);
  EXPECT_EQ(countOf(*other), 1);
  first->onCompare = nullptr;
  expectToBeWhole();
}

TEST_P(SortedListOfThrowingElements, PassesOnWhatSearchingThrows) {
  Held<ActingRank> const value(5);
  value->onCompare = [] { throw std::bad_alloc(); };
  EXPECT_THROW(list->contains(lvArg(*value)), std::bad_alloc);
  EXPECT_THROW(list->indexOf(lvArg(*value)), std::bad_alloc);
  EXPECT_THROW(list->lastIndexOf(lvArg(*value)), std::bad_alloc);
  EXPECT_EQ(countOf(*value), 1);
  expectToBeWhole();
}

INSTANTIATE_TEST_SUITE_P(Duplicates, SortedListOfThrowingElements,
                         ::testing::Values(WithDuplicates, WithoutDuplicates));

}  // namespace
