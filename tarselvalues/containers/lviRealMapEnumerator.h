// lviRealMapEnumerator: a cursor over the entries of a map, as maps make them.
//
// A fresh cursor stands before the first entry: call next() once before the first getKey().
//
// Ownership: belongs to whoever called lviMap::getEnumerator(), who deletes it; the handle
//            lvMapEnumerator does that by itself. Whether it keeps its map alive is the map's to
//            say.
// Threads:   one thread at a time for a map and all its cursors together.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lviRealMapEnumerator {
 public:
  // For derived classes.
  lviRealMapEnumerator() = default;
  lviRealMapEnumerator(lviRealMapEnumerator const&) = delete;
  lviRealMapEnumerator& operator=(lviRealMapEnumerator const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  virtual ~lviRealMapEnumerator();
  // Steps to the next entry; false when there is none.
  virtual bool next() = 0;
  // Returns the current entry's key; nil when the cursor stands on none.
  virtual lvArg getKey() const = 0;
  // Returns the current entry's value; nil when the cursor stands on none.
  virtual lvArg getValue() const = 0;
};
