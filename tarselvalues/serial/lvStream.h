// Values in streams: `std::cout << value` writes the text of any cell or handle, as lvToText() has
// it. GoogleTest prints cells with it.
//
// A string is written as the text format has it, with quotes where it needs them, from an lvString
// too; for its bare text there is lvReadText(). This header brings the declaration of std::ostream
// alone: who writes to one includes <ostream> or <iostream>.
//
// Threads: one thread at a time for the value and all that is in it, and for the stream.
#pragma once

#include <iosfwd>
#include <string>
#include <type_traits>

#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/serial/lvText.h"

// Writes the text of `value` to `out`. One thread at a time.
template <class Traits, class Cell, class = std::enable_if_t<std::is_base_of_v<lvArg, Cell>>>
std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& out,
                                             Cell const& value) {
  std::string const text = lvToText(value);
  return out << text.c_str();
}
