// One-call conversion between values and the text format.
//
// Threads: one thread at a time for a value that is written and all that is in it.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvString.h"

// Returns the text of `value`, cut after 4089 characters without a word; longer texts take an
// lvtStringArgDest over a larger buffer. What cannot be written ends the text where it stands, or
// the level around it, which is then closed twice.
// Nil without memory for the text. One thread at a time.
TARSELVALUES_API lvString lvToolsToString(lvArg const& value);

// Reads one value, with all that is in it. `consumed` receives the offset just after the last token
// that was used, so that reading can go on there. Nil if there is no value to read; then all of the
// text that was looked at is consumed. Any thread.
TARSELVALUES_API lvArg lvToolsFromString(lvString const& text, int& consumed);
