// What the library does for speed alone, and can be built without. Not for users.
//
// Built with TARSELVALUES_PLAIN, the library locks for each count, walks each chain, asks malloc()
// for each text, keeps no block for the next, and reads, writes and compares all values through the
// general functions. Its answers are the same. What has no plain counterpart stays: results that
// are moved, cells that are shifted without being counted, containers that are kept alive only
// where a function of the program may run, mutexes that are initialised statically.
#pragma once

namespace tarselvalues {

#ifdef TARSELVALUES_PLAIN
constexpr bool Tuned = false;
#else
constexpr bool Tuned = true;
#endif

}  // namespace tarselvalues
