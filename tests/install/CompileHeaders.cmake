# Each public header compiles alone with COMPILER, without a warning, the way a user includes it: from
# a folder of the user's own, not one of the system's, where compilers do not warn.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

file(REMOVE_RECURSE "${WORK}")
file(GLOB_RECURSE headers RELATIVE "${PREFIX}/include" "${PREFIX}/include/*.h")
if(NOT headers)
  message(FATAL_ERROR "no header in ${PREFIX}/include")
endif()
set(sources "")
foreach(header IN LISTS headers)
  string(REPLACE "/" "-" source "${header}.cpp")
  file(WRITE "${WORK}/${source}" "#include <${header}>\n")
  list(APPEND sources "${source}")
endforeach()
execute_process(
  COMMAND "${COMPILER}" -std=c++17 -Wall -Wextra -Wpedantic -Wconversion -Werror -fsyntax-only
          -I "${PREFIX}/include" ${sources}
  WORKING_DIRECTORY "${WORK}" COMMAND_ERROR_IS_FATAL ANY)
