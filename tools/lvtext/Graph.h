// Values as a picture, in the language of Graphviz.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <string>
#include <vector>

// Returns a DOT graph of the values: a box for each container and object, with its atoms in it, and
// an arrow to each container and object that it refers to. What several refer to is one box, with a
// thick frame. Arrows that lead round in a circle are red. Several values are the rows of a box "text".
std::string dotGraph(std::vector<lvArg> const& values);
