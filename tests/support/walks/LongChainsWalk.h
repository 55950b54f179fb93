// A walk of a hash map with long chains of keys that change, beside a slow model that walks every
// chain from its head.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "support/ChangingKeys.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "support/walks/Choices.h"
#include "tarselvalues/containers/lvrHashMap.h"

namespace test {

// The map, by the numbers of the keys. Values are numbers; 0 stands for nil.
class LongChainsModel {
 public:
  using Id = ChangingKeys::Id;
  struct Entry {
    Id key;
    int value;
  };

  LongChainsModel(ChangingKeys const& all, unsigned buckets) : keys(all), chains(buckets) {}

  // The first entry in the key's chain that is found by it, or null.
  Entry const* find(Id key) const {
    for (Entry const& entry : chains[chainOf(key)]) {
      if (keys.isFoundBy(entry.key, key)) {
        return &entry;
      }
    }
    return nullptr;
  }

  void put(Id key, int value) {
    std::vector<Entry>& chain = chains[chainOf(key)];
    Entry const* const found = find(key);
    if (found == nullptr && value != 0) {
      chain.insert(++insertions % 2 == 0 ? chain.begin() : chain.end(), {key, value});
      ++count;
      sum += HashSumFactor * keys.hash(key);
    } else if (found != nullptr && value == 0) {
      chain.erase(chain.begin() + (found - chain.data()));
      --count;
      sum -= HashSumFactor * keys.hash(key);  // Of the key that was asked for.
    } else if (found != nullptr) {
      chain[static_cast<std::size_t>(found - chain.data())].value = value;
    }
  }

  void clear() {
    for (std::vector<Entry>& chain : chains) {
      chain.clear();
    }
    count = 0;
    sum = EmptyHashSum;
  }

  void setHashSize(unsigned size) { chains.assign(size, {}); }

  std::vector<Entry> entries() const {
    std::vector<Entry> all;
    for (std::vector<Entry> const& chain : chains) {
      all.insert(all.end(), chain.begin(), chain.end());
    }
    return all;
  }

  int size() const { return count; }
  unsigned hash() const { return sum; }

  // For entries that were put into other maps.
  void skipInsertions(int number) { insertions += static_cast<unsigned>(number); }

 private:
  static constexpr unsigned EmptyHashSum = 0x8386a731;
  static constexpr unsigned HashSumFactor = 9563891;

  std::size_t chainOf(Id key) const { return keys.hash(key) % chains.size(); }

  ChangingKeys const& keys;
  std::vector<std::vector<Entry>> chains;
  unsigned insertions = 0;
  int count = 0;
  unsigned sum = EmptyHashSum;
};

class LongChainsWalk {
 public:
  LongChainsWalk(Choices& source, unsigned buckets, ChangingKeys::Mix mix)
      : choices(source), keys(source, mix), map(buckets), model(keys, buckets) {
    startAlternation();
  }

  void step() {
    if (left == 0) {
      startPhase();
    }
    --left;
    if (changesPerThousand > choices.below(1000)) {
      model.skipInsertions(keys.changeAny());
    } else if (choices.oneIn(3)) {
      get();
    } else {
      put();
    }
  }

  // Every entry in its order, the size and the hash.
  void compare() {
    std::vector<LongChainsModel::Entry> const expected = model.entries();
    std::size_t read = 0;
    for (lvMapEnumerator entry(*map); entry->next(); ++read) {
      ASSERT_LT(read, expected.size());
      ASSERT_TRUE(entry->getKey().eq(keys.stored(expected[read].key))) << "entry " << read;
      ASSERT_EQ(entry->getValue().getInt(), expected[read].value) << "entry " << read;
    }
    ASSERT_EQ(read, expected.size());
    ASSERT_EQ(map->getSize(), model.size());
    ASSERT_EQ(map->hashCode(), model.hash());
  }

  // The largest size the map has had.
  int largest() const { return most; }

 private:
  using Id = ChangingKeys::Id;

  // Some phases leave the keys alone, in some a key changes at every other step; in some the map
  // grows, in some it shrinks.
  void startPhase() {
    left = 200 + choices.below(400);
    changesPerThousand = choices.pick<int>({0, 0, 3, 30, 500});
    removals = choices.pick<unsigned>({2, 10, 10, 10});
    if (choices.oneIn(15)) {
      startAnew();
    }
  }

  void startAnew() {
    ASSERT_EQ(choices.oneIn(2) ? map->clear() : map->freeStorage(), 0);
    model.clear();
    if (choices.oneIn(2)) {
      unsigned const size = 1 + choices.below(7U);
      ASSERT_EQ(map->setHashSize(size), 0);
      model.setHashSize(size);
    }
  }

  Id anyKey() { return choices.below(keys.size()); }

  void put() {
    Id const key = anyKey();
    int const value = choices.oneIn(removals) ? 0 : ++values;
    LongChainsModel::Entry const* const before = model.find(key);
    lvArg old = integer(-999);
    ASSERT_EQ(map->put(keys.cell(key), value != 0 ? integer(value) : lvArg(), &old), 0);
    ASSERT_EQ(old.getInt(), before != nullptr ? before->value : -999) << "key " << key;
    model.put(key, value);
    ASSERT_EQ(map->getSize(), model.size());
    ASSERT_EQ(map->hashCode(), model.hash());
    most = std::max(most, model.size());
  }

  void get() {
    Id const key = anyKey();
    LongChainsModel::Entry const* const entry = model.find(key);
    lvArg const value = map->get(keys.cell(key));
    ASSERT_EQ(value.isNil(), entry == nullptr) << "key " << key;
    if (entry != nullptr) {
      ASSERT_EQ(value.getInt(), entry->value) << "key " << key;
    }
  }

  Choices& choices;
  ChangingKeys keys;
  Held<lvrHashMap> map;
  LongChainsModel model;
  int left = 0;  // of this phase
  int changesPerThousand = 0;
  unsigned removals = 1;  // one in so many puts
  int values = 0;
  int most = 0;
};

}  // namespace test
