// How two texts differ, told by path.
#pragma once

#include <string>
#include <vector>

#include "TextTree.h"

// Returns a line for each value that is only in the first text ("< PATH: VALUE"), or only in the
// second ("> PATH: VALUE"); both where a value has changed. Empty if there is no difference.
//
// A path is the number of the value in the text, [0] for the first, followed by [INDEX] for an
// element, (KEY) for the value under a key, .FIELD for a field. The order of a map's entries is no
// difference. Of two lists, what is equal at their beginnings and ends is set aside, and the rest
// compared by its places. Sorts the maps.
std::string differencesOf(std::vector<Node>& left, std::vector<Node>& right);
