# pkg-config tells how to compile and link the program with the library in PREFIX, and it runs.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

# pkg_config(RESULT ARGUMENT...): what it answers, as a list.
function(pkg_config result)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env "PKG_CONFIG_LIBDIR=${PREFIX}/${LIBDIR}/pkgconfig"
            "${PKG_CONFIG}" ${ARGN} tarselvalues-mt
    OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(answer UNIX_COMMAND "${answer}")
  set(${result} "${answer}" PARENT_SCOPE)
endfunction()

make_consumer(consumer)
pkg_config(version --modversion)
if(NOT version STREQUAL VERSION)
  message(FATAL_ERROR "pkg-config says release ${version}, but it is ${VERSION}")
endif()
pkg_config(flags --cflags --libs)
execute_process(COMMAND "${CXX}" -std=c++17 consumer.cpp ${flags} -o consumer
  WORKING_DIRECTORY "${WORK}" COMMAND_ERROR_IS_FATAL ANY)
set(ENV{LD_LIBRARY_PATH} "${PREFIX}/${LIBDIR}")
run_consumer("${WORK}/consumer")
