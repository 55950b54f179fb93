# The newest entry of debian/changelog is for the release that the headers name.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

file(STRINGS "${SOURCE}/debian/changelog" newest LIMIT_COUNT 1)
string(FIND "${newest}" "tarselvalues (${VERSION}-" at)
if(NOT at EQUAL 0)
  message(FATAL_ERROR "the release is ${VERSION}, but debian/changelog begins with\n${newest}")
endif()
