// What the hash map and the vector allocate, and what becomes of them when memory runs out.
//
// The program is linked with --wrap for calloc, from which the buckets of a map come; all the rest
// comes from operator new.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "support/Allocations.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "support/Rings.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

// The calls of calloc since the last start, and which of them fails: all, or this one.
struct Callocs {
  static constexpr int None = -1;

  int made = 0;
  bool fail = false;
  int failing = None;
};

Callocs callocs;

}  // namespace

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size) {
  bool const fails = callocs.fail || callocs.made == callocs.failing;
  ++callocs.made;
  return fails ? nullptr : __real_calloc(count, size);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using test::Allocations;
using test::countOf;
using test::entriesOf;
using test::Held;
using test::integer;
using test::string;
using MapLayout = lvLayoutAccess<lvrHashMap>;
using test::elementsOf;
using test::VectorLayout;

constexpr int Plenty = -1;

// Whether `action` ends with std::bad_alloc when no more than `after` allocations succeed.
template <class Action>
bool runsOutOfMemory(Action const& action, int after = 0) {
  bool thrown = false;
  Allocations::instance().failAfter = after;
  try {
    action();
  } catch (std::bad_alloc const&) {
    thrown = true;
  }
  Allocations::instance().failAfter = Plenty;
  return thrown;
}

template <class Action>
bool runsOutOfBuckets(Action const& action) {
  callocs.fail = true;
  bool const thrown = runsOutOfMemory(action, Plenty);
  callocs.fail = false;
  return thrown;
}

// How many blocks `action` allocates.
template <class Action>
int allocationsOf(Action const& action) {
  Allocations::reset();
  callocs = Callocs();
  action();
  return Allocations::instance().made + callocs.made;
}

// --- The hash map --------------------------------------------------------------------------------

class HashMapMemory : public ::testing::Test {
 protected:
  HashMapMemory() : map(2U) {
    map->put(integer(1), integer(10));
    map->put(integer(2), integer(20));
  }

  Held<lvrHashMap> map;
};

TEST(HashMapMemoryOfANewMap, IsTheObjectAlone) {
  EXPECT_EQ(allocationsOf([] { lvHashMap const map(1000); }), 1);
}

TEST(HashMapMemoryOfANewMap, IsNotTouchedByReading) {
  Held<lvrHashMap> const map(7U);
  EXPECT_EQ(allocationsOf([&] {
              map->get(integer(1));
              map->clear();
              map->freeStorage();
            }),
            0);
}

TEST(HashMapMemoryOfANewMap, GetsItsBucketsWithTheFirstEntryOnly) {
  Held<lvrHashMap> const map(7U);
  EXPECT_EQ(allocationsOf([&] { map->put(integer(1), integer(1)); }), 2);
  EXPECT_EQ(allocationsOf([&] { map->put(integer(2), integer(2)); }), 1);
}

TEST_F(HashMapMemory, IsEnoughForRemovingAndAddingInTurn) {
  EXPECT_EQ(allocationsOf([this] {
              for (int i = 0; i < 100; ++i) {
                map->put(integer(i % 2 == 0 ? 1 : i), lvArg::NilValue);
                map->put(integer(i % 2 == 0 ? i + 1 : 1), integer(i));
              }
            }),
            0);
  EXPECT_EQ(map->getSize(), 2);
}

TEST_F(HashMapMemory, IsEnoughForReplacingRemovingAndClearing) {
  EXPECT_EQ(allocationsOf([this] {
              map->put(integer(1), integer(11));
              map->put(integer(3), lvArg::NilValue);
              map->put(integer(2), lvArg::NilValue);
              map->clear();
            }),
            0);
}

TEST_F(HashMapMemory, MissingForAnEntryLeavesTheMapAsItWas) {
  std::string const before = entriesOf(*map);
  unsigned const hash = map->hashCode();
  lvArg const key = string("key");
  lvArg const value = string("value");
  lvArg old = integer(77);
  EXPECT_TRUE(runsOutOfMemory([&] { map->put(key, value, &old); }));
  EXPECT_EQ(entriesOf(*map), before);
  EXPECT_EQ(map->getSize(), 2);
  EXPECT_EQ(map->hashCode(), hash);
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(old.getInt(), 77);
}

TEST(HashMapMemoryForAnEntry, WhenMissingLeavesTheTurnsAsTheyWere) {
  test::startAlternation();
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(1));
  EXPECT_TRUE(runsOutOfMemory([&] { map->put(integer(9), integer(9)); }));
  map->put(integer(2), integer(2));
  EXPECT_EQ(test::keysOf(*map), "2 1 ");
}

