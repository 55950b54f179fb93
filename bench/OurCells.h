// Keys and values of our maps, and elements of our lists.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <string>

#include "bench/Maps.h"

namespace bench {

struct OurCells {
  using Key = lvArg;
  using Value = lvArg;

  static lvArg makeKey(Keys const& keys, int number) {
    lvArg integer;
    if (keys.textOf == nullptr) {
      integer.setInt(number * keys.factor);
      return integer;
    }
    std::string const text = keys.textOf(number);
    return keys.interned ? lvString(text.c_str()) : makeValue(text);
  }

  // A string object of its own.
  static lvArg makeValue(std::string const& text) {
    lvValue value;
    value.setString(text.c_str(), -1, lvrString::CopyAndOwn);
    return value;
  }
};

}  // namespace bench
