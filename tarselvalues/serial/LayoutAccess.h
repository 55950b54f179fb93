// Where the fields of the text writer and parser lie, for layout checks and tests. Not for users.
#pragma once

#include <cstddef>

#include "tarselvalues/core/LayoutAccess.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"  // All classes here have a fixed layout.

template <>
struct lvLayoutAccess<lvtStringArgDest> {
  using T = lvtStringArgDest;
  static constexpr std::size_t bufferOffset = offsetof(T, buffer);
  static constexpr std::size_t capacityOffset = offsetof(T, capacity);
  static constexpr std::size_t lengthOffset = offsetof(T, length);
  static constexpr std::size_t flagsOffset = offsetof(T, flags);
  static constexpr std::size_t depthOffset = offsetof(T, depth);
  static constexpr std::size_t levelKindsOffset = offsetof(T, levelKinds);
  static int capacity(T const& writer) { return writer.capacity; }
  static unsigned flags(T const& writer) { return writer.flags; }
  static unsigned depth(T const& writer) { return writer.depth; }
  static std::uint32_t levelKinds(T const& writer) { return writer.levelKinds; }
};

template <>
struct lvLayoutAccess<lvtStringArgSource> {
  using T = lvtStringArgSource;
  static constexpr std::size_t lengthOffset = offsetof(T, length);
  static constexpr std::size_t offsetOffset = offsetof(T, offset);
  static constexpr std::size_t textOffset = offsetof(T, text);
  static constexpr std::size_t sourceStringOffset = offsetof(T, sourceString);
  static constexpr std::size_t stateOffset = offsetof(T, state);
  static constexpr std::size_t flagsOffset = offsetof(T, flags);
  static constexpr std::size_t errorCountOffset = offsetof(T, errorCount);
  static constexpr std::size_t tokenValueOffset = offsetof(T, tokenValue);
  static constexpr std::size_t pendingClassNameOffset = offsetof(T, pendingClassName);
  static constexpr std::size_t lastTokenOffset = offsetof(T, lastToken);
  static int state(T const& parser) { return parser.state; }
  static unsigned flags(T const& parser) { return parser.flags; }
  static lvArg const& tokenValue(T const& parser) { return parser.tokenValue; }
  static lvArg const& pendingClassName(T const& parser) { return parser.pendingClassName; }
  static lvArg const& sourceString(T const& parser) { return parser.sourceString; }
};

#pragma GCC diagnostic pop
