// lviList: an ordered list of cells, addressed by position from 0.
//
//   you want                      class                   who frees it
//   the contract                  lviList                 the object behind it, when its last
//                                                         reference goes
//   to hold a list                lvVector, a cell        drops its one reference
//   to walk a list                lvListEnumerator,       deletes the cursor that it holds;
//                                 on the stack            cannot be copied
//   to write a list of your own   lviRealListEnumerator   whoever called getListEnumerator()
//
// Every list promises: a missing position reads as nil and changes nothing; each call takes the
// references it keeps.
// The lists differ in what negative positions mean (the vector knows -1 only), in how elements are
// compared (equiv() here, eq() there), in what remove(value) answers, and in the cursors they
// offer.
//
// Threads: one thread at a time for a list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviRealListEnumerator.h"
#include "tarselvalues/containers/lviRealListIterator.h"
#include "tarselvalues/containers/lviRealListRWIterator.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lviList {
 public:
  // For derived classes.
  lviList() = default;
  lviList(lviList const&) = delete;
  lviList& operator=(lviList const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  virtual ~lviList();
  // Whether the list keeps its elements sorted.
  virtual bool isSorted() const = 0;
  // Inserts before the element at `index`, or appends with an `index` of the size or -1; false if
  // nothing was inserted.
  virtual bool insert(lvArg const& value, int index) = 0;
  // Removes the element at `index` (-1 is the last) and returns it; nil if there is none.
  virtual lvArg remove(int index) = 0;
  // Removes one element equal to `value`. What it answers is the list's own: the vector 1 or 0.
  virtual int remove(lvArg const& value) = 0;
  // Removes all elements. Returns true.
  virtual bool clear() = 0;
  // Appends what `other` holds; false if nothing was appended.
  virtual bool merge(lviList const& other) = 0;
  // Returns a copy of the element at `index`, or nil.
  virtual lvArg at(int index) const = 0;
  // Returns the number of elements.
  virtual int getSize() const = 0;
  // Returns the position of an element equal to `value`, or -1.
  virtual int getElementPos(lvArg const& value) const = 0;
  // Returns a new cursor before the first element, which the caller owns.
  virtual lviRealListEnumerator* getListEnumerator() const = 0;
  // Returns a new cursor that may change the list, which the caller owns, or null if there is none.
  virtual lviRealListIterator* getListIterator() = 0;
  // The same for a cursor that may also insert.
  virtual lviRealListRWIterator* getListRWIterator() = 0;
};
