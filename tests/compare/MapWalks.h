// Hash maps of few and of many buckets, with keys of every kind that change meanwhile; tuple sets.
#pragma once

#include <memory>
#include <string>

#include "compare/Walk.h"
#include "support/ChangingKeys.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrTupleSet.h"

namespace compared {

// Nil now and then, which removes.
inline lvArg anyValue(Walk& walk, int number) {
  return walk.choices.oneIn(5) ? lvArg() : test::integer(number);
}

inline std::string sizeAndHash(lvrHashMap const& map) {
  return " size " + std::to_string(map.getSize()) + " hash " + std::to_string(map.hashCode());
}

inline void takeMapStep(Walk& walk, test::ChangingKeys& keys, lvrHashMap& map, int number) {
  test::ChangingKeys::Id const id = walk.choices.below(keys.size());
  std::string const key = std::to_string(id);
  int const choice = walk.choices.below(1000);
  if (choice < 600) {
    lvArg old = test::integer(-1);
    int const status = map.put(keys.cell(id), anyValue(walk, number), &old);
    walk.step("put " + key + " -> " + std::to_string(status) + " old " + test::brief(old) +
              sizeAndHash(map));
  } else if (choice < 980) {
    walk.step("get " + key + " -> " + test::brief(map.get(keys.cell(id))));
  } else if (choice < 996) {
    walk.step("changed, which put " + std::to_string(keys.changeAny()));
  } else if (choice < 998) {
    walk.step("size -> " + std::to_string(map.setHashSize(walk.choices.below(9U))));
  } else {
    walk.step("all: " + test::entriesOf(map));
  }
  if (choice == 999 && walk.choices.oneIn(3)) {
    walk.step("clear -> " +
              std::to_string(walk.choices.oneIn(2) ? map.clear() : map.freeStorage()));
  }
}

inline void walkHashMap(unsigned buckets, test::ChangingKeys::Mix mix, unsigned seed) {
  constexpr int steps = 1500;
  Walk walk("map of " + std::to_string(buckets), seed);
  test::ChangingKeys keys(walk.choices, mix);
  test::Held<lvrHashMap> const map(buckets);
  std::unique_ptr<lviRealMapEnumerator> cursor;
  for (int i = 1; i <= steps; ++i) {
    takeMapStep(walk, keys, *map, i);
    if (cursor == nullptr || walk.choices.oneIn(50)) {
      cursor.reset(map->getEnumerator());
    }
    bool const isThere = cursor->next();
    walk.step("cursor " + std::to_string(isThere ? 1 : 0) + " " + test::brief(cursor->getValue()));
  }
  walk.step("all: " + test::entriesOf(*map));
}

inline void walkTupleSet(unsigned seed) {
  constexpr int steps = 1500;
  Walk walk("tuple set", seed);
  test::Held<lvrTupleSet> const set(8, 8U, 0U);
  for (int i = 1; i <= steps; ++i) {
    lvArg const key = walk.choices.oneIn(2) ? test::integer(walk.choices.below(300))
                                            : test::string(std::to_string(walk.choices.below(300)));
    lvArg old = test::integer(-1);
    std::string const shown = test::brief(key);
    int const status = set->put(key, anyValue(walk, i), &old);
    bool found = false;
    int const position = set->search(key, &found);
    walk.step("put " + shown + " -> " + std::to_string(status) + " old " + test::brief(old) +
              " size " + std::to_string(set->getSize()) + " at " + std::to_string(position) +
              (found ? " is " : " no ") + test::brief(set->get(key)));
  }
  walk.step("all: " + test::entriesOf(*set));
}

inline void walkMaps() {
  unsigned seed = 0;
  for (unsigned const buckets : {0U, 1U, 2U, 7U, 100U}) {
    for (auto const mix : {test::ChangingKeys::Mix::Own, test::ChangingKeys::Mix::OwnAndBorrowed,
                           test::ChangingKeys::Mix::OwnAndForeign}) {
      walkHashMap(buckets, mix, ++seed);
    }
  }
  walkTupleSet(1);
}

}  // namespace compared
