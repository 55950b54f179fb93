// Writes trees as text: on one line, or indented.
#pragma once

#include <cstddef>
#include <string>

#include "TextTree.h"

// The text of a tree on one line, without blanks.
std::string oneLine(Node const& node);

// The text of a tree in lines of up to `width` columns, each level indented by two blanks. What is
// short enough stands on one line. A line is longer where a string or number is.
std::string indented(Node const& node, std::size_t width);

// Sorts the entries of all maps in a tree by their keys: nil, integers by value, strings by their
// bytes, then the others by their text.
void sortMaps(Node& node);
