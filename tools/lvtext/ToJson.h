// Text trees as JSON.
#pragma once

#include <string>

#include "Problems.h"
#include "TextTree.h"

// Returns a tree as JSON on one line. Names in `problems` what does not come back from it.
//
//   nil, integers, strings   null, numbers, strings. Bytes that are no UTF-8 are lost
//   list                     array
//   map                      object; keys that are no strings become strings. The name of an only
//                            member that begins with "*" gets another one in front
//   object                   object with one member: "*" and the class name, with an object of the
//                            fields if they have names, else with an array
std::string toJson(Node const& node, Problems& problems);
