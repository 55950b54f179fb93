// lvVector: a handle to a list, which is itself a cell.
//
// Ownership: holds one counted reference, or is nil.
// Threads:   one thread at a time per handle.
#pragma once

#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lvVector : public lvArg {
 public:
  // Makes a new lvrVector with room for `size` elements and holds it.
  explicit lvVector(int size);

  // Shares what `other` holds if its tag is ListType (any list, not only vectors); nil otherwise.
  lvVector(lvArg const& other);  // NOLINT(google-explicit-constructor)

  // Borrows the list; null when the handle is nil or what it holds has no list interface.
  // Costs a run-time type check, which is quick for lvrVector and lvrDLList.
  lviList* getList() const;
  // As getList().
  lviList* operator->() const { return getList(); }
};
