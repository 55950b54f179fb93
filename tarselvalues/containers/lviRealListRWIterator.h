// lviRealListRWIterator: a list cursor that can also insert.
//
// Not every list has one: lviList::getListRWIterator() of a vector answers null.
//
// Threads:   one thread at a time for the list and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviRealListIterator.h"

class TARSELVALUES_API lviRealListRWIterator : public lviRealListIterator {
 public:
  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Whether insert() can work.
  virtual bool isWritable() = 0;
  // Inserts before the current element; false if nothing was inserted.
  virtual bool insert(lvArg const& value) = 0;
};
