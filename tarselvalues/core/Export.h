// Marks what the shared library exports. Everything else in it is hidden. Not for users.
#pragma once

#define TARSELVALUES_API __attribute__((visibility("default")))

// For members of an exported class that only the library itself may call.
#define TARSELVALUES_INTERNAL __attribute__((visibility("hidden")))
