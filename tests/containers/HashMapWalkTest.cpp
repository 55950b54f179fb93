// Random walks of a hash map beside a slow model that keeps every chain as a plain list.

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/CellPool.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvrHashMap.h"

namespace {

using test::CellPool;
using test::Held;
using Id = CellPool::Id;

constexpr int Steps = 20000;

// The map, by the numbers of the cells in the pool.
class MapModel {
 public:
  struct Entry {
    Id key;
    Id value;
  };

  MapModel(CellPool const& pool, unsigned buckets) : pool_(pool), chains_(buckets) {}

  // The entry with an equal key, or null.
  Entry* find(Id key) {
    for (Entry& entry : chainOf(key)) {
      if (pool_.areEqual(entry.key, key)) {
        return &entry;
      }
    }
    return nullptr;
  }

  void put(Id key, Id value) {
    Entry* const entry = find(key);
    std::vector<Entry>& chain = chainOf(key);
    if (entry == nullptr && value != CellPool::Nil) {
      chain.insert(++insertions_ % 2 == 0 ? chain.begin() : chain.end(), {key, value});
    } else if (entry != nullptr && value == CellPool::Nil) {
      chain.erase(chain.begin() + (entry - chain.data()));
    } else if (entry != nullptr) {
      entry->value = value;
    }
  }

  void clear() {
    for (std::vector<Entry>& chain : chains_) {
      chain.clear();
    }
  }

  int setHashSize(unsigned size) {
    if (size == chains_.size()) {
      return 0;
    }
    if (!entries().empty()) {
      return -16;
    }
    chains_.assign(size != 0 ? size : 7, {});
    return 0;
  }

  std::vector<Entry> entries() const {
    std::vector<Entry> all;
    for (std::vector<Entry> const& chain : chains_) {
      all.insert(all.end(), chain.begin(), chain.end());
    }
    return all;
  }

  unsigned hash() const {
    unsigned sum = 0x8386a731;
    for (Entry const& entry : entries()) {
      sum += 9563891 * pool_.hash(entry.key);
    }
    return sum;
  }

  // For an odd number of entries that were put into other maps.
  void skipInsertion() { ++insertions_; }

 private:
  std::vector<Entry>& chainOf(Id key) { return chains_[pool_.hash(key) % chains_.size()]; }

  CellPool const& pool_;
  std::vector<std::vector<Entry>> chains_;
  unsigned insertions_ = 0;
};

class HashMapWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  HashMapWalk() : random(GetParam()), map(5U), model(pool, 5) { test::startAlternation(); }

  unsigned anyBelow(unsigned limit) { return static_cast<unsigned>(random() % limit); }
  bool oneIn(unsigned number) { return anyBelow(number) == 0; }
  Id anyCell() { return random() % pool.size(); }
  // Nil often enough that maps stay small.
  Id anyValue() { return oneIn(3) ? CellPool::Nil : anyCell(); }

  void putAny() {
    Id const key = anyCell();
    Id const value = anyValue();
    ASSERT_EQ(map->put(pool.cell(key), pool.cell(value)), 0);
    model.put(key, value);
  }

  void putAndReadOld() {
    Id const key = anyCell();
    Id const value = anyValue();
    MapModel::Entry const* const before = model.find(key);
    lvArg old = test::integer(-999);
    ASSERT_EQ(map->put(pool.cell(key), pool.cell(value), &old), 0);
    if (before != nullptr) {
      ASSERT_EQ(pool.idOf(old), before->value);
    } else {
      ASSERT_EQ(old.getInt(), -999);
    }
    model.put(key, value);
  }

  void getAny() {
    Id const key = anyCell();
    MapModel::Entry const* const entry = model.find(key);
    ASSERT_EQ(pool.idOf(map->get(pool.cell(key))), entry != nullptr ? entry->value : CellPool::Nil);
  }

  void setHashSizeToAny() {
    unsigned const size = anyBelow(9);
    ASSERT_EQ(map->setHashSize(size), model.setHashSize(size));
  }

  void clearBoth() {
    ASSERT_EQ(oneIn(2) ? map->clear() : map->freeStorage(), 0);
    model.clear();
  }

  void putIntoAnotherMap() {
    Held<lvrHashMap>(1U)->put(test::integer(1), test::integer(1));
    model.skipInsertion();
  }

  void step() {
    unsigned const choice = anyBelow(100);
    if (choice < 50) {
      putAndReadOld();
    } else if (choice < 70) {
      putAny();
    } else if (choice < 90) {
      getAny();
    } else if (choice < 95) {
      setHashSizeToAny();
    } else if (choice < 98) {
      putIntoAnotherMap();
    } else {
      clearBoth();
    }
  }

  // Every entry in its order, the size and the hash.
  void compare() {
    std::vector<MapModel::Entry> const expected = model.entries();
    std::vector<int> held(pool.size(), 0);
    std::size_t met = 0;
    for (lvMapEnumerator entry(*map); entry->next(); ++met) {
      ASSERT_LT(met, expected.size());
      ASSERT_EQ(pool.idOf(entry->getKey()), expected[met].key);
      ASSERT_EQ(pool.idOf(entry->getValue()), expected[met].value);
      ++held[expected[met].key];
      ++held[expected[met].value];
    }
    ASSERT_EQ(met, expected.size());
    ASSERT_EQ(map->getSize(), static_cast<int>(met));
    ASSERT_EQ(map->hashCode(), model.hash());
    for (Id id = 0; id < pool.size(); ++id) {
      if (pool.cell(id).getReferencable() != nullptr) {
        ASSERT_EQ(pool.holders(id), held[id]) << "cell " << id;
      }
    }
  }

  CellPool pool;
  std::mt19937 random;
  Held<lvrHashMap> map;
  MapModel model;
};

TEST_P(HashMapWalk, AgreesWithTheModel) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(step());
    ASSERT_NO_FATAL_FAILURE(compare());
  }
}

// What cursors yield while the map changes is open, but it must be an entry of the map or nothing.
TEST_P(HashMapWalk, IsSafeForCursorsThatAreUsedAllTheTime) {
  std::vector<std::unique_ptr<lviRealMapEnumerator>> cursors(5);
  int met = 0;
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(step());
    std::unique_ptr<lviRealMapEnumerator>& cursor = cursors[anyBelow(5)];
    if (cursor == nullptr || oneIn(20)) {
      cursor.reset(map->getEnumerator());
    }
    if (oneIn(2)) {
      cursor->next();
    }
    lvArg const value = cursor->getValue();
    if (!value.isNil()) {
      ASSERT_TRUE(map->get(cursor->getKey()).eq(value));
      ++met;
    }
  }
  EXPECT_GT(met, Steps / 10);
  cursors.clear();
  EXPECT_EQ(test::countOf(*map), 1);
  ASSERT_NO_FATAL_FAILURE(compare());
}

INSTANTIATE_TEST_SUITE_P(Seeds, HashMapWalk, ::testing::Values(1U, 20260U, 987654321U));

}  // namespace
