# The public headers pull in no header of the C++ library but these, which are small or which these
# bring along: above all no streams, no locales, no std::string, no algorithms.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

set(light
  array atomic climits compare cstddef cstdint cstdlib exception initializer_list new optional
  type_traits typeinfo utility vector)

file(GLOB_RECURSE headers RELATIVE "${PREFIX}/include" "${PREFIX}/include/*.h")
list(TRANSFORM headers REPLACE "(.+)" "#include <\\1>\n")
file(WRITE "${WORK}/all.cpp" ${headers})
execute_process(COMMAND "${CXX}" -std=c++17 -M -I "${PREFIX}/include" "${WORK}/all.cpp"
  OUTPUT_VARIABLE read COMMAND_ERROR_IS_FATAL ANY)

# A header of the C++ library has no suffix; those in its folders are parts of others.
string(REGEX MATCHALL "/c\\+\\+/[0-9]+/[a-z_]+[ \n\\]" standard "${read} ")
list(TRANSFORM standard REPLACE ".*/([a-z_]+).*" "\\1")
if(NOT "vector" IN_LIST standard)
  message(FATAL_ERROR "what the headers include cannot be told from:\n${read}")
endif()
list(REMOVE_ITEM standard ${light})
if(standard)
  list(JOIN standard ", " standard)
  message(FATAL_ERROR "the public headers pull in more of the C++ library: ${standard}")
endif()
