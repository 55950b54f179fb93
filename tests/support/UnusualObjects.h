// Objects that are not what their tag says, and a map that is not the library's own.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "tarselvalues/containers/lviMap.h"

namespace test {

// An object of any kind that offers no interface at all.
class BareObject : public lvReferencable {
 public:
  explicit BareObject(Kind kind) { setKind(kind); }
};

inline lvArg newBare(lvReferencable::Kind kind) { return *new BareObject(kind); }

// It has the map tag, as a stack has, but not the map interface.
inline lvArg newStackLike() { return newBare(lvReferencable::MapKind); }
// It has the list tag, as a linked list has, but is no vector.
inline lvArg newListLike() { return newBare(lvReferencable::ListKind); }
// A plain object of a class that nobody registered.
inline lvArg newPlainObject() { return newBare(lvReferencable::ObjectKind); }

// An object whose class key is a handle to nothing.
class KeylessObject : public lvReferencable {
 public:
  lvString const& getClassDesc() const override { return none_; }

 private:
  lvString none_;
};

// A map in the order of insertion. It reports a size of its own, to show who asks for it.
class PairMap : public lvReferencable, public lviMap {
 public:
  using Entry = std::pair<lvArg, lvArg>;

  explicit PairMap(std::vector<Entry> entries, Kind kind = MapKind) : entries_(std::move(entries)) {
    setKind(kind);
  }

  int getSize() const override { return 700 + static_cast<int>(entries_.size()); }
  lvArg get(lvArg const& /*key*/) const override { return lvArg(); }
  int put(lvArg const& /*key*/, lvArg const& /*value*/, lvArg* /*old*/) override { return -38; }
  int clear() override { return 0; }
  lviRealMapEnumerator* getEnumerator() const override { return new Cursor(entries_); }
  lviRealMapIterator* getIterator() override { return nullptr; }
  lviRealMapIterator* getRWIterator() override { return nullptr; }

 private:
  class Cursor : public lviRealMapEnumerator {
   public:
    explicit Cursor(std::vector<Entry> const& entries) : entries_(entries) {}
    bool next() override { return ++position_ <= entries_.size(); }
    lvArg getKey() const override { return entries_[position_ - 1].first; }
    lvArg getValue() const override { return entries_[position_ - 1].second; }

   private:
    std::vector<Entry> const& entries_;
    std::size_t position_ = 0;
  };

  std::vector<Entry> entries_;
};

}  // namespace test
