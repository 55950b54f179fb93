// ChainIndex: finds the entries of a chained hash table in constant time, however long its chains
// are. Not for users.
//
// The number of chains of such a table is fixed, and the order in them is for everybody to see. The
// index stands beside the chains and changes nothing about them: it knows for each entry the chain
// and the link that leads to it, and for each chain the link that ends it. An entry is found by a
// hash of the index's own, which is sound where many entries share the table's, and which nobody
// who feeds the table can foresee.
//
// A table walks its chains until that has cost as much as building an index, and then builds one.
// Without memory for it the index is dropped, and the chains are walked again. It is also dropped
// when a text that may be a key has been set anew (lvrString::getKeyTextChanges()).
//
// Links: tells about a table's entries: the type Entry, `Entry*& next(Entry&)`, and
//        `std::uint32_t hash(Entry const&, std::uint32_t seed)`, which is equal for entries that match
//        the same search.
// Memory: 16 bytes for a slot on 32-bit targets, at most three in four in use, and one link for each
//        chain. Nothing before it is built.
#pragma once

#include <sys/auxv.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "tarselvalues/core/Tuning.h"
#include "tarselvalues/core/lvrString.h"

namespace tarselvalues {

// Folds the product of two words.
inline std::uint32_t foldMultiply(std::uint32_t a, std::uint32_t b) {
  std::uint64_t const product = std::uint64_t{a} * b;
  return static_cast<std::uint32_t>(product) ^ static_cast<std::uint32_t>(product >> 32);
}

inline std::uint32_t mixIndexHash(std::uint32_t hash, std::uint32_t word) {
  constexpr std::uint32_t factor = 0x9E3779B1;   // odd, with as many ones as zeros
  constexpr std::uint32_t summand = 0x85EBCA6B;  // so that a product of 0 does not stay 0
  return foldMultiply(hash ^ word, factor) + summand;
}

inline std::uint32_t hashBytes(char const* bytes, std::size_t count, std::uint32_t seed) {
  std::uint32_t hash = mixIndexHash(seed, static_cast<std::uint32_t>(count));
  std::uint32_t word = 0;
  for (; count >= sizeof(word); count -= sizeof(word), bytes += sizeof(word)) {
    std::memcpy(&word, bytes, sizeof(word));
    hash = mixIndexHash(hash, word);
  }
  word = 0;
  if (count != 0) {
    std::memcpy(&word, bytes, count);
  }
  return mixIndexHash(hash, word);
}

template <class Links>
class ChainIndex {
 public:
  using Entry = typename Links::Entry;

  // What a search found. Where several entries match, their chain tells which comes first.
  struct Found {
    Entry** link;    // leads to the entry; null if none matches
    bool ambiguous;  // more than one matches
  };

  constexpr ChainIndex() = default;
  ChainIndex(ChainIndex const&) = delete;
  ChainIndex& operator=(ChainIndex const&) = delete;

  // Frees the index. A destructor does not: an index may be needed for as long as the process lives.
  void drop() {
    std::free(std::exchange(slots_, nullptr));
    std::free(std::exchange(ends_, nullptr));
    walked_ = 0;
  }

  // Whether there is an index, so that the four operations below may be called.
  bool isReady() {
    if (slots_ != nullptr && changes_ != lvrString::getKeyTextChanges()) {
      drop();
    }
    return slots_ != nullptr;
  }

  // Says that a search without index has looked at `steps` entries of a table of this size. Builds
  // the index if that is worth it; returns whether it did.
  bool noteWalk(std::size_t steps, Entry** heads, std::uint32_t chains, std::size_t entries) {
    if (!Tuned || steps <= ShortWalk) {
      return false;
    }
    walked_ += steps - ShortWalk;
    return walked_ > chains + entries && build(heads, chains);
  }

  std::uint32_t seed() const { return seed_; }

  // Finds the entry of `chain` with this hash that `matches(Entry const&)`.
  template <class Matches>
  Found find(std::uint32_t hash, std::uint32_t chain, Matches matches) const {
    Found found{nullptr, false};
    for (std::size_t i = hash & mask_; slots_[i].entry != nullptr; i = (i + 1) & mask_) {
      Slot const& slot = slots_[i];
      if (slot.hash == hash && slot.chain == chain && matches(*slot.entry)) {
        found.ambiguous = found.link != nullptr;
        found.link = slot.link;
      }
    }
    return found;
  }

  // Returns the link that ends a chain.
  Entry** endOf(std::uint32_t chain) const { return ends_[chain]; }

