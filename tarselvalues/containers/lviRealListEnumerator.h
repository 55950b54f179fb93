// lviRealListEnumerator: a cursor over a list, as lists make them.
//
// A fresh cursor stands at position -1, before the first element: step before the first getValue().
//
// Ownership: belongs to whoever called lviList::getListEnumerator(), who deletes it; the handle
//            lvListEnumerator does that by itself. A cursor keeps its list alive.
// Threads:   one thread at a time for a list and all its cursors together.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lviRealListEnumerator {
 public:
  // Answers whether an element is the one looked for; `ctx` is the caller's own.
  using Predicate = bool(lvArg const& value, void* ctx);

  // For derived classes.
  lviRealListEnumerator() = default;
  lviRealListEnumerator(lviRealListEnumerator const&) = delete;
  lviRealListEnumerator& operator=(lviRealListEnumerator const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Drops the cursor's reference on its list.
  virtual ~lviRealListEnumerator();
  // Steps forward one element; false at the end.
  virtual bool gotoNext() = 0;
  // Steps forward until `pred` answers true; false at the end. The element under the cursor is not
  // tested before the first step.
  virtual bool gotoNextMatching(Predicate* pred, void* ctx) = 0;
  // Steps back one element; false at the start.
  virtual bool gotoPrevious() = 0;
  // Steps back until `pred` answers true; false at the start.
  virtual bool gotoPreviousMatching(Predicate* pred, void* ctx) = 0;
  // Jumps to a position; false if there is no such element.
  virtual bool gotoIndex(int index) = 0;
  // Returns the current position.
  virtual int getIndex() const = 0;
  // Returns a copy of the current element; nil when the cursor stands on none.
  virtual lvArg getValue() const = 0;
};
