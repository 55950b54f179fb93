// The pairs of a tuple set, to look at and to put in.
#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <string>

#include "support/MapReading.h"
#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"

namespace test {

using SetLayout = lvLayoutAccess<lvrTupleSet>;

// All that the array has room for, in its order, "1=10 2=20 . . "; a dot for a pair of two nils.
inline std::string roomOf(lvrTupleSet const& set) {
  std::string room;
  for (int i = 0; i < SetLayout::allocated(set); ++i) {
    lvrTupleSet::Pair const& pair = SetLayout::entries(set)[i];
    bool const isUnused = pair.key.isNil() && pair.value.isNil();
    room += isUnused ? ". " : brief(pair.key) + "=" + brief(pair.value) + " ";
  }
  return room;
}

// Whether `n` pairs are all zero, padding and bookkeeping bits included.
inline bool areZero(lvrTupleSet::Pair const* pairs, int n) {
  auto const* const bytes = reinterpret_cast<unsigned char const*>(pairs);
  return std::all_of(bytes, bytes + static_cast<std::size_t>(n) * sizeof(*pairs),
                     [](unsigned char byte) { return byte == 0; });
}

// Puts each key under itself, times ten.
inline void putEach(lvrTupleSet& set, std::initializer_list<int> keys) {
  for (int const key : keys) {
    set.put(integer(key), integer(10 * key));
  }
}

inline void putUpTo(lvrTupleSet& set, int last) {
  for (int key = 1; key <= last; ++key) {
    putEach(set, {key});
  }
}

// A set in which an equal key makes a further pair.
class EqualKeysSet : public Held<lvrTupleSet> {
 public:
  explicit EqualKeysSet(int size = 4) : Held(size, 4U, lvrTupleSet::InsertEqualKeys) {}
};

// A key with its place in the order of such keys. Counts how often any of them is compared.
class RankedKey : public lvReferencable {
 public:
  static inline int compared = 0;

  explicit RankedKey(int rank) : rank_(rank) {}
  int compareTo(lvReferencable const& other) const override {
    ++compared;
    return rank_ - dynamic_cast<RankedKey const&>(other).rank_;
  }

 private:
  int rank_;
};

}  // namespace test
