// How the library itself takes and drops references. Not for users: they hold cells.
//
// A count is touched here and in lvReferencable::__removeRef() only. It says how many cells,
// handles and cursors hold the object; see lvReferencable.h for its other values.
#pragma once

#include "tarselvalues/core/Export.h"

class lvReferencable;

namespace tarselvalues {

// Takes a reference: locks `object`, increments its count, unlocks.
TARSELVALUES_INTERNAL void takeReference(lvReferencable const& object) noexcept;

// Drops a reference: const_cast in one place, because cursors hold const objects.
TARSELVALUES_INTERNAL void dropReference(lvReferencable const& object);

}  // namespace tarselvalues
