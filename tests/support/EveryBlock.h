// For programs that count or refuse allocations: has the library keep no freed blocks for the next
// ones, as tarselvalues/core/BlockCache.h says.
#pragma once

extern "C" {
[[gnu::visibility("default"), gnu::used]] inline char const tarselvaluesKeepsNoBlocks = 1;
}
