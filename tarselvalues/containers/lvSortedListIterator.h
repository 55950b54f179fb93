// lvSortedListIterator: as lvSortedListEnumerator, with the list's iterator.
//
// Threads:   one thread at a time for the list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviSortedList.h"
#include "tarselvalues/core/Export.h"

class TARSELVALUES_API lvSortedListIterator {
 public:
  // Holds a new iterator of `list` at `position`.
  lvSortedListIterator(lviSortedList& list, int position);
  // The same for the sorted list in a cell; holds null if there is none.
  lvSortedListIterator(lvArg const& value, int position);
  ~lvSortedListIterator();

  lvSortedListIterator(lvSortedListIterator const&) = delete;
  lvSortedListIterator& operator=(lvSortedListIterator const&) = delete;

  // Borrows the cursor, or null.
  lviRealSortedListIterator* getCursor() const { return cursor; }
  // As getCursor().
  lviRealSortedListIterator* operator->() const { return cursor; }

 private:
  lviRealSortedListIterator* cursor;
};
