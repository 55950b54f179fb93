// Arithmetic on addresses that is the same on every target. Not for users.
#pragma once

#include <algorithm>
#include <climits>
#include <cstdint>

namespace tarselvalues {

// Returns a - b as an int: on 32-bit targets the wrapped difference, on 64-bit targets the
// difference cut to the range of int, so that distinct words never differ by 0.
inline int wordDifference(std::intptr_t a, std::intptr_t b) {
  auto const difference =
      static_cast<std::intptr_t>(static_cast<std::uintptr_t>(a) - static_cast<std::uintptr_t>(b));
  return static_cast<int>(std::clamp<std::intptr_t>(difference, INT_MIN, INT_MAX));
}

inline std::intptr_t addressWord(void const* address) {
  return reinterpret_cast<std::intptr_t>(address);
}

}  // namespace tarselvalues
