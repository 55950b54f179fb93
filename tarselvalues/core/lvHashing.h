// Cells as keys of standard containers, by the rules of the library.
//
//   std::unordered_map<lvArg, int, lvHasher, lvEquivalent> counts;
//
// There is no std::hash and no operator== of cells: a program would not see that strings are told
// apart by their text, and containers by their identity.
//
// Threads: any thread, each call with values of its own.
#pragma once

#include <cstddef>

#include "tarselvalues/core/lvArg.h"

// lvArg::hashCode().
struct lvHasher {
  std::size_t operator()(lvArg const& value) const { return value.hashCode(); }
};

// lvArg::equiv().
struct lvEquivalent {
  bool operator()(lvArg const& a, lvArg const& b) const { return a.equiv(b) != 0; }
};

// lvArg::compareTo(). It subtracts integers with wrap-around: integers in one ordered container must
// lie within 2147483647 of each other.
struct lvOrdered {
  bool operator()(lvArg const& a, lvArg const& b) const { return a.compareTo(b) < 0; }
};
