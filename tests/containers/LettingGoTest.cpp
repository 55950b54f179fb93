// What lets go of the container that compares, hashes or releases it: that lives until it is done.
// And containers that never let go of each other.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "support/ActingItems.h"
#include "support/Rings.h"
#include "support/SortedLists.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"

namespace {

using test::ActingRank;
using test::ActingText;
using test::countOf;
using test::Held;
using test::integer;
using test::OnlyHeld;
using test::ranked;
using test::SortedArray;
using test::string;
using test::WithDuplicates;
using test::WithoutDuplicates;

// --- The hash map --------------------------------------------------------------------------------

// A map of one chain, with one key before others.
class HashMapLetGo : public ::testing::Test {
 protected:
  HashMapLetGo() : map(1U), first("first"), searched("last") {
    map->put(lvArg(*first), integer(1));
    map->put(string("middle"), integer(2));
    map->put(string("last"), integer(3));
  }

  OnlyHeld<lvrHashMap> map;
  Held<ActingText> first;
  Held<ActingText> searched;
};

TEST_F(HashMapLetGo, ByAKeyThatIsComparedFindsAnother) {
  first->onEquiv = map.lettingGo();
  EXPECT_EQ(map->get(string("last")).getInt(), 3);
  EXPECT_TRUE(map.isGone());
}

TEST_F(HashMapLetGo, ByTheHashOfTheSearchedKeyFindsIt) {
  searched->onHash = map.lettingGo();
  EXPECT_EQ(map->get(lvArg(*searched)).getInt(), 3);
  EXPECT_TRUE(map.isGone());
}

TEST_F(HashMapLetGo, ByAKeyThatIsComparedTakesAnotherIn) {
  first->onEquiv = map.lettingGo();
  lvArg const value = string("value");
  EXPECT_EQ(map->put(string("absent"), value), 0);
  EXPECT_TRUE(map.isGone());
  EXPECT_EQ(countOf(value), 1);
}

TEST_F(HashMapLetGo, ByTheHashOfTheSearchedKeyHandsTheOldValueOut) {
  searched->onHash = map.lettingGo();
  lvArg old;
  EXPECT_EQ(map->put(lvArg(*searched), lvArg(), &old), 0);
  EXPECT_TRUE(map.isGone());
  EXPECT_EQ(old.getInt(), 3);
}

// --- The tuple set -------------------------------------------------------------------------------

// A set of three ranks, and a key that lets it go when it is compared.
class TupleSetLetGo : public ::testing::Test {
 protected:
  TupleSetLetGo() : set(3, 1U, 0U) {
    for (int const rank : {1, 3, 5}) {
      set->put(ranked(rank), integer(10 * rank));
    }
  }

  lvArg keyThatLetsGo(int rank) {
    auto& item = *new ActingRank(rank);
    lvArg key(item);
    item.onCompare = set.lettingGo();
    return key;
  }

