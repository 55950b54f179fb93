// What the containers that keep their elements in one array of cells share. Not for users.
#pragma once

#include <algorithm>
#include <cstdint>

#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/lvArg.h"

namespace tarselvalues {

// Capacities and sizes are stored in 16 bits.
constexpr int MaxElements = 65535;

inline std::uint16_t cutToLimit(int capacity) {
  return static_cast<std::uint16_t>(std::clamp(capacity, 0, MaxElements));
}

// The capacity that a full array of `count` elements grows to.
inline int grownCapacity(int count) { return count * 3 / 2 + 10; }

// The one bit of a container's flags: its cache holds the hash of its elements.
constexpr std::uint16_t HashCached = 1;

// Hash of a sequence of cells, with 32-bit wrap-around; `elementAt` gives the cell at a position.
// `inUse` is how many there are, asked again for each: the hash of an element may be a function of
// the program that changes the sequence. What is gone by then counts as nil.
template <class ElementAt>
std::uint32_t hashElements(std::uint16_t const& inUse, ElementAt elementAt) {
  constexpr std::uint32_t startFactor = 74641;
  constexpr std::uint32_t factor = 4294938761;
  std::uint32_t hash = startFactor * inUse;
  for (int i = inUse - 1; i >= 0; --i) {
    hash = hash * factor + (i < inUse ? elementAt(i) : lvArg::NilValue).hashCode();
  }
  return hash;
}

// The hash of the container with these elements, flags and cache.
template <class ElementAt>
std::uint32_t cachedHash(lvReferencable const& container, std::uint16_t& flags,
                         std::uint32_t& cache, std::uint16_t const& inUse, ElementAt elementAt) {
  KeptWhileAsking self(container);
  if (flags == 0) {
    flags = HashCached;  // First: it is gone again if the container changes meanwhile.
    try {
      cache = hashElements(inUse, [&](int i) -> lvArg const& { return self.ask(elementAt(i)); });
    } catch (...) {
      flags = 0;
      throw;
    }
  }
  return cache;
}

}  // namespace tarselvalues
