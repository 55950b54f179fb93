// Growable arrays of cells that are kept sorted: what the tuple set and the sorted list share. Not
// for users.
//
// An item is one cell or a pair of them. The array comes from realloc() and is moved bytewise: a
// cell has no address of its own that anything points to, so neither growth nor making room touches
// a reference count. Items beyond those in use are all-zero, which is nil.
#pragma once

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "tarselvalues/containers/SearchedKey.h"
#include "tarselvalues/core/lvArg.h"

namespace tarselvalues {

constexpr int GrowthFailed = -12;

// The exit status of a container that cannot grow during an insertion.
constexpr int GrowthExitStatus = 13;

// Ends the process if what expand() answered says so.
inline void exitUnlessGrown(int status) {
  if (status != 0) {
    std::exit(GrowthExitStatus);  // NOLINT(concurrency-mt-unsafe): other threads end with it.
  }
}

// Zeroes `n` items without releasing what they hold.
template <class Item>
void zeroItems(Item* items, std::int32_t n) {
  std::memset(static_cast<void*>(items), 0, static_cast<std::size_t>(n) * sizeof(Item));
}

template <class Item>
void moveItems(Item* to, Item const* from, std::int32_t n) {
  std::memmove(static_cast<void*>(to), static_cast<void const*>(from),
               static_cast<std::size_t>(n) * sizeof(Item));
}

// Makes room for `needed` items: by `step`, or by as many as it takes. Returns 0, or GrowthFailed:
// then the array and what it held are gone, `items` is null, `inUse` 0, and `capacity` raised
// already; the next growth starts from nothing.
template <class Item>
int growItems(Item*& items, std::int32_t& inUse, std::int32_t& capacity, std::uint32_t step,
              std::int32_t needed) {
  if (needed <= 0 || (items != nullptr && capacity >= needed)) {
    return 0;
  }
  std::int32_t const old = items != nullptr ? capacity : 0;
  auto const stepped = std::int64_t{old} + step;
  capacity = static_cast<std::int32_t>(
      std::min<std::int64_t>(std::max<std::int64_t>(stepped, needed), INT32_MAX));
  auto const wanted = static_cast<std::size_t>(capacity);
  void* const grown = wanted <= PTRDIFF_MAX / sizeof(Item)
                          ? std::realloc(static_cast<void*>(items), wanted * sizeof(Item))
                          : nullptr;
  if (grown == nullptr) {
    Item* const lost = std::exchange(items, nullptr);
    inUse = 0;
    std::destroy_n(lost, old);
    std::free(static_cast<void*>(lost));
    return GrowthFailed;
  }
  items = static_cast<Item*>(grown);
  zeroItems(items + old, capacity - old);
  return 0;
}

// Moves the items from `position` on up by one and zeroes the one at `position`. Requires room.
template <class Item>
void openGap(Item* items, std::int32_t inUse, std::int32_t position) {
  moveItems(items + position + 1, items + position, inUse - position);
  zeroItems(items + position, 1);
}

// Moves the items behind `position` down by one, over the one there, which must hold nothing.
template <class Item>
void closeGap(Item* items, std::int32_t inUse, std::int32_t position) {
  moveItems(items + position, items + position + 1, inUse - position - 1);
  zeroItems(items + inUse - 1, 1);
}

// Where a search ended.
struct Probe {
  int position;  // of an equal cell, or the one probed last: a neighbour of where the key belongs
  int order;     // of the key against the cell there
  bool found;
};

// Bisection for a key in the positions from `low` up to `high`, by its `order` against a cell.
// `cellAt` gives the cell at a position, `inUse` is how many there are: both are asked again after
// each comparison, which may run a function of the program that changes the array.
template <class Order, class CellAt>
Probe bisectBy(Order order, int low, int high, std::int32_t const& inUse, CellAt cellAt) {
  Probe probe{low, 0, false};
  while (low < high && high <= inUse) {
    int const middle = low + (high - low) / 2;
    probe.position = middle;
    probe.order = order(cellAt(middle));
    if (probe.order == 0) {
      probe.found = middle < inUse;
      break;
    }
    if (probe.order > 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return probe;
}

// Chooses without a branch.
inline int choose(bool isFirst, int first, int second) {
  int const mask = -static_cast<int>(isFirst);
  return second ^ ((first ^ second) & mask);
}

// The same steps for an integer. A processor foresees every other step at best: so both steps are
// worked out, and one is chosen when the comparison is there.
template <class CellAt>
Probe bisectForInteger(int number, int low, int high, CellAt cellAt) {
  Probe probe{low, 0, false};
  int middle = low + (high - low) / 2;
  while (low < high) {
    probe.position = middle;
    probe.order = orderOfInteger(number, cellAt(middle));
    if (probe.order == 0) {
      probe.found = true;
      break;
    }
    bool const isUp = probe.order > 0;
    int const above = middle + 1;
    int const next = choose(isUp, above + (high - above) / 2, low + (middle - low) / 2);
    low = choose(isUp, above, low);
    high = choose(isUp, high, middle);
    middle = next;
  }
  return probe;
}

// Bisection in the positions from `low` up to `high`, which is at most `inUse`.
template <class CellAt>
Probe bisect(SearchedKey const& searched, int low, int high, std::int32_t const& inUse,
             CellAt cellAt) {
  lvArg const& key = searched.get();
  switch (searched.getWay()) {
    case SearchedKey::Way::Integer:
      return bisectForInteger(key.getInt(), low, high, cellAt);
    case SearchedKey::Way::Text: {
      char const* const text =
          static_cast<lvrString const&>(*key.getReferencable()).getTextOrEmpty();
      return bisectBy([&](lvArg const& cell) { return orderOfText(key, text, cell); }, low, high,
                      inUse, cellAt);
    }
    default:
      return bisectBy([&](lvArg const& cell) { return key.compareTo(cell); }, low, high, inUse,
                      cellAt);
  }
}

// Where a key belongs that was not found there. `cellAt` and `inUse` as above; comparing once more
// may change both.
template <class CellAt>
int placeFor(SearchedKey const& searched, Probe const& probe, std::int32_t const& inUse,
             CellAt cellAt) {
  bool isBehind = probe.order > 0;
  if (!searched.isDirect()) {
    isBehind = probe.position < inUse && searched.get().compareTo(cellAt(probe.position)) > 0;
  }
  return std::min(isBehind ? probe.position + 1 : probe.position, inUse);
}

}  // namespace tarselvalues
