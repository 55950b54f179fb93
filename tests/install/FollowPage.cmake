# Does what the section SECTION of PAGE says, with the library in PREFIX: in a folder with the first
# program and the CMakeLists.txt that the page shows. PYTHON runs the commands.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

file(REMOVE_RECURSE "${WORK}")
file(COPY "${SOURCE}/examples/first.cpp" "${SOURCE}/tests/install/start/CMakeLists.txt"
  DESTINATION "${WORK}")
# What an installation of the system's own needs no help with.
set(ENV{CMAKE_PREFIX_PATH} "${PREFIX}")
set(ENV{PKG_CONFIG_LIBDIR} "${PREFIX}/${LIBDIR}/pkgconfig")
set(ENV{LD_LIBRARY_PATH} "${PREFIX}/${LIBDIR}")
execute_process(
  COMMAND "${PYTHON}" -B "${SOURCE}/scripts/lib/journey.py" "${SOURCE}/${PAGE}" "${SECTION}"
  WORKING_DIRECTORY "${WORK}" COMMAND_ERROR_IS_FATAL ANY)
