// Cells for random walks: few enough to meet again, of every kind, and counted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/Objects.h"

namespace test {

class CellPool {
 public:
  // An index of a cell; the first one is nil.
  using Id = std::size_t;
  static constexpr Id Nil = 0;

  CellPool() {
    add(lvArg(), "nil", 19567);
    for (int const value : {0, 1, -1, 7, 42, 1000, -2147483647 - 1, 2147483647}) {
      add(integer(value), "integer " + std::to_string(value),
          static_cast<unsigned>(value) * 0xFFFFA460U + 0x110D5U);
    }
    for (std::uintptr_t const eighth : {1U, 2U, 3000U}) {
      add(pointer(8 * eighth), "address " + std::to_string(8 * eighth),
          static_cast<unsigned>(eighth) * 0xFFFFA460U + 0x110D5U);
    }
    for (char const* const text : {"", "a", "b", "42", "a longer text"}) {
      for (int twin = 0; twin < 2; ++twin) {  // Two objects of one text are equal.
        lvArg const cell = string(text);
        add(cell, std::string("text ") + text, cell.hashCode());
      }
    }
    for (unsigned const hash : {0U, 1U, 7U, 8U, 0xFFFFFFFFU, 19567U}) {
      add(keyWithHash(hash), "object " + std::to_string(entries_.size()), hash);
    }
  }

  std::size_t size() const { return entries_.size(); }
  lvArg const& cell(Id id) const { return entries_[id].cell; }
  // Tells by the content of two cells whether they are equal, without asking the cells.
  bool areEqual(Id a, Id b) const { return entries_[a].content == entries_[b].content; }
  unsigned hash(Id id) const { return entries_[id].hash; }

  // The index of the very cell, or of the very object, that `cell` is a copy of.
  Id idOf(lvArg const& cell) const {
    Id id = 0;
    while (id < size() && !cell.eq(entries_[id].cell)) {
      ++id;
    }
    return id;
  }

  // What the counts of the objects say about who holds a cell besides the pool; 0 without object.
  int holders(Id id) const {
    lvReferencable const* const object = cell(id).getReferencable();
    return object != nullptr ? countOf(*object) - 1 : 0;
  }

 private:
  struct Entry {
    lvArg cell;
    std::string content;
    unsigned hash;
  };

  void add(lvArg const& cell, std::string const& content, unsigned hash) {
    entries_.push_back({cell, content, hash});
  }

  std::vector<Entry> entries_;
};

}  // namespace test
