// lvMapIterator: walks a map that the caller may change otherwise.
//
// Deliberate: it holds the map's getEnumerator(), never its getIterator(), so that it works on a
// hash map, which has no iterator.
#pragma once

#include "tarselvalues/containers/lvMapEnumerator.h"

class TARSELVALUES_API lvMapIterator : public lvMapEnumerator {
 public:
  explicit lvMapIterator(lviMap& map) : lvMapEnumerator(map) {}
};
