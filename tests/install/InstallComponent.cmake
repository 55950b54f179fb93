# Installs COMPONENT alone and fails unless it brings the files that components/COMPONENT.txt lists,
# one on a line, and no others.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

file(REMOVE_RECURSE "${WORK}")
execute_process(
  COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}" --component "${COMPONENT}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE installed RELATIVE "${WORK}" "${WORK}/*")

file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/components/${COMPONENT}.txt" listed)
foreach(setting LIBDIR FULL_LIBDIR VERSION VERSION_MAJOR BUILD_TYPE)
  list(TRANSFORM listed REPLACE "@${setting}@" "${${setting}}")
endforeach()

set(missing ${listed})
list(REMOVE_ITEM missing ${installed})
set(unlisted ${installed})
list(REMOVE_ITEM unlisted ${listed})
if(missing OR unlisted)
  list(JOIN missing "\n  " missing)
  list(JOIN unlisted "\n  " unlisted)
  message(FATAL_ERROR
    "listed but not installed:\n  ${missing}\ninstalled but not listed:\n  ${unlisted}")
endif()
