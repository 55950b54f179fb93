# GoogleTest, built from the sources that Debian's package googletest installs. Added once, by the
# first folder that needs it, with that folder's settings.
include_guard(GLOBAL)

set(TARSELVALUES_GOOGLETEST_SOURCE "/usr/src/googletest" CACHE PATH
    "GoogleTest's sources, as Debian's package googletest installs them")
set(BUILD_SHARED_LIBS OFF)
set(INSTALL_GTEST OFF)
add_subdirectory("${TARSELVALUES_GOOGLETEST_SOURCE}" "${PROJECT_BINARY_DIR}/googletest"
                 EXCLUDE_FROM_ALL SYSTEM)
