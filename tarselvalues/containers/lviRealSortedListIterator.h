// lviRealSortedListIterator: a sorted-list cursor with operations that may change the list.
//
// In the library's own list they do nothing: a sorted list is changed through the list itself.
//
// Threads:   one thread at a time for the list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviRealSortedListEnumerator.h"

class TARSELVALUES_API lviRealSortedListIterator : public lviRealSortedListEnumerator {
 public:
  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Inserts at the cursor, in lists where that may be.
  virtual void add(lvArg const& value) = 0;
  // Removes the current element, in lists where that may be.
  virtual void remove() = 0;
  // Replaces the current element, in lists where that may be.
  virtual void set(lvArg const& value) = 0;
};
