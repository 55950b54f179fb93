// lvMapEnumerator: walks a map; a cursor held on the stack.
//
//   for (lvMapEnumerator entry(*map.getMap()); entry->next();) { ... entry->getKey() ... }
//
// Ownership: owns the cursor and deletes it. Cannot be copied.
// Threads:   one thread at a time for the map and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/core/Export.h"

class TARSELVALUES_API lvMapEnumerator {
 public:
  // Holds a new enumerator of `map`.
  explicit lvMapEnumerator(lviMap const& map) : cursor(map.getEnumerator()) {}
  ~lvMapEnumerator() { delete cursor; }

  lvMapEnumerator(lvMapEnumerator const&) = delete;
  lvMapEnumerator& operator=(lvMapEnumerator const&) = delete;

  // Borrows the cursor; null if the map gave none.
  lviRealMapEnumerator* getCursor() const { return cursor; }
  // As getCursor().
  lviRealMapEnumerator* operator->() const { return cursor; }

 private:
  lviRealMapEnumerator* cursor;
};
