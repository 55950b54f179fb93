// Pictures, made by the program dot of Graphviz.
#pragma once

#include <string>

// Has dot write the graph to standard output as SVG. Throws std::runtime_error when dot is not
// installed, or fails.
void writeSvg(std::string const& graph);
