// lvHashMap: a handle to a hash map, which is itself a cell.
//
// Ownership: holds one counted reference, or is nil.
// Threads:   one thread at a time per handle.
#pragma once

#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lvHashMap : public lvArg {
 public:
  // Makes a new lvrHashMap with `size` buckets and holds it.
  explicit lvHashMap(int size);

  // Shares what `other` holds if its tag is MapType (any object of that tag, stacks included);
  // nil otherwise.
  lvHashMap(lvArg const& other);  // NOLINT(google-explicit-constructor)

  // Borrows the map; null when the handle is nil or what it holds has no map interface.
  // Costs a run-time type check, which is quick for the library's own maps.
  lviMap* getMap() const;
  // As getMap().
  lviMap* operator->() const { return getMap(); }
};
