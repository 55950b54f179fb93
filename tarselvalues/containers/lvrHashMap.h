// lvrHashMap: a chained hash table from cells to cells.
//
// Keys are hashed by lvArg::hashCode() and compared by lvArg::equiv(). The number of buckets is
// fixed while the map has entries, so chains grow linearly. Once walks of long chains have cost as
// much as making one, an index beside the chains finds keys in constant time; it leaves the chains
// and their order alone, and takes about 30 bytes for each entry on 32-bit targets. Whoever expects
// many keys saves that with a larger size, or setHashSize() before the first put(). The buckets are
// allocated by the first put(). One retired entry is kept, so that removing and adding in turn
// allocates nothing.
//
// Order:     bucket 0 upward, each chain from its head. Deliberate: new entries go to the tail and
//            to the head of their chain in turn, counted over all maps of the process, so the order
//            is not the order of insertion.
// Ownership: the map holds references to its keys and values; its cursors hold one to the map.
// Threads:   one thread at a time for a map and all its cursors together. Maps of different threads
//            are independent but for the count behind the order, which any thread may disturb.
// Errors:    negative numbers, as named below; out of memory is std::bad_alloc and leaves the map
//            as it was.
// Cursors:   put() of nil, clear(), setHashSize() and freeStorage() may take the entry under a
//            cursor away. The cursor then goes on with the next bucket, or stops early; it never
//            reads a freed entry. New entries may or may not be met.
// Callbacks: keys that are hashed or compared, and what is released, may change the map, or drop
//            its last reference. A search goes on from the entry that was compared, looks at no
//            more entries than the map had when it began, and ends when that entry goes: it may
//            miss a key, and put() may then add that once more. Whatever a key throws leaves the
//            map as it was.
// Cost:      O(1) for keys with an identity or a text of their own. Where string keys borrow their
//            text, or are of a class of the program's, searches for strings walk their chain.
// Life:      finalize() frees everything; the destructor itself frees nothing.
// Layout:    on 32-bit ARM: count 40, hashSize 44, buckets 48, spareEntry 52, hashSum 56, size 60.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

namespace tarselvalues {
enum class KeyKind;
class KeptWhileAsking;
}  // namespace tarselvalues

class TARSELVALUES_API lvrHashMap : public lvReferencable, public lviMap {
 public:
  // One entry, in the chain of its bucket.
  struct TARSELVALUES_API HashEntry {
    // Holds both cells, in no chain yet.
    HashEntry(lvArg const& entryKey, lvArg const& entryValue)
        : key(entryKey), value(entryValue), next(nullptr) {}
    // The same, and takes the cells over.
    HashEntry(lvArg&& entryKey, lvArg&& entryValue) noexcept
        : key(std::move(entryKey)), value(std::move(entryValue)), next(nullptr) {}

    lvArg key;        // never changes while the entry is in the map
    lvArg value;      // what put() replaces
    HashEntry* next;  // in the same chain; null: this is the last
  };

  // Where a cursor stands. It holds no reference: the map must outlive it, and if the map loses
  // entries it must be told with resume() before it is used again. RealEnumerator sees to both.
  class TARSELVALUES_API IteratorLogic {
   public:
    // Stands before the first entry of `walked`.
    void initFrom(lvrHashMap const& walked);
    // Steps to the next entry; false when there is none.
    bool next();
    // Borrows the current entry's key; nil when there is none.
    lvArg const& getKey() const;
    // Borrows the current entry's value; nil when there is none.
    lvArg const& getValue() const;

   private:
    friend class lvrHashMap;
    template <class T>
    friend struct lvLayoutAccess;

    // After entries have gone: forgets the current one unless the map still has it.
    TARSELVALUES_INTERNAL void resume();

    HashEntry* current = nullptr;
    std::int32_t bucket = -1;
    std::uint32_t visited = 0;
    lvrHashMap const* map = nullptr;
  };

  // The map's cursor; keeps the map alive.
  class TARSELVALUES_API RealEnumerator : public lviRealMapEnumerator {
   public:
    // Stands before the first entry of `map`.
    explicit RealEnumerator(lvrHashMap const& map);
    ~RealEnumerator() override;
    bool next() override;
    lvArg getKey() const override;
    lvArg getValue() const override;

   private:
    template <class T>
    friend struct lvLayoutAccess;

    TARSELVALUES_INTERNAL IteratorLogic& upToDate() const;

    mutable IteratorLogic logic;
    mutable std::uint64_t seenRemovals;  // The map's removals as `logic` knows them.
  };

  // For the library itself; not exported: a cursor that holds nothing. The map must outlive it.
  class Walk {
   public:
    Walk() = default;
    // Stands before the first entry.
    explicit Walk(lvrHashMap const& walked) { logic.map = &walked; }

    // Steps to the next entry; null when there is none. Only while nothing happens to the map.
    HashEntry const* nextUndisturbed() {
      if (logic.visited == static_cast<std::uint32_t>(logic.map->count)) {
        return nullptr;
      }
      logic.current = logic.current != nullptr ? logic.current->next : nullptr;
      while (logic.current == nullptr) {
        logic.current = logic.map->buckets[++logic.bucket];
      }
      ++logic.visited;
      return logic.current;
    }

