// Finds what belongs to an interned name by the address of the name's string. Not for users.
//
// Interned strings with equal texts are one object, so no texts need be compared. The index stands
// beside a map of the same names, and holds no references: the map does. A name that is not found
// here must be looked for there.
//
// All that holds for as long as texts stay as they are. So nothing is found here any more once an
// interned text has been set anew (lvrString::getEntryTextChanges()), or when the map gets a name
// that is not interned.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/Tuning.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"

namespace tarselvalues {

template <class Value>
class NameIndex {
 public:
  struct Slot {
    lvReferencable const* name;  // null: the slot is free
    Value value;
  };

  // How many slots so many names take: a power of two, more than half of which stay free.
  static constexpr std::size_t slotsFor(std::size_t names) {
    std::size_t slots = 4;
    while (slots <= 2 * names) {
      slots *= 2;
    }
    return slots;
  }

  // Uses free slots that somebody else provides: as many as slotsFor() says.
  constexpr NameIndex(Slot* freeSlots, std::size_t names)
      : slots(freeSlots), mask(slotsFor(names) - 1), room(names) {}

  // Gives a name this value in place of the one that it had. Does nothing where there is no room.
  void set(lvArg const& name, Value value) {
    if (used == 0) {
      changes = lvrString::getEntryTextChanges();
    }
    isTrusted = isTrusted && isInterned(name);
    if (!isTrusted || used == room) {
      return;
    }
    Slot& slot = slots[slotOf(*name.getReferencable())];
    used += slot.name == nullptr ? 1 : 0;
    slot = {name.getReferencable(), value};
  }

  // Returns the value of a name, or null.
  Value const* find(lvArg const& name) const {
    if (!Tuned || !isTrusted || changes != lvrString::getEntryTextChanges() ||
        name.getType() != lvArg::StringType || name.getReferencable() == nullptr) {
      return nullptr;
    }
    Slot const& slot = slots[slotOf(*name.getReferencable())];
    return slot.name != nullptr ? &slot.value : nullptr;
  }

 private:
  static bool isInterned(lvArg const& name) {
    lvReferencable const* const object = name.getReferencable();
    return name.getType() == lvArg::StringType && object != nullptr &&
           isExactly<lvString::StringEntry>(*object);
  }

  // Where a name is, or the free slot where it would be.
  std::size_t slotOf(lvReferencable const& name) const {
    auto const address = reinterpret_cast<std::uintptr_t>(&name);
    std::size_t i = (address >> 4) ^ (address >> 10);
    while (slots[i & mask].name != nullptr && slots[i & mask].name != &name) {
      ++i;
    }
    return i & mask;
  }

  Slot* slots;
  std::size_t mask;
  std::size_t room;
  std::size_t used = 0;
  std::uint32_t changes = 0;  // of interned texts, when the first name came
  bool isTrusted = true;
};

}  // namespace tarselvalues
