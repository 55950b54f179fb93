// lviSortedList: cells in ascending order of lvArg::compareTo().
//
//   you want                       class                         who frees it
//   the contract                   lviSortedList                 drops its last reference
//   to hold a sorted list          lvSortedList, a cell          drops its one reference
//   to walk one                    lvSortedListEnumerator,       deletes the cursor that it holds;
//                                  on the stack                  cannot be copied
//   to write one of your own       lviRealSortedListEnumerator   whoever asked for the cursor
//
// It is a counted object by itself, unlike the other container interfaces.
// Threads: one thread at a time for a list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviRealSortedListEnumerator.h"
#include "tarselvalues/containers/lviRealSortedListIterator.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

class TARSELVALUES_API lviSortedList : public lvReferencable {
 public:
  // For derived classes.
  lviSortedList();
  ~lviSortedList() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Returns the number of elements.
  virtual int getSize() const = 0;
  // Takes in an element. Returns 0.
  virtual int add(lvArg const& value) = 0;
  // Takes in all elements of `other`. Returns true.
  virtual bool addAll(lviSortedList const& other) = 0;
  // Removes all elements.
  virtual void clear() = 0;
  // Whether an element is equal to `value`.
  virtual bool contains(lvArg const& value) const = 0;
  // Whether the list contains each element of `other`.
  virtual bool containsAll(lviSortedList const& other) const = 0;
  // Whether both lists have equal elements.
  virtual bool equals(lviSortedList const& other) const = 0;
  // Returns a copy of the element at a position, or nil.
  virtual lvArg get(int index) const = 0;
  // Returns the position of the first equal element; -1 if there is none.
  virtual int indexOf(lvArg const& value) const = 0;
  // Whether there are no elements.
  virtual bool isEmpty() const = 0;
  // Returns a new iterator at `position`, which the caller owns.
  virtual lviRealSortedListIterator* getSortedListIterator(int position) = 0;
  // Returns a new enumerator at `position`, which the caller owns.
  virtual lviRealSortedListEnumerator* getSortedListEnumerator(int position) const = 0;
  // Returns the position of the last equal element; -1 if there is none.
  virtual int lastIndexOf(lvArg const& value) const = 0;
  // Reserved: returns 0, with no effect.
  virtual int reserved14() = 0;
  // Reserved: returns 0, with no effect.
  virtual int reserved15() = 0;
  // Reserved: returns nil, with no effect.
  virtual lvArg reserved16() = 0;
  // Reserved: returns nil, with no effect.
  virtual lvArg reserved17() = 0;
};
