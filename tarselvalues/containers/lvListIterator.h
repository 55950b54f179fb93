// lvListIterator: holds a list's removing cursor, or null where the list has none (a vector).
//
// Deliberate: making one also makes an enumerator of the list, which is never deleted, and so the
// list is never freed. Long-running programs hold getListIterator() in a pointer of their own.
//
// Threads:   one thread at a time for the list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lvListEnumerator.h"

class TARSELVALUES_API lvListIterator : public lvListEnumerator {
 public:
  // Holds a new iterator of `list`.
  explicit lvListIterator(lviList& list) : lvListEnumerator(list) {
    replaceCursor(list.getListIterator());  // Leaks the enumerator, deliberately.
  }

  // Borrows the cursor; null if the list has none.
  lviRealListIterator* getCursor() const {
    return static_cast<lviRealListIterator*>(lvListEnumerator::getCursor());
  }
  // As getCursor().
  lviRealListIterator* operator->() const { return getCursor(); }
};
