// How a map hands a previous value out. Not for users.
#pragma once

#include <utility>

#include "tarselvalues/core/lvArg.h"

namespace tarselvalues {

// Assigns `previous` to the cell at `old`, where that is not null. What the cell held before is
// dropped when this object goes out of scope: by then the map is whole again, and whatever runs
// during the drop may use it.
class DeliveredOld {
 public:
  DeliveredOld(lvArg* old, lvArg const& previous) {
    if (old != nullptr) {
      overwritten = std::move(*old);
      old->assign(previous);
    }
  }

 private:
  lvArg overwritten;
};

}  // namespace tarselvalues
