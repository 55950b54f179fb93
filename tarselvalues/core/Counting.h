// How a reference is taken and dropped, inline. Not for users.
#pragma once

#include "tarselvalues/core/ObjectLock.h"
#include "tarselvalues/core/lvReferencable.h"

namespace tarselvalues {

struct Counting {
  static void take(lvReferencable const& object) noexcept {
    ObjectLock const guard(object.mutex_);
    object.setCount(object.count() + 1);
  }

  // As object.__removeRef(), without a call where the object is still held.
  static int drop(lvReferencable& object) {
    if (isOnlyThread() && object.count() > 1) {
      object.setCount(object.count() - 1);
      return 0;
    }
    return object.__removeRef();
  }
};

}  // namespace tarselvalues