  OnlyHeld<lvrTupleSet> set;
};

TEST_F(TupleSetLetGo, ByTheSearchedKeyFindsIt) {
  EXPECT_EQ(set->get(keyThatLetsGo(5)).getInt(), 50);
  EXPECT_TRUE(set.isGone());
}

TEST_F(TupleSetLetGo, ByTheSearchedKeySaysWhereItIs) {
  bool found = false;
  EXPECT_EQ(set->search(keyThatLetsGo(5), &found), 2);
  EXPECT_TRUE(found);
  EXPECT_TRUE(set.isGone());
}

TEST_F(TupleSetLetGo, ByANewKeyTakesItIn) {
  lvArg const key = keyThatLetsGo(4);
  EXPECT_EQ(set->put(key, integer(40)), 0);
  EXPECT_TRUE(set.isGone());
  EXPECT_EQ(countOf(key), 1);
}

TEST_F(TupleSetLetGo, ByAKeyThatIsThereHandsTheOldValueOut) {
  lvArg old;
  EXPECT_EQ(set->put(keyThatLetsGo(1), lvArg(), &old), 0);
  EXPECT_TRUE(set.isGone());
  EXPECT_EQ(old.getInt(), 10);
}

// --- Lists and stack -----------------------------------------------------------------------------

TEST(VectorLetGo, ByAnElementThatIsComparedFindsAnother) {
  for (bool const removes : {false, true}) {
    OnlyHeld<lvrVector> vector(3);
    Held<ActingText> const first("first");
    vector->insert(lvArg(*first), -1);
    vector->insert(string("last"), -1);
    first->onEquiv = vector.lettingGo();
    EXPECT_EQ(removes ? vector->remove(string("last")) : vector->getElementPos(string("last")), 1);
    EXPECT_TRUE(vector.isGone());
  }
}

TEST(VectorLetGo, ByTheSearchedValueFindsIt) {
  OnlyHeld<lvrVector> vector(3);
  vector->insert(string("first"), -1);
  vector->insert(string("last"), -1);
  Held<ActingText> const searched("last");
  searched->onHash = vector.lettingGo();
  EXPECT_EQ(vector->getElementPos(lvArg(*searched)), 1);
  EXPECT_TRUE(vector.isGone());
}

void add(lvrVector& vector, lvArg const& value) { vector.insert(value, -1); }
void add(lvrStack& stack, lvArg const& value) { stack.push(value); }

template <class Container>
class LetGoWhileHashed : public ::testing::Test {};

using HashedContainers = ::testing::Types<lvrVector, lvrStack>;
TYPED_TEST_SUITE(LetGoWhileHashed, HashedContainers, );

TYPED_TEST(LetGoWhileHashed, HasTheHashOfAllItsElements) {
  OnlyHeld<TypeParam> container(3);
  Held<TypeParam> const same(3);
  Held<ActingRank> const acts(7);
  for (TypeParam* const filled : {&*container, &*same}) {
    add(*filled, string("bottom"));
    add(*filled, lvArg(*acts));
  }
  unsigned const hash = same->hashCode();
  acts->onHash = container.lettingGo();
  EXPECT_EQ(container->hashCode(), hash);
  EXPECT_TRUE(container.isGone());
}

// A list whose cursors do something at each step.
class SteppingList : public lvrDLList {
 public:
  lviRealListEnumerator* getListEnumerator() const override { return new Cursor(*this); }

  test::Act onStep;

 private:
  class Cursor : public RealEnumerator {
   public:
    explicit Cursor(SteppingList const& list) : RealEnumerator(list), list_(list) {}
    bool gotoNext() override {
      list_.onStep();
      return RealEnumerator::gotoNext();
    }