TEST(HashMapMemoryForBuckets, WhenMissingLeavesTheMapAsItWas) {
  Held<lvrHashMap> const map(7U);
  EXPECT_TRUE(runsOutOfBuckets([&] { map->put(integer(1), integer(1)); }));
  EXPECT_TRUE(runsOutOfBuckets([&] { map->needStorage(); }));
  EXPECT_EQ(MapLayout::buckets(*map), nullptr);
  EXPECT_EQ(MapLayout::hashSize(*map), 7U);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(map->put(integer(1), integer(1)), 0);
  EXPECT_EQ(entriesOf(*map), "1=1 ");
}

// A string that empties its map, and lets the next buckets fail, when it is compared.
class EmptyingKey : public lvrString {
 public:
  explicit EmptyingKey(lvrHashMap& map) : map_(map) {}
  unsigned int hashCode() const override { return 0; }
  int equiv(lvReferencable const& /*other*/) const override {
    map_.finalize();
    callocs.fail = true;
    return 0;
  }

 private:
  lvrHashMap& map_;
};

TEST(HashMapMemoryForBuckets, WhenMissingBehindASearchThatLostThemLeavesNoReference) {
  Held<lvrHashMap> const map(7U);
  lvArg const first = *new EmptyingKey(*map);
  lvArg const second = *new EmptyingKey(*map);
  map->put(first, integer(1));
  EXPECT_THROW(map->put(second, integer(2)), std::bad_alloc);
  callocs.fail = false;
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(countOf(first), 1);
  EXPECT_EQ(countOf(second), 1);
}

TEST_F(HashMapMemory, MissingForACursorTakesNoReference) {
  EXPECT_TRUE(runsOutOfMemory([this] { delete map->getEnumerator(); }));
  EXPECT_EQ(countOf(*map), 1);
}

TEST_F(HashMapMemory, OfACursorIsFreedWithIt) {
  Allocations::reset();
  delete map->getEnumerator();
  EXPECT_EQ(Allocations::instance().made, 1);
  EXPECT_EQ(Allocations::instance().alive(), 0);
}

TEST(HashMapMemoryOfAMap, IsFreedWithIt) {
  Allocations::reset();
  {
    lvHashMap const map(3);
    for (int i = 0; i < 20; ++i) {
      map->put(integer(i), integer(i));
    }
    map->put(integer(1), lvArg::NilValue);
  }
  EXPECT_EQ(Allocations::instance().alive(), 0);
}

TEST(HashMapMemoryOfAHandle, WhenMissingIsReported) {
  EXPECT_TRUE(runsOutOfMemory([] { lvHashMap const map(7); }));
  EXPECT_TRUE(runsOutOfMemory([] { lvrHashMap::defaultCtorMethod(); }));
}

// --- The index of a hash map ---------------------------------------------------------------------

// All calls of calloc but that for the buckets are for the index.
class HashMapIndexMemory : public ::testing::Test {
 protected:
  static constexpr int Many = 2000;
  static constexpr int Few = 200;
  static constexpr int IndexBlocks = 3;  // itself, slots, ends

  HashMapIndexMemory() : map(7U) { startAnew(); }
  ~HashMapIndexMemory() override { callocs = Callocs(); }

  // A map of one entry, which has its buckets, in the turns as at first.
  void startAnew() {
    map->clear();
    test::startAlternation();
    put(0);
    callocs = Callocs();
  }

