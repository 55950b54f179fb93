// lvMapRWIterator: as lvMapIterator, under the name that callers of read-write cursors use.
//
// Deliberate: it holds the map's getEnumerator(), never its getRWIterator(), which is null for
// every map of the library.
//
// Threads:   one thread at a time for the map and all its cursors together.
#pragma once

#include "tarselvalues/containers/lvMapIterator.h"

class TARSELVALUES_API lvMapRWIterator : public lvMapIterator {
 public:
  // Holds a new enumerator of `map`.
  explicit lvMapRWIterator(lviMap& map) : lvMapIterator(map) {}
};
