# What every target of this project is compiled with.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

# Usage requirement of our own targets only: neither GoogleTest nor users inherit it. A warning is an
# error for those who work on the library, but not for users, whose compilers may warn of more.
add_library(tarselvalues-warnings INTERFACE)
target_compile_options(tarselvalues-warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(TARSELVALUES_WARNINGS_ARE_ERRORS)
  target_compile_options(tarselvalues-warnings INTERFACE -Werror)
endif()

# Sanitizers go into everything, GoogleTest included.
if(TARSELVALUES_SANITIZE)
  add_compile_options("-fsanitize=${TARSELVALUES_SANITIZE}" -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options("-fsanitize=${TARSELVALUES_SANITIZE}")
endif()

# Counters go into the code of the library, which is also what its headers leave in other programs.
if(TARSELVALUES_COVERAGE)
  add_compile_definitions(TARSELVALUES_COVERAGE)
  string(REGEX REPLACE "([][+.*()^$|?])" "\\\\\\1" source_pattern "${PROJECT_SOURCE_DIR}")
  add_compile_options(--coverage -fprofile-update=atomic
                      "-fprofile-filter-files=${source_pattern}/tarselvalues/.*")
  # Each program and library has counters of its own, or one would keep another loaded.
  add_link_options(--coverage "LINKER:--exclude-libs,libgcov.a")
endif()
