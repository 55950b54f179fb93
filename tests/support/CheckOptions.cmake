# Fails unless COMMAND --help-all and the manual page PAGE, in mdoc, name the same options.
cmake_minimum_required(VERSION 3.25)

list(REMOVE_ITEM COMMAND "")
execute_process(COMMAND ${COMMAND} --help-all OUTPUT_VARIABLE help RESULT_VARIABLE status)
file(READ "${PAGE}" page)

string(REGEX MATCHALL "--[a-z][-a-z]*" in_help "${help}")
string(REGEX MATCHALL "Fl Fl [a-z][-a-z]*" in_page "${page}")
list(TRANSFORM in_page REPLACE "Fl Fl " "--")
foreach(options in_help in_page)
  list(REMOVE_DUPLICATES ${options})
  list(SORT ${options})
endforeach()
if(NOT status EQUAL 0 OR in_help STREQUAL "" OR NOT in_help STREQUAL in_page)
  message(FATAL_ERROR "--help-all tells of \"${in_help}\", the page of \"${in_page}\"")
endif()
