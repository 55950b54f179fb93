# Fails unless COMMAND, which lists its works when it is called alone, does a round of each.
cmake_minimum_required(VERSION 3.25)

list(REMOVE_ITEM COMMAND "")
execute_process(COMMAND ${COMMAND} OUTPUT_VARIABLE listed RESULT_VARIABLE status)
string(REGEX MATCHALL "[^\n ]+ [0-9]+\n" works "${listed}")
if(NOT status EQUAL 0 OR NOT works)
  message(FATAL_ERROR "no works are listed:\n${listed}")
endif()

foreach(work IN LISTS works)
  string(REGEX REPLACE " .*" "" name "${work}")
  execute_process(COMMAND ${COMMAND} "${name}" 1 ERROR_VARIABLE errors RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(SEND_ERROR "${name} ends with ${status}:\n${errors}")
  endif()
endforeach()
