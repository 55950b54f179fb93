// What the library does for speed alone, and can be built without. Not for users.
//
// Built with TARSELVALUES_PLAIN, the library takes the plain road everywhere: it locks for each
// count, walks each chain, asks malloc() for each text. Its answers are the same.
#pragma once

namespace tarselvalues {

#ifdef TARSELVALUES_PLAIN
constexpr bool Tuned = false;
#else
constexpr bool Tuned = true;
#endif

}  // namespace tarselvalues