    // The same, whatever happens to the map from watch() on: no entry that has gone is read.
    TARSELVALUES_INTERNAL void watch();
    TARSELVALUES_INTERNAL HashEntry const* next();

   private:
    IteratorLogic logic;
    std::uint64_t seenRemovals = 0;
  };

  // What a map is made with by name, and what setHashSize(0) sets.
  static constexpr unsigned int DefaultHashSize = 7;

  // Makes an empty map of `size` buckets. With 0, put() answers -22 until setHashSize() is called.
  explicit lvrHashMap(unsigned int size);

  // Returns a new map of DefaultHashSize buckets. Any thread.
  static lvReferencable* defaultCtorMethod();

  // Returns the interned "HashMap". Any thread.
  static lvString const& getStaticClassDesc();

  // Hash of the set of keys: independent of values and of order. Kept up to date, so O(1).
  unsigned int hashCode() const override;
  lvString const& getClassDesc() const override;
  // Frees all entries, the buckets and the spare entry. Returns what freeStorage() answers.
  int finalize() override;
  // Frees nothing: finalize() has.
  ~lvrHashMap() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  lvArg get(lvArg const& key) const override;
  // -22 when the map has no buckets (made with size 0). Putting nil under an absent key does
  // nothing. The stored key stays when only the value is replaced.
  int put(lvArg const& key, lvArg const& value, lvArg* old = nullptr) override;
  // The buckets and the spare entry are kept.
  int clear() override;
  int getSize() const override;
  lviRealMapEnumerator* getEnumerator() const override;
  // Always null: a hash map offers the read-only cursor alone.
  lviRealMapIterator* getIterator() override;
  // Always null.
  lviRealMapIterator* getRWIterator() override;

  // Changes the number of buckets of an empty map; 0 means DefaultHashSize. Returns 0, or -16 when
  // the map has entries and the number would change.
  int setHashSize(unsigned int size);

  // Allocates the buckets if they are not there. Returns 0, or -22 when their number is 0.
  int needStorage();

  // Clears the map (through clear(), where a derived class has its own, whose negative answer ends
  // the operation) and frees the buckets and the spare entry. Returns 0.
  int freeStorage();

  // For the library itself; not exported: as put(), and takes the cells over where it can. They may
  // be nil afterwards.
  TARSELVALUES_INTERNAL int putMoved(lvArg&& key, lvArg&& value);

  // For the library itself; not exported: does without an index until it is cleared. Any number of
  // threads may then call get() while nothing changes the map.
  TARSELVALUES_INTERNAL void forgoIndex();

 private:
  template <class T>
  friend struct lvLayoutAccess;

  struct EntryLinks;
  struct Extras;

  TARSELVALUES_INTERNAL static Extras& extrasBehind(HashEntry** heads, std::uint32_t size);
  TARSELVALUES_INTERNAL static HashEntry** allocateBuckets(std::uint32_t size);
  TARSELVALUES_INTERNAL void freeBuckets();
  TARSELVALUES_INTERNAL Extras& extras() const { return extrasBehind(buckets, hashSize); }
  TARSELVALUES_INTERNAL std::uint64_t removals() const;
  TARSELVALUES_INTERNAL static void bringUpToDate(IteratorLogic& logic, std::uint64_t& seen);
  TARSELVALUES_INTERNAL bool has(HashEntry const* entry, unsigned int hash) const;
  TARSELVALUES_INTERNAL HashEntry* find(lvArg const& key, tarselvalues::KeyKind kind,
                                        unsigned int hash,
                                        tarselvalues::KeptWhileAsking& self) const;
  template <class Matches>
  TARSELVALUES_INTERNAL HashEntry* findAmong(lvArg const& key, tarselvalues::KeyKind kind,
                                             unsigned int hash, Matches matches) const;
  TARSELVALUES_INTERNAL HashEntry* findAsking(lvArg const& key, unsigned int hash,
                                              tarselvalues::KeptWhileAsking& self) const;
  TARSELVALUES_INTERNAL HashEntry** linkTo(HashEntry const* entry, unsigned int hash) const;
  template <class Cell>
  TARSELVALUES_INTERNAL int putCells(Cell&& key, Cell&& value, lvArg* old);
  template <class Cell>
  TARSELVALUES_INTERNAL HashEntry* takeEntry(Cell&& key, Cell&& value);
  TARSELVALUES_INTERNAL void linkEntry(HashEntry* entry, unsigned int hash);
  TARSELVALUES_INTERNAL void removeEntry(HashEntry* entry, unsigned int hash);

  std::int32_t count;
  std::uint32_t hashSize;
  HashEntry** buckets;    // null until the first put(); see extrasBehind()
  HashEntry* spareEntry;  // a retired entry for the next put(), or null
  std::uint32_t hashSum;
};
