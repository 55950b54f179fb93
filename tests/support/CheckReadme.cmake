# Fails unless README holds the program SOURCE word for word, and what COMMAND prints after it.
cmake_minimum_required(VERSION 3.25)

file(READ "${README}" readme)
file(READ "${SOURCE}" program)
list(REMOVE_ITEM COMMAND "")
execute_process(COMMAND ${COMMAND} OUTPUT_VARIABLE output RESULT_VARIABLE status)

string(FIND "${readme}" "```cpp\n${program}```" program_at)
if(program_at EQUAL -1)
  message(SEND_ERROR "the README does not hold ${SOURCE} as it is")
endif()
string(FIND "${readme}" "```text\n${output}```" output_at)
if(NOT status EQUAL 0 OR output STREQUAL "" OR output_at LESS program_at)
  message(SEND_ERROR "the README does not show, after the program, what it prints:\n${output}")
endif()
