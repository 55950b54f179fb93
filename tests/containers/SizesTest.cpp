// Containers of many elements, and sizes at the ends of their types.
//
// The program is linked with --wrap for malloc, calloc and realloc: a block that no test is meant
// to get is refused, and the sizes that were asked for are kept.

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "support/MapReading.h"
#include "support/Pairs.h"
#include "support/SortedLists.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

// The most that a single block may have, and what was granted since the last reset.
constexpr std::size_t MostBytes = std::size_t{128} << 20;
std::size_t granted = 0;

}  // namespace

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
}

// What realloc() of nothing may be compiled to.
void* __wrap_malloc(std::size_t size) {
  if (size > MostBytes) {
    return nullptr;
  }
  granted += size;
  return __real_malloc(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  if (size != 0 && count > MostBytes / size) {
    return nullptr;
  }
  granted += count * size;
  return __real_calloc(count, size);
}

void* __wrap_realloc(void* block, std::size_t size) {
  if (size > MostBytes) {
    return nullptr;
  }
  granted += size;
  return __real_realloc(block, size);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using test::countOf;
using test::elementsOf;
using test::entriesOf;
using test::Held;
using test::integer;
using test::putEach;
using test::SetLayout;
using test::SortedArray;
using test::SortedLayout;
using test::string;
using test::WithDuplicates;
using test::WithoutDuplicates;

constexpr int Million = 1000000;

// Runs `action`, and answers how many bytes were granted.
template <class Action>
std::size_t grantedBy(Action const& action) {
  granted = 0;
  action();
  return granted;
}

// --- A million elements --------------------------------------------------------------------------

TEST(MillionElements, AreAddedToASortedListInOrder) {
  SortedArray const list(WithDuplicates);
  list->expand(Million);
  for (int i = 0; i < Million; ++i) {
    list->add(integer(i));
  }
  ASSERT_EQ(list->getSize(), Million);
  for (int i = 0; i < Million; i += 9973) {
    ASSERT_EQ(list->get(i).getInt(), i);
    ASSERT_EQ(list->indexOf(integer(i)), i);
  }
  EXPECT_EQ(list->get(Million - 1).getInt(), Million - 1);
  EXPECT_EQ(list->indexOf(integer(Million)), -1);
}

TEST(MillionElements, AreMergedFromTwoSortedLists) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const even(duplicates);
    SortedArray const odd(duplicates);
    even->expand(Million);
    odd->expand(Million / 2);
    for (int i = 0; i < Million; i += 2) {
      even->add(integer(i));
      odd->add(integer(i + 1));
    }
    ASSERT_TRUE(even->addAll(*odd));
    ASSERT_EQ(even->getSize(), Million);
    for (int i = 0; i < Million; i += 997) {
      ASSERT_EQ(even->get(i).getInt(), i);
    }
    EXPECT_TRUE(test::isRestNil(*even));
  }
}

TEST(MillionElements, ArePutIntoATupleSetInOrder) {
  Held<lvrTupleSet> const set(Million, 1U, 0U);
  for (int i = 0; i < Million; ++i) {
    set->put(integer(i), integer(-i));
  }
  ASSERT_EQ(set->getSize(), Million);
  EXPECT_EQ(SetLayout::allocated(*set), Million);
  for (int i = 0; i < Million; i += 9973) {
    ASSERT_EQ(set->getKey(i).getInt(), i);
    ASSERT_EQ(set->get(integer(i)).getInt(), -i);
  }
  EXPECT_TRUE(set->get(integer(Million)).isNil());
}

TEST(ThousandsOfElements, AreAddedInReverse) {
  constexpr int thousands = 4000;
  SortedArray const list(WithDuplicates);
  Held<lvrTupleSet> const set(0, 100U, 0U);
  for (int i = thousands - 1; i >= 0; --i) {
    list->add(integer(i));
    set->put(integer(i), integer(i));
  }
  for (int i = 0; i < thousands; ++i) {
    ASSERT_EQ(list->get(i).getInt(), i);
    ASSERT_EQ(set->getKey(i).getInt(), i);
  }
}

// --- Growth --------------------------------------------------------------------------------------

// Sizes at which one 32-bit size of an array or another overflows or passes a limit.
constexpr int LargeSizes[] = {1 << 26,       (1 << 27) + 1, (1 << 28) - 1, 1 << 28,
                              (1 << 28) + 1, (1 << 29) - 1, 1 << 29,       1 << 30,
                              INT_MAX - 1,   INT_MAX};

TEST(GrowthBeyondMemory, OfATupleSetGetsNoSmallerArray) {
  for (int const size : LargeSizes) {
    Held<lvrTupleSet> const set(0, 1U, 0U);
    EXPECT_EQ(grantedBy([&] { EXPECT_EQ(set->expand(size), -12); }), 0U) << size;
    EXPECT_EQ(SetLayout::entries(*set), nullptr);
    putEach(*set, {1});
    EXPECT_EQ(entriesOf(*set), "1=10 ");
  }
}

TEST(GrowthBeyondMemory, OfAFilledTupleSetLosesThePairsAndLeavesItUsable) {
  lvArg const value = string("value");
  for (int const size : LargeSizes) {
    Held<lvrTupleSet> const set(2, 1U, 0U);
    set->put(integer(1), value);
    EXPECT_EQ(set->expand(size), -12);
    EXPECT_EQ(countOf(value), 1);
    EXPECT_EQ(set->getSize(), 0);
    putEach(*set, {2});
    EXPECT_EQ(entriesOf(*set), "2=20 ");
  }
}

