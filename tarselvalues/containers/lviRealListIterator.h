// lviRealListIterator: a list cursor that can remove the element it stands on.
//
// Not every list has one: lviList::getListIterator() of a vector answers null.
//
// Threads:   one thread at a time for the list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviRealListEnumerator.h"

class TARSELVALUES_API lviRealListIterator : public lviRealListEnumerator {
 public:
  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Removes the current element; false if nothing was removed.
  virtual bool remove() = 0;
};
