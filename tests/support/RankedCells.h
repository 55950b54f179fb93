// Keys for random walks of sorted containers: with a known place in the order, and counted.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/Pairs.h"

namespace test {

// Cells in ascending order. Some of them are equal to their neighbours.
class RankedCells {
 public:
  // An index of a cell; the first one is nil.
  using Id = std::size_t;
  static constexpr Id Nil = 0;

  RankedCells() {
    add(lvArg(), true);
    for (int const value : {-1000, -1, 0, 1, 2, 3, 42, 1000}) {
      add(integer(value), true);
    }
    for (std::uintptr_t const address : {8U, 16U, 24000U}) {
      add(pointer(address), true);
    }
    for (int rank = 0; rank < 5; ++rank) {
      add(*new RankedKey(rank), true);
      add(*new RankedKey(rank), false);
    }
    for (char const* const text : {"", "42", "B", "a", "aa", "b"}) {
      add(string(text), true);
      add(string(text), false);
    }
  }

  std::size_t size() const { return entries_.size(); }
  lvArg const& cell(Id id) const { return entries_[id].cell; }
  // Tells the order of two cells without asking them.
  int compare(Id a, Id b) const { return entries_[a].rank - entries_[b].rank; }

  // The index of the very cell, or of the very object, that `cell` is a copy of.
  Id idOf(lvArg const& cell) const {
    Id id = 0;
    while (id < size() && !cell.eq(entries_[id].cell)) {
      ++id;
    }
    return id;
  }

  // How many hold the object of a cell besides this; 0 without object.
  int holders(Id id) const {
    lvReferencable const* const object = cell(id).getReferencable();
    return object != nullptr ? countOf(*object) - 1 : 0;
  }

 private:
  struct Entry {
    lvArg cell;
    int rank;
  };

  void add(lvArg const& cell, bool isGreater) {
    int const rank = entries_.empty() ? 0 : entries_.back().rank;
    entries_.push_back({cell, isGreater ? rank + 1 : rank});
  }

  std::vector<Entry> entries_;
};

}  // namespace test