  // Texts and numbers by turns.
  static lvArg key(int i) { return i % 2 == 0 ? string(std::to_string(i)) : integer(i); }
  void put(int i) { ASSERT_EQ(map->put(key(i), integer(i)), 0); }
  void putAll() {
    for (int i = 1; i < Many; ++i) {
      put(i);
    }
  }
  void expectAllFound() const { expectAllFoundUpTo(Many); }
  void expectAllFoundUpTo(int end) const {
    for (int i = 0; i < end; ++i) {
      ASSERT_EQ(map->get(key(i)).getInt(), i);
    }
    ASSERT_TRUE(map->get(integer(0)).isNil());
  }

  Held<lvrHashMap> map;
};

TEST_F(HashMapIndexMemory, IsNoneForAFewEntries) {
  for (int i = 1; i < 30; ++i) {
    put(i);
  }
  for (int i = 0; i < 1000; ++i) {
    map->get(integer(i));
  }
  EXPECT_EQ(callocs.made, 0);
}

TEST_F(HashMapIndexMemory, IsTakenForManyEntries) {
  putAll();
  EXPECT_GT(callocs.made, 3);
  expectAllFound();
}

TEST_F(HashMapIndexMemory, IsNotNeeded) {
  putAll();
  std::string const expected = entriesOf(*map);
  startAnew();
  callocs.fail = true;
  putAll();
  expectAllFound();
  EXPECT_GT(callocs.made, 10) << "no index was tried";
  EXPECT_EQ(entriesOf(*map), expected);
}

TEST_F(HashMapIndexMemory, LosesNothingWhereverItRunsOut) {
  putAll();
  std::string const expected = entriesOf(*map);
  int const needed = callocs.made;
  ASSERT_GT(needed, 3);
  for (int failing = 0; failing < needed; ++failing) {
    startAnew();
    callocs.failing = failing;
    putAll();
    expectAllFound();
    ASSERT_EQ(entriesOf(*map), expected) << failing;
  }
}

TEST_F(HashMapIndexMemory, IsTakenAgainOnceThereIsSome) {
  callocs.fail = true;
  putAll();
  expectAllFound();
  callocs = Callocs();
  expectAllFound();
  EXPECT_EQ(callocs.made, IndexBlocks);
  expectAllFound();
  EXPECT_EQ(callocs.made, IndexBlocks) << "the index has gone again";
}

TEST_F(HashMapIndexMemory, MissingForMoreEntriesLeavesTheMapWithoutAnIndexForAWhile) {
  putAll();
  std::string const expected = entriesOf(*map);
  startAnew();
  constexpr int grown = IndexBlocks + 2;
  callocs.failing = grown;
  int i = 1;
  for (; callocs.made <= grown; ++i) {
    put(i);
  }
  ASSERT_LT(i, Many);
  expectAllFoundUpTo(i);
  EXPECT_EQ(callocs.made, grown + 1 + IndexBlocks) << "it was not built again";
  for (; i < Many; ++i) {
    put(i);
  }
  expectAllFound();
  EXPECT_EQ(entriesOf(*map), expected);
}

TEST_F(HashMapIndexMemory, MissingForAnIndexOfFewerEntriesLeavesTheOneThatIsThere) {
  putAll();
  callocs = Callocs();
  callocs.fail = true;
  for (int i = Few; i < Many; ++i) {
    ASSERT_EQ(map->put(key(i), lvArg::NilValue), 0);
  }
  EXPECT_GT(callocs.made, 0) << "no smaller index was tried";
  callocs = Callocs();
  for (int i = 0; i < 100; ++i) {
    expectAllFoundUpTo(Few);
  }
  EXPECT_EQ(map->getSize(), Few);
  EXPECT_EQ(callocs.made, 0) << "the index had gone";
}

// Strings that borrow one text are equal: the index cannot tell where they are.
TEST_F(HashMapIndexMemory, IsTakenOnceThoughTheIndexCannotTellWhereTextsAre) {
  lvArg const borrowing(*lvrString::defaultCtorMethod());
  static_cast<lvrString&>(*borrowing.getReferencable())
      .setStringData("lent", -1, lvrString::Borrow);
  map->put(borrowing, integer(-1));
  putAll();
  expectAllFound();
  int const made = callocs.made;
  expectAllFound();
  EXPECT_EQ(callocs.made, made);
}

