# The links of the documents in PREFIX lead to what is installed. PYTHON runs the check.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

execute_process(
  COMMAND "${PYTHON}" -B "${SOURCE}/tests/support/check_links.py" "${PREFIX}/${DOCDIR}"
  COMMAND_ERROR_IS_FATAL ANY)