  // Takes up an entry that has been linked at `link`.
  void add(Entry& entry, Entry** link, std::uint32_t chain) {
    setLinkBehind(entry, &Links::next(entry), chain);
    insert(entry, link, chain);
  }

  // Forgets an entry, and returns the link that leads to it, for unlinking; null if it has none.
  Entry** remove(Entry& entry) {
    Slot* const slot = find(entry);
    if (slot == nullptr) {
      return nullptr;
    }
    Entry** const link = slot->link;
    setLinkBehind(entry, link, slot->chain);
    close(static_cast<std::size_t>(slot - slots_));
    --used_;
    return link;
  }

 private:
  struct Slot {
    Entry* entry;  // null: the slot is free
    Entry** link;
    std::uint32_t hash;
    std::uint32_t chain;
  };

  static constexpr std::size_t FirstSlots = 64;
  static constexpr std::size_t ShortWalk = 8;

  static Slot* allocate(std::size_t slots) {
    return static_cast<Slot*>(std::calloc(slots, sizeof(Slot)));
  }

  // A number that differs from process to process.
  static std::uint32_t chooseSeed() {
    std::uint32_t seed = 0;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): it is the address of random bytes.
    if (auto const* const random = reinterpret_cast<char const*>(getauxval(AT_RANDOM))) {
      std::memcpy(&seed, random, sizeof(seed));
    }
    return seed;
  }

  bool build(Entry** heads, std::uint32_t chains) {
    drop();
    slots_ = allocate(FirstSlots);
    ends_ = static_cast<Entry***>(std::malloc(chains * sizeof(Entry**)));
    if (slots_ == nullptr || ends_ == nullptr) {
      drop();
      return false;
    }
    mask_ = FirstSlots - 1;
    used_ = 0;
    seed_ = chooseSeed();
    changes_ = lvrString::getKeyTextChanges();
    for (std::uint32_t chain = 0; chain < chains; ++chain) {
      Entry** link = &heads[chain];
      for (; *link != nullptr; link = &Links::next(**link)) {
        if (!insert(**link, link, chain)) {
          return false;
        }
      }
      ends_[chain] = link;
    }
    return true;
  }

  bool insert(Entry& entry, Entry** link, std::uint32_t chain) {
    if ((used_ + 1) * 4 > (mask_ + 1) * 3 && !grow()) {
      drop();
      return false;
    }
    place({&entry, link, Links::hash(entry, seed_), chain});
    ++used_;
    return true;
  }

  // Says that `link` leads to what comes after an entry.
  void setLinkBehind(Entry& entry, Entry** link, std::uint32_t chain) {
    if (Entry* const next = Links::next(entry)) {
      find(*next)->link = link;
    } else {
      ends_[chain] = link;
    }
  }

  bool grow() {
    std::size_t const old = mask_ + 1;
    Slot* const grown = allocate(old * 2);
    if (grown == nullptr) {
      return false;
    }
    Slot* const slots = std::exchange(slots_, grown);
    mask_ = old * 2 - 1;
    for (std::size_t i = 0; i < old; ++i) {
      if (slots[i].entry != nullptr) {
        place(slots[i]);
      }
    }
    std::free(slots);
    return true;
  }

  void place(Slot const& slot) {
    std::size_t i = slot.hash & mask_;
    while (slots_[i].entry != nullptr) {
      i = (i + 1) & mask_;
    }
    slots_[i] = slot;
  }

  // Returns the slot of an entry, or null. What is in a chain has one.
  Slot* find(Entry const& entry) const {
    std::size_t const first = Links::hash(entry, seed_);
    for (std::size_t i = 0; i <= mask_; ++i) {
      Slot* const slot = &slots_[(first + i) & mask_];
      if (slot->entry == &entry) {
        return slot;
      }
    }
    return nullptr;
  }

  // Frees a slot, and moves into it what stands behind and would not be found over a free one.
  void close(std::size_t gap) {
    for (std::size_t i = (gap + 1) & mask_; slots_[i].entry != nullptr; i = (i + 1) & mask_) {
      std::size_t const wanted = slots_[i].hash & mask_;
      if (((i - wanted) & mask_) >= ((i - gap) & mask_)) {
        slots_[gap] = slots_[i];
        gap = i;
      }
    }
    slots_[gap].entry = nullptr;
  }

  Slot* slots_ = nullptr;
  Entry*** ends_ = nullptr;
  std::size_t mask_ = 0;  // their number, a power of two, less one
  std::size_t used_ = 0;
  std::size_t walked_ = 0;  // entries looked at beyond what short chains take, since the last drop
  std::uint32_t seed_ = 0;
  std::uint32_t changes_ = 0;  // of key texts, when it was built
};

}  // namespace tarselvalues
