// lviMap: a map from cells to cells.
//
// Four kinds of class meet at every container; for maps they are
//
//   you want                     class                  who frees it
//   the contract                 lviMap                 the object behind it, when its last
//                                                       reference goes
//   to hold a map                lvHashMap, a cell      drops its one reference
//   to walk a map                lvMapEnumerator,       deletes the cursor that it holds;
//                                on the stack           cannot be copied
//   to write a map of your own   lviRealMapEnumerator   whoever called getEnumerator()
//
// Every map promises: keys are told apart by lvArg::equiv() or lvArg::compareTo(); each call takes
// the references it keeps; a missing key reads as nil.
// The maps differ in what getIterator() offers (nothing: the hash map; a cursor that changes and
// removes: the tuple set), in their order, and in put() of nil into an empty map.
//
// Threads: one thread at a time for a map and all its cursors together.
#pragma once

#include "tarselvalues/containers/lviRealMapEnumerator.h"
#include "tarselvalues/containers/lviRealMapIterator.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lviMap {
 public:
  // For derived classes.
  lviMap() = default;
  lviMap(lviMap const&) = delete;
  lviMap& operator=(lviMap const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  virtual ~lviMap();
  // Returns the number of entries.
  virtual int getSize() const = 0;
  // Returns a copy of the value under `key`, or nil.
  virtual lvArg get(lvArg const& key) const = 0;
  // Stores `value` under `key`, or removes the entry when `value` is nil. `old`, where not null,
  // receives the previous value if there was an entry, and is left alone otherwise.
  // Returns 0 or a negative error number.
  virtual int put(lvArg const& key, lvArg const& value, lvArg* old = nullptr) = 0;
  // Removes all entries. Returns 0.
  virtual int clear() = 0;
  // Returns a new cursor before the first entry, which the caller owns.
  virtual lviRealMapEnumerator* getEnumerator() const = 0;
  // Returns a new cursor that may change the map, which the caller owns, or null if there is none.
  virtual lviRealMapIterator* getIterator() = 0;
  // The same for callers of read-write cursors; null for every map of the library.
  virtual lviRealMapIterator* getRWIterator() = 0;
};
