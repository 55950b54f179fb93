// The classes in a registry, to look at.
#pragma once

#include <string>

#include "support/Cells.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/reflect/LayoutAccess.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"

namespace test {

// The set of names and classes of a registry.
inline lvrTupleSet const& setOf(lvtClassRegistry const& registry) {
  auto const* const cell = reinterpret_cast<lvArg const*>(
      reinterpret_cast<char const*>(&registry) + lvLayoutAccess<lvtClassRegistry>::classesOffset);
  return dynamic_cast<lvrTupleSet const&>(*cell->getReferencable());
}

// The names in it, each with a blank behind.
inline std::string namesIn(lvtClassRegistry const& registry) {
  std::string names;
  for (int i = 0; i < setOf(registry).getSize(); ++i) {
    names += textOf(setOf(registry).getKey(i)) + " ";
  }
  return names;
}

}  // namespace test
