# Runs COMMAND (with INPUT on standard input, if given) and compares its standard output with the
# file OUTPUT, its standard error with the file ERRORS (none: must be empty), its exit status with
# STATUS.
cmake_minimum_required(VERSION 3.25)

if(INPUT)
  set(input INPUT_FILE "${INPUT}")
endif()
list(REMOVE_ITEM COMMAND "")
execute_process(COMMAND ${COMMAND} ${input}
  OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE status)

file(READ "${OUTPUT}" expected_output)
set(expected_errors "")
if(ERRORS)
  file(READ "${ERRORS}" expected_errors)
endif()

if(NOT output STREQUAL expected_output)
  message(SEND_ERROR "standard output is\n${output}<<<\nbut should be\n${expected_output}<<<")
endif()
if(NOT errors STREQUAL expected_errors)
  message(SEND_ERROR "standard error is\n${errors}<<<\nbut should be\n${expected_errors}<<<")
endif()
if(NOT status STREQUAL STATUS)
  message(SEND_ERROR "the exit status is ${status} but should be ${STATUS}")
endif()
