// Moves what a cell holds without touching a count, inline. Not for users.
#pragma once

#include <new>
#include <utility>

#include "tarselvalues/core/lvArg.h"

namespace tarselvalues {

// As `nil = std::move(from)`, for a cell that holds nothing. It keeps its own bookkeeping bits.
inline void moveIntoNil(lvArg& nil, lvArg&& from) {
  std::uint32_t const bits = nil.getBookkeeping();
  ::new (&nil) lvArg(std::move(from));  // What was there has nothing to release.
  nil.setBookkeeping(bits);
}

}  // namespace tarselvalues
