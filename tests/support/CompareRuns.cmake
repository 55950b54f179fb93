# Runs TUNED and PLAIN and compares what they write on standard output, which stays in FOLDER. Both
# must write thousands of lines, and end with 0.
cmake_minimum_required(VERSION 3.25)

foreach(name TUNED PLAIN)
  list(REMOVE_ITEM ${name} "")
  set(${name}_output "${FOLDER}/${name}.txt")
  execute_process(COMMAND ${${name}} OUTPUT_FILE "${${name}_output}" RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${${name}} ended with ${status}")
  endif()
endforeach()

file(SIZE "${TUNED_output}" size)
if(size LESS 1000000)
  message(FATAL_ERROR "only ${size} bytes were written")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files "${TUNED_output}" "${PLAIN_output}"
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the answers differ: compare ${TUNED_output} with ${PLAIN_output}")
endif()
