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
  static constexpr std::size_t bufferOffset = offsetof(T, buffer_);
  static constexpr std::size_t capacityOffset = offsetof(T, capacity_);
  static constexpr std::size_t lengthOffset = offsetof(T, length_);
  static constexpr std::size_t flagsOffset = offsetof(T, flags_);
  static constexpr std::size_t depthOffset = offsetof(T, depth_);
  static constexpr std::size_t levelKindsOffset = offsetof(T, levelKinds_);
  static int capacity(T const& writer) { return writer.capacity_; }
  static unsigned flags(T const& writer) { return writer.flags_; }
  static unsigned depth(T const& writer) { return writer.depth_; }
  static std::uint32_t levelKinds(T const& writer) { return writer.levelKinds_; }
  static void setFlags(T& writer, unsigned flags) {
    writer.flags_ = static_cast<std::uint16_t>(flags);
  }
};

template <>
struct lvLayoutAccess<lvtStringArgSource> {
  using T = lvtStringArgSource;
  static constexpr std::size_t lengthOffset = offsetof(T, length_);
  static constexpr std::size_t offsetOffset = offsetof(T, offset_);
  static constexpr std::size_t textOffset = offsetof(T, text_);
  static constexpr std::size_t sourceStringOffset = offsetof(T, sourceString_);
  static constexpr std::size_t stateOffset = offsetof(T, state_);
  static constexpr std::size_t flagsOffset = offsetof(T, flags_);
  static constexpr std::size_t errorCountOffset = offsetof(T, errorCount_);
  static constexpr std::size_t tokenValueOffset = offsetof(T, tokenValue_);
  static constexpr std::size_t pendingClassNameOffset = offsetof(T, pendingClassName_);
  static constexpr std::size_t lastTokenOffset = offsetof(T, lastToken_);
  static int state(T const& parser) { return parser.state_; }
  static unsigned flags(T const& parser) { return parser.flags_; }
  static lvArg const& tokenValue(T const& parser) { return parser.tokenValue_; }
  static lvArg const& pendingClassName(T const& parser) { return parser.pendingClassName_; }
  static lvArg const& sourceString(T const& parser) { return parser.sourceString_; }
};

#pragma GCC diagnostic pop
