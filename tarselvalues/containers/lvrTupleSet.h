// lvrTupleSet: a map in an array of pairs that is kept sorted by key.
//
// Keys are ordered and told apart by lvArg::compareTo() and found by bisection. The array grows by
// a fixed number of pairs; inserting and removing move the pairs behind with one memory move.
//
// Order:     ascending keys.
// Ownership: the set holds references to its keys and values; its cursors hold none to the set and
//            must not outlive it.
// Threads:   one thread at a time for a set and all its cursors together.
// Errors:    deliberate: when the array of a set with pairs cannot grow during put(), the process
//            ends with exit status 13. A set without pairs stays empty then. expand() itself
//            answers -12; the pairs are lost then.
// Cursors:   read through the set by position: they see every change, and nil where there is no
//            pair any more.
// Callbacks: keys that are compared, and what is released, may change the set, or drop its last
//            reference. A search goes on in the positions that it had left and ends where they are
//            gone; put() may then insert out of order. Whatever a key throws leaves the set as it
//            was.
// Class key: deliberate: getClassDesc() answers "Referencable", though the class registry knows the
//            class as "TupleSet".
// Layout:    on 32-bit ARM: entries 40, count 44, allocated 48, increment 52 (24 bits),
//            setFlags 55, size 56.
#pragma once

#include <cstdint>

#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

namespace tarselvalues {
class KeptWhileAsking;
class SearchedKey;
struct Probe;
}  // namespace tarselvalues

class TARSELVALUES_API lvrTupleSet : public lvReferencable, public lviMap {
 public:
  // One entry.
  struct Pair {
    lvArg key;    // what the pairs are sorted by
    lvArg value;  // what is stored under it
  };

  // The bit of the constructor's flags that has put() insert a further pair for a present key.
  static constexpr unsigned int InsertEqualKeys = 1;

  // Where a cursor stands.
  class TARSELVALUES_INTERNAL IteratorLogic {
   public:
    explicit IteratorLogic(lvrTupleSet& walked) : set(&walked) {}
    bool next();
    lvArg getKey() const;
    lvArg getValue() const;

   private:
    friend class lvrTupleSet;
    template <class T>
    friend struct lvLayoutAccess;

    lvrTupleSet* set;
    Pair const* current = nullptr;  // null: on no pair; what it points to is read by `index`
    std::int32_t index = -1;
  };

  // The set's read-only cursor.
  class TARSELVALUES_API RealEnumerator : public lviRealMapEnumerator {
   public:
    // Stands before the first pair of `walked`.
    explicit RealEnumerator(lvrTupleSet const& walked) : logic(const_cast<lvrTupleSet&>(walked)) {}
    bool next() override;
    lvArg getKey() const override;
    lvArg getValue() const override;

   private:
    template <class T>
    friend struct lvLayoutAccess;

    IteratorLogic logic;
  };

  // The set's changing cursor.
  class TARSELVALUES_API RealIterator : public lviRealMapIterator {
   public:
    // Stands before the first pair of `walked`.
    explicit RealIterator(lvrTupleSet& walked) : logic(walked) {}
    bool next() override;
    lvArg getKey() const override;
    lvArg getValue() const override;
    // Returns 0; -1 when the cursor is on no pair, and then `old`, where not null, becomes nil; -2
    // when its position is past the end. A nil `value` removes the pair and answers as remove().
    int setValue(lvArg const& value, lvArg* old) override;
    // -1 when the cursor is on no pair, -2 when its position is past the end. The cursor is then on
    // the pair that followed, if any. Deliberate: the next next() moves past that one, so after a
    // removal one pair is stepped over.
    int remove() override;

   private:
    template <class T>
    friend struct lvLayoutAccess;

    IteratorLogic logic;
  };

  // Makes an empty set with room for `size` pairs that grows by `step` pairs (cut to 1 ...
  // 16777215). Only the low 8 bits of `flags` are kept.
  lvrTupleSet(int size, unsigned int step, unsigned int flags);

  // Returns a new lvrTupleSet(8, 8, 0). Any thread.
  static lvReferencable* defaultCtorMethod();

  // Frees all pairs and the array. A second call finds nothing to do.
  int finalize() override;
  ~lvrTupleSet() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  lvArg get(lvArg const& key) const override;
  int getSize() const override;
  // Returns 0 whenever it returns.
  // Deliberate: nil under an absent key does nothing, but in an empty set it stores the pair.
  // Deliberate: with InsertEqualKeys, a value under a key that is there goes into a new pair before
  // the old one, and the size stays, so the last pair leaves the set, and is only released when the
  // next one takes its place or the set goes.
  int put(lvArg const& key, lvArg const& value, lvArg* old = nullptr) override;
  // The array is kept.
  int clear() override;
  lviRealMapEnumerator* getEnumerator() const override;
  lviRealMapIterator* getIterator() override;
  // Always null.
  lviRealMapIterator* getRWIterator() override;

  // Returns the position of the pair with this key, or the position probed last: a neighbour of
  // where it belongs. `found`, where not null, says which.
  int search(lvArg const& key, bool* found) const;

  // Returns the key at a position; nil for a position that is not there.
  lvArg getKey(int i) const;
  // Returns the value at a position; nil for a position that is not there.
  lvArg getValue(int i) const;
  using lvReferencable::getValue;
  // Replaces the value at a position. Returns 1 when it was replaced; 0, with nothing changed, for a
  // position that is not there, and for a nil `value`. `old`, where not null, receives
  // the previous value.
  int setValue(int i, lvArg const& value, lvArg* old);

  // Makes room for `needed` pairs. Returns 0, or -12 without memory: the pairs are lost then.
  int expand(int needed);

  // Removes the pair at a position; nothing happens if there is none.
  void removeEntry(int i);

 private:
  template <class T>
  friend struct lvLayoutAccess;

  TARSELVALUES_INTERNAL bool has(int i) const;
  TARSELVALUES_INTERNAL lvArg const& keyAt(int i) const { return entries[i].key; }
  TARSELVALUES_INTERNAL tarselvalues::Probe find(tarselvalues::SearchedKey const& key) const;
  TARSELVALUES_INTERNAL Pair const* pairAt(int i) const;
  TARSELVALUES_INTERNAL void growOrExit();
  TARSELVALUES_INTERNAL void takeOut(int i, lvArg& key, lvArg& value);
  TARSELVALUES_INTERNAL void insertAt(int i, lvArg const& key, lvArg const& value, int counted);
  TARSELVALUES_INTERNAL int putOverFound(int i, lvArg const& key, lvArg const& value, lvArg* old);
  TARSELVALUES_INTERNAL void releasePairs(tarselvalues::KeptWhileAsking& self);

  Pair* entries;
  std::int32_t count;
  std::int32_t allocated;
  std::uint32_t increment : 24;
  std::uint32_t setFlags : 8;
};
