// lvListRWIterator: holds a list's inserting cursor, or null where the list has none (a vector).
//
// Deliberate: making one also makes an enumerator and an iterator of the list, which are never
// deleted, and so the list is never freed. Long-running programs hold getListRWIterator() in a
// pointer of their own.
//
// Threads:   one thread at a time for the list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lvListIterator.h"

class TARSELVALUES_API lvListRWIterator : public lvListIterator {
 public:
  // Holds a new read-write iterator of `list`.
  explicit lvListRWIterator(lviList& list) : lvListIterator(list) {
    replaceCursor(list.getListRWIterator());  // Leaks the iterator, deliberately.
  }

  // Borrows the cursor; null if the list has none.
  lviRealListRWIterator* getCursor() const {
    return static_cast<lviRealListRWIterator*>(lvListEnumerator::getCursor());
  }
  // As getCursor().
  lviRealListRWIterator* operator->() const { return getCursor(); }
};