// --- The vector ----------------------------------------------------------------------------------

// A vector of 1, 2 and 3 without room for more.
class VectorMemory : public ::testing::Test {
 protected:
  VectorMemory() : vector(3, 1, {1, 2, 3}) {}

  void expectUnchanged() const {
    EXPECT_EQ(VectorLayout::start(*vector), 1);
    EXPECT_EQ(test::slotsOf(*vector), "3 1 2 ");
    EXPECT_EQ(vector->getSize(), 3);
  }

  test::RingVector vector;
};

TEST_F(VectorMemory, MissingForGrowthLeavesTheVectorAsItWas) {
  unsigned const hash = vector->hashCode();
  lvArg const value = string("value");
  for (int const index : {-1, 0, 2, 3}) {
    EXPECT_TRUE(runsOutOfMemory([&] { vector->insert(value, index); }));
    expectUnchanged();
  }
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(VectorLayout::flags(*vector), 1U);
  EXPECT_EQ(vector->hashCode(), hash);
}

TEST_F(VectorMemory, MissingForANewCapacityLeavesTheVectorAsItWas) {
  EXPECT_TRUE(runsOutOfMemory([this] { vector->setAlloced(10); }));
  expectUnchanged();
}

TEST_F(VectorMemory, MissingForShrinkingLeavesTheVectorAsItWas) {
  vector->remove(0);
  EXPECT_TRUE(runsOutOfMemory([this] { vector->setAlloced(-1); }));
  EXPECT_EQ(elementsOf(*vector), "2 3 ");
  EXPECT_EQ(VectorLayout::alloced(*vector), 3);
}

TEST_F(VectorMemory, MissingForACursorTakesNoReference) {
  EXPECT_TRUE(runsOutOfMemory([this] { delete vector->getListEnumerator(); }));
  EXPECT_EQ(countOf(*vector), 1);
}

TEST_F(VectorMemory, IsEnoughForTakingAndAddingAtBothEnds) {
  EXPECT_EQ(allocationsOf([this] {
              for (int i = 0; i < 100; ++i) {
                vector->insert(vector->remove(-1), 0);
                vector->insert(vector->remove(0), -1);
              }
            }),
            0);
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
}

TEST_F(VectorMemory, IsEnoughForClearing) {
  EXPECT_EQ(allocationsOf([this] { vector->clear(); }), 0);
}

TEST_F(VectorMemory, OfARefusedInsertIsNone) {
  EXPECT_EQ(allocationsOf([this] { vector->insert(integer(9), 4); }), 0);
  expectUnchanged();
}

TEST(VectorMemoryOfANewVector, IsTheObjectAndItsArray) {
  EXPECT_EQ(allocationsOf([] { lvVector const vector(7); }), 2);
  EXPECT_EQ(allocationsOf([] { lvVector const vector(0); }), 2);
  EXPECT_EQ(allocationsOf([] { lvVector const vector(-1); }), 1);
}

TEST(VectorMemoryOfANewVector, WhenMissingForTheArrayFreesTheObject) {
  Allocations::reset();
  EXPECT_TRUE(runsOutOfMemory([] { lvVector const vector(7); }, 1));
  EXPECT_EQ(Allocations::instance().made, 1);
  EXPECT_EQ(Allocations::instance().alive(), 0);
  EXPECT_TRUE(runsOutOfMemory([] { lvrVector::defaultCtorMethod(); }, 1));
  EXPECT_EQ(Allocations::instance().alive(), 0);
}

TEST(VectorMemoryOfAVector, IsFreedWithIt) {
  Allocations::reset();
  {
    lvVector const vector(0);
    for (int i = 0; i < 100; ++i) {
      vector->insert(integer(i), 0);
    }
  }
  EXPECT_EQ(Allocations::instance().alive(), 0);
}

TEST(VectorMemoryOfAnAdoptedRing, IsFreedWithTheVector) {
  Allocations::reset();
  { test::RingVector const vector(5, 3, {1, 2, 3}); }
  EXPECT_EQ(Allocations::instance().made, 2);
  EXPECT_EQ(Allocations::instance().alive(), 0);
}

}  // namespace
