# Built as docs/install.md has it, the sources take a warning for no error: a user's compiler may know
# more of them.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

file(REMOVE_RECURSE "${WORK}")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -G Ninja -S "${SOURCE}" -B "${WORK}" -DCMAKE_BUILD_TYPE=Release
          "-DCMAKE_CXX_COMPILER=${CXX}" -DTARSELVALUES_BUILD_TESTS=OFF
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(READ "${WORK}/compile_commands.json" commands)
if(NOT commands MATCHES " -Wall ")
  message(FATAL_ERROR "what the compiler is called with is not told")
elseif(commands MATCHES " -Werror")
  message(FATAL_ERROR "a warning of a user's compiler ends the build")
endif()
