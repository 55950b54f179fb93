// lvSortedList: a handle to a sorted list, which is itself a cell.
//
// Ownership: holds one counted reference, or is nil.
// Threads:   one thread at a time per handle.
#pragma once

#include "tarselvalues/containers/lviSortedList.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lvSortedList : public lvArg {
 public:
  // Shares what `value` holds if its tag is ListType and the object is a sorted list; nil
  // otherwise.
  lvSortedList(lvArg const& value);  // NOLINT(google-explicit-constructor)

  // Takes a reference to `object` if that is a sorted list; nil otherwise.
  lvSortedList(lvReferencable const& object);  // NOLINT(google-explicit-constructor)

  // Borrows the list; null when the handle is nil or what it holds is no sorted list.
  // Costs a run-time type check.
  lviSortedList* getSortedList() const;
  // As getSortedList().
  lviSortedList* operator->() const { return getSortedList(); }
};
