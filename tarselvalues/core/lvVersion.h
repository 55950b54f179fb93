// The release of the library: of these headers, and of the library that a program has loaded.
//
// A release is MAJOR.MINOR.PATCH. Programs that were linked with one release run with every later
// one of the same MAJOR, which the name of the library file holds too (libtarselvalues-mt.so.1).
#pragma once

#include "tarselvalues/core/Export.h"

// MAJOR of these headers. The build system reads all three from here.
#define TARSELVALUES_VERSION_MAJOR 1
// MINOR of these headers.
#define TARSELVALUES_VERSION_MINOR 0
// PATCH of these headers.
#define TARSELVALUES_VERSION_PATCH 0

// Sets `major`, `minor` and `patch` to the release of the library that is loaded, which may be later
// than that of the headers. Any thread.
TARSELVALUES_API void lvGetVersion(int& major, int& minor, int& patch) noexcept;
