# The public headers pull in no header of the C++ library but small ones: above all no streams, no
# locales, no std::string, no algorithms. The builder of classes, which is a template, has a
# std::vector in its objects; those that comfort.h includes have std::string and smart pointers, but
# no streams either; the other headers come without that.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

# With what these bring along.
set(light
  atomic climits cstddef cstdint exception initializer_list new optional type_traits typeinfo utility)
set(with_vector array compare vector)
set(builder "tarselvalues/(reflect/lvClassBuilder|tarselvalues)\\.h")
set(heavy
  algorithm fstream functional iomanip ios iostream istream locale map ostream regex sstream streambuf
  thread unordered_map)

# list_standard(RESULT HEADER...): the headers of the C++ library that these pull in. Those have no
# suffix; what lies in its folders are parts of others.
function(list_standard result)
  list(TRANSFORM ARGN REPLACE "(.+)" "#include <\\1>\n" OUTPUT_VARIABLE includes)
  file(WRITE "${WORK}/all.cpp" ${includes})
  execute_process(COMMAND "${CXX}" -std=c++17 -M -I "${PREFIX}/include" "${WORK}/all.cpp"
    OUTPUT_VARIABLE read COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "/c\\+\\+/[0-9]+/[a-z_]+[ \n\\]" standard "${read} ")
  list(TRANSFORM standard REPLACE ".*/([a-z_]+).*" "\\1")
  set(${result} "${standard}" PARENT_SCOPE)
endfunction()

# expect_only(WHAT STANDARD LIGHT...): fails where STANDARD, a list, has another than LIGHT.
function(expect_only what standard)
  list(REMOVE_ITEM standard ${ARGN})
  if(standard)
    list(JOIN standard ", " standard)
    message(SEND_ERROR "${what} pull in more of the C++ library: ${standard}")
  endif()
endfunction()

file(GLOB_RECURSE headers RELATIVE "${PREFIX}/include" "${PREFIX}/include/*.h")
file(STRINGS "${PREFIX}/include/tarselvalues/comfort.h" comfort REGEX "^#include ")
list(TRANSFORM comfort REPLACE "^#include \"(.+)\"$" "\\1")
list(REMOVE_ITEM comfort tarselvalues/tarselvalues.h)
list(REMOVE_ITEM headers ${comfort} tarselvalues/comfort.h)

list_standard(standard ${comfort})
if(NOT "string" IN_LIST standard)
  message(FATAL_ERROR "what the comfortable headers include is not told")
endif()
foreach(header IN LISTS heavy)
  if(header IN_LIST standard)
    message(SEND_ERROR "the comfortable headers pull in <${header}>")
  endif()
endforeach()

list_standard(standard ${headers})
if(NOT "vector" IN_LIST standard)
  message(FATAL_ERROR "what the headers include is not told")
endif()
expect_only("the public headers" "${standard}" ${light} ${with_vector})

list(FILTER headers EXCLUDE REGEX "^${builder}$")
list_standard(standard ${headers})
if(NOT "type_traits" IN_LIST standard)
  message(FATAL_ERROR "what the headers but the builder include is not told")
endif()
expect_only("the public headers but the builder" "${standard}" ${light})
