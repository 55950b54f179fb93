// Reads maps whole, by their cursors.
#pragma once

#include <string>

#include "support/Objects.h"
#include "tarselvalues/containers/lvMapEnumerator.h"
#include "tarselvalues/containers/lvrHashMap.h"

namespace test {

// What a cursor still has before it, "1=10 2=20 ".
inline std::string restOf(lviRealMapEnumerator& cursor) {
  std::string entries;
  while (cursor.next()) {
    entries += brief(cursor.getKey()) + "=" + brief(cursor.getValue()) + " ";
  }
  return entries;
}

// The entries in the map's own order.
inline std::string entriesOf(lviMap const& map) {
  lvMapEnumerator const cursor(map);
  return restOf(*cursor.getCursor());
}

// The keys in the map's own order, "1 2 ".
inline std::string keysOf(lviMap const& map) {
  std::string keys;
  for (lvMapEnumerator entry(map); entry->next();) {
    keys += brief(entry->getKey()) + " ";
  }
  return keys;
}

// Whether the process has inserted an even number of entries into its hash maps, after which the
// next one goes to the tail of its chain. Finds out with two entries of its own.
inline bool insertionsAreEven() {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(1));
  map->put(integer(2), integer(2));
  return keysOf(*map) == "2 1 ";
}

// Makes the next new entry of any hash map go to the tail of its chain, and the one after to the
// head.
inline void startAlternation() {
  if (!insertionsAreEven()) {
    Held<lvrHashMap>(1U)->put(integer(1), integer(1));
  }
}

}  // namespace test
