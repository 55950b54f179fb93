// What is in values, in numbers.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <cstddef>
#include <string>
#include <vector>

// Returns a table of the values, which were read from a text of so many bytes: a line for each
// number, which begins with what it counts.
std::string statsOf(std::vector<lvArg> const& values, std::size_t textBytes);
