// The text of a value, however long.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <string>

// Returns the text of `value`, which must not be nested deeper than lvtStringArgDest::MaxDepth.
std::string valueText(lvrCommonSerializer& serializer, lvArg const& value);
