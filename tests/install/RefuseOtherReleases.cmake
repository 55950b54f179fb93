# find_package() takes the library neither for a later release than it is nor for an earlier major one.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

math(EXPR later_major "${VERSION_MAJOR} + 1")
math(EXPR earlier_major "${VERSION_MAJOR} - 1")
foreach(asked "${VERSION_MAJOR}.99" "${later_major}.0" "${earlier_major}.9")
  make_consumer(consumer)
  file(READ "${WORK}/CMakeLists.txt" text)
  string(REGEX REPLACE "(find_package.tarselvalues) [0-9.]+" "\\1 ${asked}" text "${text}")
  file(WRITE "${WORK}/CMakeLists.txt" "${text}")

  configure_consumer(status errors "-DCMAKE_PREFIX_PATH=${PREFIX}")
  if(status EQUAL 0)
    message(FATAL_ERROR "taken for release ${asked}, but it is ${VERSION}")
  elseif(NOT errors MATCHES "requested[ \n]+version[ \n]+\"${asked}\"")
    message(FATAL_ERROR "refused for another reason than release ${asked}:\n${errors}")
  endif()
endforeach()
