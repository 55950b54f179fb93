// lviRealMapIterator: a map cursor that can change and remove the entry it stands on.
//
// Not every map has one: lviMap::getIterator() of a hash map answers null.
//
// Threads:   one thread at a time for the map and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviRealMapEnumerator.h"

class TARSELVALUES_API lviRealMapIterator : public lviRealMapEnumerator {
 public:
  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Replaces the current entry's value; `old`, where not null, receives the previous one.
  // Returns 0 or a negative error number.
  virtual int setValue(lvArg const& value, lvArg* old) = 0;
  // Removes the current entry. Returns 0 or a negative error number.
  virtual int remove() = 0;
};
