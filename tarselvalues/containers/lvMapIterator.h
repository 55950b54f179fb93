// lvMapIterator: walks a map that the caller may change otherwise.
//
// Deliberate: it holds the map's getEnumerator(), never its getIterator(), so that it works on a
// hash map, which has no iterator.
//
// Threads:   one thread at a time for the map and all its cursors together.
#pragma once

#include "tarselvalues/containers/lvMapEnumerator.h"

class TARSELVALUES_API lvMapIterator : public lvMapEnumerator {
 public:
  // Holds a new enumerator of `map`.
  explicit lvMapIterator(lviMap& map) : lvMapEnumerator(map) {}
};
