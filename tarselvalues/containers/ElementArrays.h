// What the containers that keep their elements in one array of cells share. Not for users.
#pragma once

#include <algorithm>
#include <cstdint>

#include "tarselvalues/core/lvArg.h"

namespace tarselvalues {

// Capacities and sizes are stored in 16 bits.
constexpr int MaxElements = 65535;

inline std::uint16_t cutToLimit(int capacity) {
  return static_cast<std::uint16_t>(std::clamp(capacity, 0, MaxElements));
}

// The capacity that a full array of `count` elements grows to.
inline int grownCapacity(int count) { return count * 3 / 2 + 10; }

// Hash of a sequence of cells, with 32-bit wrap-around; `elementAt` gives the cell at a position,
// also at one that is gone by then: the hash of an element may be the program's own function, which
// may change the sequence.
template <class ElementAt>
std::uint32_t hashElements(int count, ElementAt elementAt) {
  constexpr std::uint32_t startFactor = 74641;
  constexpr std::uint32_t factor = 4294938761;
  std::uint32_t hash = startFactor * static_cast<std::uint32_t>(count);
  for (int i = count - 1; i >= 0; --i) {
    hash = hash * factor + elementAt(i).hashCode();
  }
  return hash;
}

}  // namespace tarselvalues
