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

// The calls of calloc since the last start, and whether they fail.
struct Callocs {
  int made = 0;
  bool fail = false;
};

Callocs callocs;

}  // namespace

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size) {
  ++callocs.made;
  return callocs.fail ? nullptr : __real_calloc(count, size);
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
