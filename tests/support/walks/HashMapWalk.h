// A walk of a hash map beside a slow model that keeps every chain as a plain list.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "support/CellPool.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "support/walks/Choices.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvrHashMap.h"

namespace test {

// The map, by the numbers of the cells in the pool.
class HashMapModel {
 public:
  using Id = CellPool::Id;
  struct Entry {
    Id key;
    Id value;
  };

  HashMapModel(CellPool const& pool, unsigned buckets) : pool_(pool), chains_(buckets) {}

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

class HashMapWalk {
 public:
  explicit HashMapWalk(Choices& source) : choices(source), map(5U), model(pool, 5) {
    startAlternation();
  }

  void step() {
    int const choice = choices.below(100);
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
    std::vector<HashMapModel::Entry> const expected = model.entries();
    std::vector<int> held(pool.size(), 0);
    std::size_t read = 0;
    for (lvMapEnumerator entry(*map); entry->next(); ++read) {
      ASSERT_LT(read, expected.size());
      ASSERT_EQ(pool.idOf(entry->getKey()), expected[read].key);
      ASSERT_EQ(pool.idOf(entry->getValue()), expected[read].value);
      ++held[expected[read].key];
      ++held[expected[read].value];
    }
    ASSERT_EQ(read, expected.size());
    ASSERT_EQ(map->getSize(), static_cast<int>(read));
    ASSERT_EQ(map->hashCode(), model.hash());
    for (Id id = 0; id < pool.size(); ++id) {
      if (pool.cell(id).getReferencable() != nullptr) {
        ASSERT_EQ(pool.holders(id), held[id]) << "cell " << id;
      }
    }
  }

  // What cursors yield while the map changes is open, but it must be an entry of the map or
  // nothing.
  void useACursor() {
    std::unique_ptr<lviRealMapEnumerator>& cursor = cursors[choices.below(cursors.size())];
    if (cursor == nullptr || choices.oneIn(20)) {
      cursor.reset(map->getEnumerator());
    }
    if (choices.oneIn(2)) {
      cursor->next();
    }
    lvArg const value = cursor->getValue();
    if (!value.isNil()) {
      ASSERT_TRUE(map->get(cursor->getKey()).eq(value));
      ++met;
    }
  }

  // How many entries the cursors have met.
  int entriesMet() const { return met; }

  void dropCursors() {
    cursors = {};
    ASSERT_EQ(countOf(*map), 1);
  }

 private:
  using Id = CellPool::Id;

  Id anyCell() { return choices.below(pool.size()); }
  // Nil often enough that maps stay small.
  Id anyValue() { return choices.oneIn(3) ? CellPool::Nil : anyCell(); }

  void putAny() {
    Id const key = anyCell();
    Id const value = anyValue();
    ASSERT_EQ(map->put(pool.cell(key), pool.cell(value)), 0);
    model.put(key, value);
  }

  void putAndReadOld() {
    Id const key = anyCell();
    Id const value = anyValue();
    HashMapModel::Entry const* const before = model.find(key);
    lvArg old = integer(-999);
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
    HashMapModel::Entry const* const entry = model.find(key);
    ASSERT_EQ(pool.idOf(map->get(pool.cell(key))), entry != nullptr ? entry->value : CellPool::Nil);
  }

  void setHashSizeToAny() {
    unsigned const size = choices.below(9U);
    ASSERT_EQ(map->setHashSize(size), model.setHashSize(size));
  }

  void clearBoth() {
    ASSERT_EQ(choices.oneIn(2) ? map->clear() : map->freeStorage(), 0);
    model.clear();
  }

  void putIntoAnotherMap() {
    Held<lvrHashMap>(1U)->put(integer(1), integer(1));
    model.skipInsertion();
  }

  Choices& choices;
  CellPool pool;
  Held<lvrHashMap> map;
  HashMapModel model;
  std::array<std::unique_ptr<lviRealMapEnumerator>, 5> cursors;
  int met = 0;
};

}  // namespace test
