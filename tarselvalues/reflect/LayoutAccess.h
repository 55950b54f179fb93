// Where the fields of the reflection classes lie, for layout checks and tests. Not for users.
#pragma once

#include <cstddef>

#include "tarselvalues/core/LayoutAccess.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvrClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"  // All classes here have a fixed layout.

template <>
struct lvLayoutAccess<lvrClass> {
  static constexpr std::size_t defaultCtorOffset = offsetof(lvrClass, defaultCtor_);
  static constexpr std::size_t superClassOffset = offsetof(lvrClass, superClass_);
  static constexpr std::size_t classNameOffset = offsetof(lvrClass, className_);
  static constexpr std::size_t reflectionOffset = offsetof(lvrClass, reflection_);
};

template <>
struct lvLayoutAccess<lvtClassRegistry> {
  static constexpr std::size_t classesOffset = offsetof(lvtClassRegistry, classes_);
};

#pragma GCC diagnostic pop
