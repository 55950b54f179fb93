// Cells as keys of standard containers, by the rules of the library.
//
//   std::unordered_map<lvArg, int, lvHasher, lvEquivalent> counts;
//
// A container that is a key must stay as it is: the hash of a map, vector or stack follows what it
// holds, so one that has changed is not found again.
//
// There is no std::hash and no operator== of cells: a program would not see that strings are told
// apart by their text, and containers by their identity.
//
// Threads: any thread, each call with values of its own.
#pragma once

#include <cstddef>

#include "tarselvalues/core/lvArg.h"

// Hashes cells.
struct lvHasher {
  // Returns lvArg::hashCode(). One thread at a time for the cell and what is in it.
  std::size_t operator()(lvArg const& value) const { return value.hashCode(); }
};

// Tells cells apart.
struct lvEquivalent {
  // Returns whether lvArg::equiv() holds. One thread at a time for the cells and what is in them.
  bool operator()(lvArg const& a, lvArg const& b) const { return a.equiv(b) != 0; }
};

// Orders cells. lvArg::compareTo() subtracts integers with wrap-around: the integers in one ordered
// container must lie within 2147483647 of each other.
struct lvOrdered {
  // Returns whether `a` comes before `b` for lvArg::compareTo(). One thread at a time for the cells
  // and what is in them.
  bool operator()(lvArg const& a, lvArg const& b) const { return a.compareTo(b) < 0; }
};
