// lviRealSortedListEnumerator: a cursor over a sorted list, as sorted lists make them.
//
// Ownership: belongs to whoever called lviSortedList::getSortedListEnumerator(), who deletes it;
//            the handle lvSortedListEnumerator does that by itself. It must not outlive its list.
// Threads:   one thread at a time for a list and all its cursors together.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lviRealSortedListEnumerator {
 public:
  // For derived classes.
  lviRealSortedListEnumerator() = default;
  lviRealSortedListEnumerator(lviRealSortedListEnumerator const&) = delete;
  lviRealSortedListEnumerator& operator=(lviRealSortedListEnumerator const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Whether there is an element for next().
  virtual bool hasNext() const = 0;
  // Whether there is an element for previous().
  virtual bool hasPrevious() const = 0;
  // Steps forward and returns the element there; nil, without a step, at the end.
  virtual lvArg next() = 0;
  // Returns the position that next() would step to; the number of elements if there is none.
  virtual int nextIndex() const = 0;
  // Steps back and returns the element there; nil at the start.
  virtual lvArg previous() = 0;
  // Returns the position that previous() would step to; -1 if there is none.
  virtual int previousIndex() const = 0;
  virtual ~lviRealSortedListEnumerator();
};
