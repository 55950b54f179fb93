// Reads cells, with an answer of the program's own for those that hold something else.
//
// Nothing is converted: the string "42" is no integer. lvValue converts.
//
// Threads: one thread at a time per cell.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvValue.h"

// Returns the integer, or `otherwise`. One thread at a time.
inline int lvReadInt(lvArg const& value, int otherwise) {
  return value.getType() == lvArg::IntType ? value.getInt() : otherwise;
}

// Returns whether the integer is not 0, or `otherwise`. One thread at a time.
inline bool lvReadBool(lvArg const& value, bool otherwise) {
  return lvReadInt(value, otherwise ? 1 : 0) != 0;
}

// Returns a copy of the text of a string, or `otherwise`: also for a string without text. A text of
// 65,535 bytes or more ends at its first NUL. One thread at a time.
inline std::string lvReadText(lvArg const& value, std::string otherwise) {
  int length = 0;
  char const* const text =
      value.getType() == lvArg::StringType ? lvValue(value).getString(&length) : nullptr;
  return text != nullptr ? std::string(text, static_cast<std::size_t>(length))
                         : std::move(otherwise);
}
