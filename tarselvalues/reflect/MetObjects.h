// The objects that a walk has met. Not for users: lvWalk() is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tarselvalues/core/lvArg.h"

namespace tarselvalues {

// Holds each object, so that none of them ends and leaves its address to another meanwhile.
class MetObjects {
 public:
  enum State : std::uint32_t {
    Unknown = 0,
    Closed = 1,
    Open = 2,  // The walk is in it.
  };

  // Returns what is known of the object in `reference`, which is Closed from then on if it was
  // Unknown.
  State meet(lvArg const& reference);
  // The walk goes into an object that was met, or has left it.
  void setState(lvArg const& reference, State state);

 private:
  // The cell that has the object, or the free one that is to have it. There is always a free one.
  lvArg& find(lvArg const& reference);
  void grow();

  std::vector<lvArg> cells_;  // A power of two; nil: free; the bookkeeping bits are the state.
  std::size_t used_ = 0;
};

}  // namespace tarselvalues
