# Fails when GROFF has anything to say against the manual page PAGE, or makes nothing of it.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${GROFF}" -mandoc -Tutf8 -P-cbu -ww "${PAGE}"
  OUTPUT_VARIABLE text ERROR_VARIABLE warnings RESULT_VARIABLE status)
if(NOT status EQUAL 0 OR NOT warnings STREQUAL "")
  message(FATAL_ERROR "groff ends with ${status} and says:\n${warnings}")
endif()
if(NOT text MATCHES "SEE ALSO")
  message(FATAL_ERROR "the page does not end with SEE ALSO")
endif()
