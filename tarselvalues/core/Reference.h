// How the library itself takes and drops references. Not for users: they hold cells.
//
// A count is touched in Counting, in KeptAlive and in lvReferencable only. It says
// how many cells, handles and cursors hold the object; see lvReferencable.h for its other values.
#pragma once

#include <optional>

#include "tarselvalues/core/Export.h"

class lvArg;
class lvReferencable;

namespace tarselvalues {

struct Counting;

// Takes a reference: adds one to the count, under the object's lock while there are other threads.
TARSELVALUES_INTERNAL void takeReference(lvReferencable const& object) noexcept;

// Drops a reference: const_cast in one place, because cursors hold const objects.
TARSELVALUES_INTERNAL void dropReference(lvReferencable const& object);

// Whether comparing or hashing the object may run a function of the program. The library's own
// strings run none.
TARSELVALUES_INTERNAL bool mayRunProgram(lvReferencable const& object);

// Takes a reference to an object that somebody holds, and drops it at its end: for what goes on
// after a function of the program has run, which may have dropped the last other reference. An
// object that nobody holds, or that is at its end, is left alone.
class TARSELVALUES_INTERNAL KeptAlive {
 public:
  // Does nothing, and locks nothing, where it is not needed.
  explicit KeptAlive(lvReferencable const& kept, bool isNeeded = true) noexcept : object(nullptr) {
    if (isNeeded) {
      keep(kept);
    }
  }
  ~KeptAlive() {
    if (object != nullptr) {
      dropReference(*object);
    }
  }
  KeptAlive(KeptAlive const&) = delete;
  KeptAlive& operator=(KeptAlive const&) = delete;

 private:
  void keep(lvReferencable const& kept) noexcept;

  lvReferencable const* object;
};

// Keeps a container alive while it compares, hashes or releases cells, from the first one on that
// may run a function of the program. Most never do: then no lock is taken; nor is one where it is
// not needed, because the container is kept alive already.
class TARSELVALUES_INTERNAL KeptWhileAsking {
 public:
  explicit KeptWhileAsking(lvReferencable const& asking, bool isNeeded = true)
      : container(isNeeded ? &asking : nullptr) {}
  // Returns the cell, which may then be compared, hashed or released.
  lvArg const& ask(lvArg const& cell);

 private:
  lvReferencable const* container;  // null once it is kept
  std::optional<KeptAlive> kept;
};

}  // namespace tarselvalues