TEST(GrowthBeyondMemory, ByTheLargestStepLeavesATupleSetEmpty) {
  Held<lvrTupleSet> const set(0, UINT_MAX, 0U);
  EXPECT_EQ(grantedBy([&] { EXPECT_EQ(set->put(integer(1), integer(1), nullptr), 0); }), 0U);
  EXPECT_EQ(set->getSize(), 0);
}

TEST(GrowthBeyondMemoryDeathTest, ByTheLargestStepEndsTheProcessWithAFilledSet) {
  EXPECT_EXIT(
      {
        Held<lvrTupleSet> const set(1, UINT_MAX, 0U);
        putEach(*set, {1, 2});
      },
      ::testing::ExitedWithCode(13), "");
}

TEST(GrowthBeyondMemory, OfANewTupleSetThrows) {
  for (int const size : LargeSizes) {
    EXPECT_EQ(grantedBy([size] {
                EXPECT_THROW(std::make_unique<lvrTupleSet>(size, 1U, 0U), std::bad_alloc);
              }),
              0U)
        << size;
  }
}

TEST(GrowthBeyondMemory, OfASortedListGetsNoSmallerArray) {
  for (int const size : LargeSizes) {
    SortedArray const list(WithDuplicates, {1, 2});
    EXPECT_EQ(grantedBy([&] { EXPECT_EQ(list->expand(size), -12); }), 0U) << size;
    EXPECT_EQ(SortedLayout::array(*list), nullptr);
    EXPECT_TRUE(list->isEmpty());
    list->add(integer(3));
    EXPECT_EQ(elementsOf(*list), "3 ");
  }
}

TEST(GrowthBeyondMemory, ForAListThatClaimsToBeLargeLosesTheElements) {
  for (int const size : LargeSizes) {
    SortedArray const list(WithDuplicates, {1, 2});
    Held<test::OwnSortedList> const other(test::integers({3}), size);
    EXPECT_EQ(grantedBy([&] { EXPECT_TRUE(list->addAll(*other)); }), 0U) << size;
    EXPECT_TRUE(list->isEmpty());
  }
}

TEST(GrowthBeyondMemory, ForAListThatClaimsANegativeSizeIsNone) {
  for (int const size : {-2, -1000, INT_MIN}) {
    SortedArray const list(WithDuplicates, {1, 2});
    Held<test::OwnSortedList> const other(test::integers({3}), size);
    EXPECT_TRUE(list->addAll(*other));
    EXPECT_EQ(elementsOf(*list), "1 2 ");
  }
}

TEST(GrowthBeyondMemory, OfTheBucketsLeavesAHashMapUsable) {
  for (unsigned const size : {1U << 28, (1U << 29) - 2, (1U << 29) - 1, 1U << 29, (1U << 30) + 1,
                              1U << 31, UINT_MAX - 1, UINT_MAX}) {
    Held<lvrHashMap> const map(size);
    EXPECT_EQ(grantedBy([&] { EXPECT_THROW(map->put(integer(1), integer(10)), std::bad_alloc); }),
              0U)
        << size;
    EXPECT_EQ(map->getSize(), 0);
    EXPECT_TRUE(map->get(integer(1)).isNil());
    EXPECT_EQ(map->setHashSize(3), 0);
    map->put(integer(1), integer(10));
    EXPECT_EQ(entriesOf(*map), "1=10 ");
  }
}

TEST(GrowthBeyondMemory, OfTheBucketsOfANegativeNumberIsRefused) {
  for (int const size : {-1, -7, INT_MIN}) {
    lvHashMap const map(size);
    EXPECT_THROW(map->put(integer(1), integer(1)), std::bad_alloc);
    EXPECT_EQ(map->getSize(), 0);
  }
}

// --- Handles and cursors -------------------------------------------------------------------------

TEST(VectorHandle, OfANegativeSizeHoldsAnEmptyVector) {
  for (int const size : {-1, INT_MIN}) {
    lvVector const vector(size);
    EXPECT_EQ(vector->getSize(), 0);
    EXPECT_TRUE(vector->insert(integer(1), -1));
    EXPECT_EQ(vector->at(0).getInt(), 1);
  }
}

TEST(VectorPositions, AtTheEndsOfTheirTypeAreRefused) {
  Held<lvrVector> const vector(3);
  vector->insert(integer(1), -1);
  std::unique_ptr<lviRealListEnumerator> const cursor(vector->getListEnumerator());
  for (int const index : {INT_MIN, -2, 2, 65536, INT_MAX}) {
    EXPECT_FALSE(vector->insert(integer(2), index));
    EXPECT_TRUE(vector->remove(index).isNil());
    EXPECT_TRUE(vector->at(index).isNil());
    EXPECT_FALSE(cursor->gotoIndex(index));
    EXPECT_EQ(cursor->getIndex(), -1);
  }
  EXPECT_EQ(vector->getSize(), 1);
}

TEST(VectorSetAlloced, OfAnyNegativeCapacityFits) {
  for (int const capacity : {-1, -65536, INT_MIN}) {
    Held<lvrVector> const vector(10);
    vector->insert(integer(1), -1);
    EXPECT_EQ(vector->setAlloced(capacity), 1);
    EXPECT_EQ(vector->at(0).getInt(), 1);
  }
}

TEST(VectorAdopting, OfANegativeCapacityIsEmpty) {
  for (int const capacity : {-1, INT_MIN}) {
    Held<lvrVector> const vector(capacity, 3, 2, new lvArg[4]);
    EXPECT_EQ(vector->getSize(), 0);
    EXPECT_TRUE(vector->insert(integer(1), 0));
    EXPECT_EQ(vector->at(0).getInt(), 1);
  }
}

}  // namespace
