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
// when a text that an entry may be found by has been set anew (lvrString::markKeyText()).
//
// Links:  tells about a table's entries: the type Entry; `Entry*& next(Entry&)`;
//         `uint32_t hash(Entry const&, uint32_t seed)`, equal for entries that match the same search;
//         `bool isFindable(Entry const&)`, false for those that a search may match whatever their
//         hash; `bool watch(Entry const&)`, from which on a change of these answers is counted,
//         false if there is none; and `uint32_t countChanges()`, which tells their number.
// Memory: a pointer and a count, until an index is built. That takes 16 bytes for a slot on 32-bit
//         targets, of which at most three in four are in use, and a link for each chain.
#pragma once

#include <sys/auxv.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "tarselvalues/core/Tuning.h"

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

  // Frees the index. A destructor does not: an index may be needed for as long as the process
  // lives.
  void drop() {
    if (built_ != nullptr) {
      std::free(built_->slots);
      std::free(built_->ends);
      std::free(std::exchange(built_, nullptr));
    }
    walked_ = 0;
  }

  // Does without an index until the next drop(). Until then no search writes anything here.
  void forgo() {
    drop();
    walked_ = Forgone;
  }

  // Whether there is an index, so that the operations below it may be called.
  bool isReady() {
    if (built_ != nullptr && built_->isWatching && built_->changes != Links::countChanges()) {
      // To build it anew costs as much as many walks, and might be in vain again.
      std::size_t const patience = 32 * built_->used;
      drop();
      walked_ = -static_cast<std::ptrdiff_t>(patience);
    }
    return built_ != nullptr;
  }

  // Says that a search by a walk has looked at `steps` entries of a table of this size. Builds the
  // index if there is none and that is worth it.
  void noteWalk(std::size_t steps, Entry** heads, std::uint32_t chains, std::size_t entries) {
    if (Tuned && steps > ShortWalk && built_ == nullptr && walked_ != Forgone) {
      walked_ += static_cast<std::ptrdiff_t>(steps - ShortWalk);
      if (walked_ > static_cast<std::ptrdiff_t>(chains + entries)) {
        build(heads, chains, entries);
      }
    }
  }

  std::uint32_t seed() const { return built_->seed; }

  // Whether every entry is found by its hash.
  bool findsAll() const { return built_->unfindable == 0; }

  // Finds the entry of `chain` with this hash that `matches(Entry const&)`.
  template <class Matches>
  Found find(std::uint32_t hash, std::uint32_t chain, Matches matches) const {
    Found found{nullptr, false};
    Built const& in = *built_;
    for (std::size_t i = hash & in.mask; in.slots[i].entry != nullptr; i = (i + 1) & in.mask) {
      Slot const& slot = in.slots[i];
      if (slot.hash == hash && slot.chain == chain && matches(*slot.entry)) {
        found.ambiguous = found.link != nullptr;
        found.link = slot.link;
      }
    }
    return found;
  }

  // Returns the link that ends a chain.
  Entry** endOf(std::uint32_t chain) const { return built_->ends[chain]; }

  // Takes up an entry that has been linked at `link`.
  void add(Entry& entry, Entry** link, std::uint32_t chain) {
    setLinkBehind(entry, &Links::next(entry), chain);
    if (!insert(entry, link, chain)) {
      drop();
    }
  }

  // Forgets an entry, and returns the link that leads to it, for unlinking; null if it has none.
  Entry** remove(Entry& entry) {
    Slot* const slot = find(entry);
    if (slot == nullptr) {
      return nullptr;
    }
    Entry** const link = slot->link;
    setLinkBehind(entry, link, slot->chain);
    close(static_cast<std::size_t>(slot - built_->slots));
    --built_->used;
    built_->unfindable -= Links::isFindable(entry) ? 0 : 1;
    shrink();
    return link;
  }

 private:
  struct Slot {
    Entry* entry;  // null: the slot is free
    Entry** link;
    std::uint32_t hash;
    std::uint32_t chain;
  };

  struct Built {
    Slot* slots;
    Entry*** ends;           // the link that ends each chain
    std::size_t mask;        // the number of slots, a power of two, less one
    std::size_t used;        // how many of them
    std::size_t unfindable;  // how many of those
    bool isWatching;         // whether a change of texts may concern it
    std::uint32_t seed;
    std::uint32_t changes;  // Links::countChanges() when it was built
  };

  static constexpr std::size_t FirstSlots = 64;
  static constexpr std::size_t ShortWalk = 8;
  static constexpr std::ptrdiff_t Forgone = PTRDIFF_MIN;

  template <class Item>
  static Item* allocate(std::size_t count) {
    return static_cast<Item*>(std::calloc(count, sizeof(Item)));
  }

  // A number that differs from process to process. It tells nothing of the random bytes that it is
  // made of, which guard the stack.
  static std::uint32_t chooseSeed() {
    constexpr std::size_t size = 16;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): it is an address.
    auto const* const random = reinterpret_cast<char const*>(getauxval(AT_RANDOM));
    return random != nullptr ? hashBytes(random, size, 0) : 0;
  }

  void build(Entry** heads, std::uint32_t chains, std::size_t entries) {
    drop();
    std::size_t slots = FirstSlots;
    while (slots * 3 < entries * 4) {
      slots *= 2;
    }
    built_ = allocate<Built>(1);
    if (built_ == nullptr) {
      return;
    }
    built_->slots = allocate<Slot>(slots);
    built_->ends = allocate<Entry**>(chains);
    built_->mask = slots - 1;
    built_->seed = chooseSeed();
    built_->changes = Links::countChanges();
    if (built_->slots == nullptr || built_->ends == nullptr) {
      drop();
      return;
    }
    insertAll(heads, chains);
  }

  // There is room for all.
  void insertAll(Entry** heads, std::uint32_t chains) {
    for (std::uint32_t chain = 0; chain < chains; ++chain) {
      Entry** link = &heads[chain];
      for (; *link != nullptr; link = &Links::next(**link)) {
        occupySlot(**link, link, chain);
      }
      built_->ends[chain] = link;
    }
  }

  // Returns whether there was memory for it.
  bool insert(Entry& entry, Entry** link, std::uint32_t chain) {
    if ((built_->used + 1) * 4 > (built_->mask + 1) * 3 && !grow()) {
      return false;
    }
    occupySlot(entry, link, chain);
    return true;
  }

  void occupySlot(Entry& entry, Entry** link, std::uint32_t chain) {
    place({&entry, link, Links::hash(entry, built_->seed), chain});
    ++built_->used;
    built_->unfindable += Links::isFindable(entry) ? 0 : 1;
    built_->isWatching = Links::watch(entry) || built_->isWatching;
  }

  // Says that `link` leads to what comes after an entry.
  void setLinkBehind(Entry& entry, Entry** link, std::uint32_t chain) {
    if (Entry* const next = Links::next(entry)) {
      find(*next)->link = link;
    } else {
      built_->ends[chain] = link;
    }
  }

  bool grow() { return resize((built_->mask + 1) * 2); }

  // Gives back half of the slots where few are in use.
  void shrink() {
    std::size_t const slots = built_->mask + 1;
    if (slots > FirstSlots && built_->used < slots / 8) {
      resize(slots / 2);
    }
  }

  // Returns whether there was memory for it.
  bool resize(std::size_t count) {
    Slot* const resized = allocate<Slot>(count);
    if (resized == nullptr) {
      return false;
    }
    std::size_t const old = built_->mask + 1;
    Slot* const slots = std::exchange(built_->slots, resized);
    built_->mask = count - 1;
    for (std::size_t i = 0; i < old; ++i) {
      if (slots[i].entry != nullptr) {
        place(slots[i]);
      }
    }
    std::free(slots);
    return true;
  }

  void place(Slot const& slot) {
    std::size_t i = slot.hash & built_->mask;
    while (built_->slots[i].entry != nullptr) {
      i = (i + 1) & built_->mask;
    }
    built_->slots[i] = slot;
  }

  // Returns the slot of an entry, or null. What is in a chain has one.
  Slot* find(Entry const& entry) const {
    std::size_t const mask = built_->mask;
    std::size_t const first = Links::hash(entry, built_->seed);
    for (std::size_t i = 0; i <= mask; ++i) {
      Slot* const slot = &built_->slots[(first + i) & mask];
      if (slot->entry == &entry) {
        return slot;
      }
    }
    return nullptr;
  }

  // Frees a slot, and moves into it what stands behind and would not be found over a free one.
  void close(std::size_t gap) {
    Slot* const slots = built_->slots;
    std::size_t const mask = built_->mask;
    for (std::size_t i = (gap + 1) & mask; slots[i].entry != nullptr; i = (i + 1) & mask) {
      std::size_t const wanted = slots[i].hash & mask;
      if (((i - wanted) & mask) >= ((i - gap) & mask)) {
        slots[gap] = slots[i];
        gap = i;
      }
    }
    slots[gap].entry = nullptr;
  }

  Built* built_ = nullptr;
  // Entries looked at beyond what short chains take, since the last drop, less those that had to be
  // first; or Forgone.
  std::ptrdiff_t walked_ = 0;
};

}  // namespace tarselvalues
