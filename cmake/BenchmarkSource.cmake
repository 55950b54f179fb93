# Google Benchmark for cross builds, from the sources of Debian's package, which scripts/bench
# fetches.
include_guard(GLOBAL)

set(TARSELVALUES_BENCHMARK_SOURCE "${PROJECT_SOURCE_DIR}/build/benchmark-source" CACHE PATH
    "Google Benchmark's sources")
set(BENCHMARK_ENABLE_TESTING OFF)
set(BENCHMARK_ENABLE_INSTALL OFF)
set(BENCHMARK_ENABLE_WERROR OFF)
set(BUILD_SHARED_LIBS OFF)
set(CMAKE_BUILD_TYPE Release)
add_subdirectory("${TARSELVALUES_BENCHMARK_SOURCE}" "${PROJECT_BINARY_DIR}/benchmark"
                 EXCLUDE_FROM_ALL SYSTEM)
