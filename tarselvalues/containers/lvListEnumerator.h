// lvListEnumerator: walks a list; a cursor held on the stack.
//
//   for (lvListEnumerator item(*list.getList()); item->gotoNext();) { ... item->getValue() ... }
//
// Ownership: owns the cursor and deletes it. Cannot be copied.
// Threads:   one thread at a time for the list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/core/Export.h"

class TARSELVALUES_API lvListEnumerator {
 public:
  // Holds a new enumerator of `list`.
  explicit lvListEnumerator(lviList const& list) : cursor(list.getListEnumerator()) {}
  ~lvListEnumerator() { delete cursor; }

  lvListEnumerator(lvListEnumerator const&) = delete;
  lvListEnumerator& operator=(lvListEnumerator const&) = delete;

  // Borrows the cursor; null if the list gave none.
  lviRealListEnumerator* getCursor() const { return cursor; }
  // As getCursor().
  lviRealListEnumerator* operator->() const { return cursor; }

 protected:
  // For the derived handles. Deliberate: the cursor held before is not deleted.
  void replaceCursor(lviRealListEnumerator* other) { cursor = other; }

 private:
  lviRealListEnumerator* cursor;
};
