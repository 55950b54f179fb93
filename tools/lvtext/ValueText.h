// The text of a value, such that reading it makes the same value again.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <string>

// Returns the text of `value`, which must not be nested deeper than lvtStringArgDest::MaxDepth.
//
// It is the text that the library writes, but for two things that the library does not read back as
// they were: a backslash is written as %5C, and an empty map as {()}, a map with an entry that says
// nothing.
std::string valueText(lvArg const& value);