   private:
    SteppingList const& list_;
  };
};

TEST(LinkedListLetGo, ByTheCursorOfTheListThatItMergesAppendsIt) {
  OnlyHeld<lvrDLList> list;
  Held<SteppingList> const other;
  lvArg const element = string("element");
  other->insert(element, -1);
  other->onStep = list.lettingGo();
  EXPECT_TRUE(list->merge(*other));
  EXPECT_TRUE(list.isGone());
  EXPECT_EQ(countOf(element), 2);
}

// --- The sorted list -----------------------------------------------------------------------------

using SortedOperation = std::function<void(lvrSortedArrayList& list, lvArg const& acts)>;

// An operation that compares `acts`, and the ranks of the list by then.
class SortedListLetGo : public ::testing::TestWithParam<unsigned> {
 protected:
  void expectToLast(SortedOperation const& operation) {
    OnlyHeld<lvrSortedArrayList> list(GetParam());
    test::addEach(*list, {ranked(1), ranked(3), ranked(5)});
    Held<ActingRank> const acts(3);
    acts->onCompare = list.lettingGo();
    operation(*list, lvArg(*acts));
    EXPECT_TRUE(list.isGone());
    EXPECT_EQ(countOf(*acts), 1);
  }
};

TEST_P(SortedListLetGo, ByTheValueThatItLooksForFindsIt) {
  expectToLast(
      [](lvrSortedArrayList& list, lvArg const& acts) { EXPECT_TRUE(list.contains(acts)); });
  expectToLast(
      [](lvrSortedArrayList& list, lvArg const& acts) { EXPECT_EQ(list.indexOf(acts), 1); });
  expectToLast(
      [](lvrSortedArrayList& list, lvArg const& acts) { EXPECT_EQ(list.lastIndexOf(acts), 1); });
}

TEST_P(SortedListLetGo, ByTheValueThatItAddsTakesThatIn) {
  expectToLast([](lvrSortedArrayList& list, lvArg const& acts) { EXPECT_EQ(list.add(acts), 0); });
}

TEST_P(SortedListLetGo, ByAnElementOfAnotherListTellsWhetherItHasIt) {
  expectToLast([](lvrSortedArrayList& list, lvArg const& acts) {
    SortedArray const other(GetParam());
    other->add(acts);
    EXPECT_TRUE(list.containsAll(*other));
  });
}

TEST_P(SortedListLetGo, ByAnElementOfItsOwnIsComparedToItsEnd) {
  OnlyHeld<lvrSortedArrayList> list(GetParam());
  Held<ActingRank> const acts(1);
  test::addEach(*list, {lvArg(*acts), ranked(3)});
  SortedArray const other(GetParam());
  test::addEach(*other, {ranked(1), ranked(2)});
  acts->onCompare = list.lettingGo();
  EXPECT_EQ(list->compareTo(*other), 1);
  EXPECT_TRUE(list.isGone());
}

TEST_P(SortedListLetGo, KeepsTheOtherThatItIsComparedWithOrMerges) {
  SortedArray const list(GetParam());
  Held<ActingRank> const acts(1);
  test::addEach(*list, {lvArg(*acts), ranked(3)});
  for (int operation = 0; operation < 3; ++operation) {
    OnlyHeld<lvrSortedArrayList> other(GetParam());
    Held<ActingRank> const theirs(1);
    test::addEach(*other, {lvArg(*theirs), ranked(3)});
    theirs->onCompare = other.lettingGo();
    acts->onCompare = other.lettingGo();
    EXPECT_TRUE(operation == 0   ? list->equals(*other)
                : operation == 1 ? list->containsAll(*other)
                                 : list->addAll(*other));
    EXPECT_TRUE(other.isGone());
  }
}

INSTANTIATE_TEST_SUITE_P(Duplicates, SortedListLetGo,
                         ::testing::Values(WithDuplicates, WithoutDuplicates));

// --- Finalizing ----------------------------------------------------------------------------------

void add(lvrHashMap& map, lvArg const& value) { map.put(integer(1), value); }
void add(lvrTupleSet& set, lvArg const& value) { set.put(integer(1), value); }
void add(lvrSortedArrayList& list, lvArg const& value) { list.add(value); }

template <class Container, class... Arguments>
void expectToGoWhenItIsFinalized(Arguments... arguments) {
  OnlyHeld<Container> container(arguments...);
  add(*container, container.letsGoTooEarly());
  EXPECT_EQ(container->finalize(), 0);
  EXPECT_TRUE(container.isGone());
}

TEST(ContainerThatItsOwnElementLetsGo, LivesUntilItIsFinalized) {
  expectToGoWhenItIsFinalized<lvrVector>(3);
  expectToGoWhenItIsFinalized<lvrStack>(3);
  expectToGoWhenItIsFinalized<lvrHashMap>(3U);
  expectToGoWhenItIsFinalized<lvrTupleSet>(3, 1U, 0U);
  expectToGoWhenItIsFinalized<lvrSortedArrayList>(WithDuplicates);
}

// --- Cycles --------------------------------------------------------------------------------------

TEST(Cycle, OfTwoVectorsEndsOnlyWhenItIsBroken) {
  bool hasEnded = false;
  lvrVector* inside = nullptr;
  {
    Held<lvrVector> first(2);
    Held<lvrVector> second(1);
    first->insert(second.cell(), -1);
    first->insert(lvArg(*new test::ActingObject([&hasEnded] { hasEnded = true; })), -1);
    second->insert(first.cell(), -1);
    inside = &*first;
  }
  EXPECT_FALSE(hasEnded);
  EXPECT_EQ(countOf(*inside), 1);
  {
    lvArg const holder(*inside);
    inside->clear();
    EXPECT_EQ(countOf(holder), 1);
  }
  EXPECT_TRUE(hasEnded);
}

}  // namespace
