// lviRealSortedListIterator: a sorted-list cursor with operations that may change the list.
//
// In the library's own list they do nothing: a sorted list is changed through the list itself.
#pragma once

#include "tarselvalues/containers/lviRealSortedListEnumerator.h"

class TARSELVALUES_API lviRealSortedListIterator : public lviRealSortedListEnumerator {
 public:
  // Declaration order is the binary interface: append only, and in derived classes only.

  virtual void add(lvArg const& value) = 0;
  virtual void remove() = 0;
  virtual void set(lvArg const& value) = 0;
};
