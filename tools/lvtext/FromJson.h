// JSON as text trees.
#pragma once

#include "JsonTree.h"
#include "Problems.h"
#include "TextTree.h"

// Returns the tree that toJson() makes `json` of. JSON knows values that text does not: names in
// `problems` what of it changes, or is left out.
//
//   true, false              1, 0
//   other numbers than integers of 32 bits become strings of what was written
//   a string with a NUL      is cut there
//   null in an object        its member is left out
//   more than 32 levels      nil stands for them
Node fromJson(JsonValue const& json, Problems& problems);
