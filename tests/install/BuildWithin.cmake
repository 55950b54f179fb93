# The program's own build compiles the library with it, from a folder within, and the program runs.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

make_consumer(subproject)
file(CREATE_LINK "${SOURCE}" "${WORK}/tarselvalues" SYMBOLIC)
build_consumer()
run_consumer("${WORK}/build/consumer")
