// Hash maps: the same work for everyone who has them.
//
// A `Map` is made empty and has the types Key and Value, static makeKey() and makeValue(), put(),
// which stores a copy of a value, and get(), which returns one.
#pragma once

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Samples.h"

namespace bench {

// What the keys are, and how works with them are called.
struct Keys {
  char const* name;
  int factor;                         // Keys are integers, by this factor,
  std::string (*textOf)(int number);  // or texts.
  bool interned;
};

constexpr Keys Integers = {"integers", 1, nullptr, false};
constexpr Keys MultiplesOfSeven = {"multiples of 7", 7, nullptr, false};
constexpr Keys TextKeys = {"strings", 0, nameOf, false};
constexpr Keys InternedKeys = {"interned strings", 0, nameOf, true};
constexpr Keys KeysOfOneHash = {"strings of one hash", 0, sameHashOf, false};
constexpr Keys InternedKeysOfOneHash = {"interned strings of one hash", 0, sameHashOf, true};

// How many entries the maps have.
constexpr int EntryCounts[] = {100, 1000, 10000, 100000};

template <class Map>
std::vector<typename Map::Key> keysOf(Keys const& keys, std::vector<int> const& numbers) {
  std::vector<typename Map::Key> made;
  made.reserve(numbers.size());
  for (int const number : numbers) {
    made.push_back(Map::makeKey(keys, number));
  }
  return made;
}

// A map that is kept from one benchmark to the next.
template <class Map>
class KeptMap {
 public:
  // Returns the map of the first `count` keys, or null without the patience.
  static Map* bring(Keys const& keys, int count) {
    if (&keys != kind || count != size) {
      kind = &keys;
      size = count;
      build();
    }
    return map.get();
  }

 private:
  static void build() {
    map = std::make_unique<Map>();
    Patience patience;
    for (int i = 0; i < size; ++i) {
      if (patience.isOver()) {
        map = nullptr;
        return;
      }
      map->put(Map::makeKey(*kind, i), Map::makeValue("the value of a key"));
    }
  }

  inline static Keys const* kind = nullptr;
  inline static int size = 0;
  inline static std::unique_ptr<Map> map;
};

template <class Map>
void getEach(benchmark::State& state, Keys const& keys, std::vector<int> const& numbers) {
  Map const* const map = KeptMap<Map>::bring(keys, sizeOf(state));
  if (map == nullptr) {
    state.SkipWithError(Patience::Message);
    return;
  }
  std::vector<typename Map::Key> const lookedUp = keysOf<Map>(keys, numbers);
  for (auto _ : state) {
    for (typename Map::Key const& key : lookedUp) {
      typename Map::Value value = map->get(key);
      benchmark::DoNotOptimize(value);
    }
  }
  setWorkPerIteration(state, lookedUp.size());
}

template <class Map>
void getSame(benchmark::State& state, Keys const* keys) {
  getEach<Map>(state, *keys, fewOf(sizeOf(state)));
}

template <class Map>
void getAny(benchmark::State& state, Keys const* keys) {
  getEach<Map>(state, *keys, allOf(sizeOf(state)));
}

// Puts one value and another in turn under keys that are there.
template <class Map>
void putSame(benchmark::State& state, Keys const* keys) {
  Map* const map = KeptMap<Map>::bring(*keys, sizeOf(state));
  if (map == nullptr) {
    state.SkipWithError(Patience::Message);
    return;
  }
  std::vector<typename Map::Key> const changed = keysOf<Map>(*keys, fewOf(sizeOf(state)));
  typename Map::Value const values[] = {Map::makeValue("one"), Map::makeValue("another")};
  Turns turns(std::size(values));
  for (auto _ : state) {
    typename Map::Value const& value = values[turns.next()];
    for (typename Map::Key const& key : changed) {
      map->put(key, value);
    }
  }
  setWorkPerIteration(state, changed.size());
}

// Makes a map entry by entry, and releases it.
template <class Map>
void build(benchmark::State& state, Keys const* keys) {
  int const size = sizeOf(state);
  if (KeptMap<Map>::bring(*keys, size) == nullptr) {
    state.SkipWithError(Patience::Message);
    return;
  }
  std::vector<typename Map::Key> const put = keysOf<Map>(*keys, allOf(size));
  typename Map::Value const value = Map::makeValue("one");
  for (auto _ : state) {
    Map map;
    for (typename Map::Key const& key : put) {
      map.put(key, value);
    }
  }
  setWorkPerIteration(state, put.size());
}

inline std::string getAnyWork(Keys const& keys) {
  return std::string("get, any key, ") + keys.name;
}

template <class Map>
void addMap(std::string const& who, Keys const& keys) {
  std::string const suffix = std::string(", ") + keys.name;
  for (int const entries : EntryCounts) {
    add("get, the same 100 keys" + suffix, who, getSame<Map>, &keys)->Arg(entries);
    add(getAnyWork(keys), who, getAny<Map>, &keys)->Arg(entries);
    add("put, the same 100 keys" + suffix, who, putSame<Map>, &keys)->Arg(entries);
    add("build a map and release it" + suffix, who, build<Map>, &keys)->Arg(entries);
  }
}

}  // namespace bench
