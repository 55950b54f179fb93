# The program's own build compiles the library with it, from a folder within, and the program runs. What
# is installed with it has the library, and no documents among those of the program.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

make_consumer(subproject)
file(CREATE_LINK "${SOURCE}" "${WORK}/tarselvalues" SYMBOLIC)
build_consumer()
run_consumer("${WORK}/build/consumer")

execute_process(
  COMMAND "${CMAKE_COMMAND}" --install "${WORK}/build" --prefix "${WORK}/installed"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
if(NOT EXISTS "${WORK}/installed/${LIBDIR}/libtarselvalues-mt.so.${VERSION_MAJOR}")
  message(SEND_ERROR "the library is not installed with the program")
endif()
file(GLOB_RECURSE documents RELATIVE "${WORK}/installed" "${WORK}/installed/share/doc/*"
  "${WORK}/installed/share/man/*")
if(documents)
  message(SEND_ERROR "installed among the program's own documents: ${documents}")
endif()
