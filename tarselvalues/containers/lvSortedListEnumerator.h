// lvSortedListEnumerator: walks a sorted list; a cursor held on the stack.
//
//   for (lvSortedListEnumerator item(*list, 0); item->hasNext();) { ... item->next() ... }
//
// Ownership: owns the cursor and deletes it. Cannot be copied. The list must outlive it.
// Threads:   one thread at a time for the list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviSortedList.h"
#include "tarselvalues/core/Export.h"

class TARSELVALUES_API lvSortedListEnumerator {
 public:
  // Holds a new enumerator of `list` at `position`.
  lvSortedListEnumerator(lviSortedList const& list, int position);
  // The same for the sorted list in a cell; holds null if there is none.
  lvSortedListEnumerator(lvArg const& value, int position);
  ~lvSortedListEnumerator();

  lvSortedListEnumerator(lvSortedListEnumerator const&) = delete;
  lvSortedListEnumerator& operator=(lvSortedListEnumerator const&) = delete;

  // Borrows the cursor, or null.
  lviRealSortedListEnumerator* getCursor() const { return cursor; }
  // As getCursor().
  lviRealSortedListEnumerator* operator->() const { return cursor; }

 private:
  lviRealSortedListEnumerator* cursor;
};
