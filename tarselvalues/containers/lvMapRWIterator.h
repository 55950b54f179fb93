// lvMapRWIterator: as lvMapIterator, under the name that callers of read-write cursors use.
//
// Deliberate: it holds the map's getEnumerator(), never its getRWIterator(), which is null for
// every map of the library.
#pragma once

#include "tarselvalues/containers/lvMapIterator.h"

class TARSELVALUES_API lvMapRWIterator : public lvMapIterator {
 public:
  explicit lvMapRWIterator(lviMap& map) : lvMapIterator(map) {}
};
