// How the text parser makes its strings. Not for users.
#pragma once

#include <cstddef>
#include <new>

#include "tarselvalues/core/Counting.h"
#include "tarselvalues/core/OneBlockString.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvrString.h"

namespace tarselvalues {

// Returns a cell with a new string of its own.
inline lvArg makeString(char const* bytes, std::size_t count) {
  if (lvrString::fitsOneBlock(count, lvrString::CopyAndOwnEmpty)) {
    auto* const string = lvrString::make<lvrString>(bytes, count);
    Counting::take(*string);
    return lvArg::ofTaken(lvArg::StringType, *string);
  }
  auto* const string = new lvrString;
  lvArg cell(*string);
  if (string->setStringDataFast(bytes, static_cast<int>(count), lvrString::CopyAndOwnEmpty) != 0) {
    throw std::bad_alloc();
  }
  return cell;
}

}  // namespace tarselvalues
