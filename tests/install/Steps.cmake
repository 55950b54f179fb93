# Included by the scripts of these tests: what they were set up with, and the steps they share.
include("${SETTINGS}")

# make_consumer(WAY): makes the folder WORK anew, with the program and the CMakeLists.txt of WAY.
function(make_consumer way)
  file(REMOVE_RECURSE "${WORK}")
  set(folder "${SOURCE}/tests/install")
  file(COPY "${folder}/consumer/consumer.cpp" "${folder}/consumer/expected.txt"
            "${folder}/${way}/CMakeLists.txt" DESTINATION "${WORK}")
endfunction()

# configure_consumer(STATUS ERRORS OPTION...): configures it for the target, and tells how that ended.
function(configure_consumer status_variable errors_variable)
  set(options -DCMAKE_BUILD_TYPE=Release ${ARGN})
  if(TOOLCHAIN)
    list(APPEND options "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}")
  else()
    list(APPEND options "-DCMAKE_CXX_COMPILER=${CXX}")
  endif()
  execute_process(COMMAND "${CMAKE_COMMAND}" -G Ninja -S "${WORK}" -B "${WORK}/build" ${options}
    RESULT_VARIABLE status ERROR_VARIABLE errors)
  set(${status_variable} "${status}" PARENT_SCOPE)
  set(${errors_variable} "${errors}" PARENT_SCOPE)
endfunction()

# build_consumer(OPTION...): configures and builds it.
function(build_consumer)
  configure_consumer(status errors ${ARGN})
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "cannot be configured:\n${errors}")
  endif()
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# run_consumer(PROGRAM): fails unless it prints what is expected.
function(run_consumer program)
  execute_process(COMMAND ${EMULATOR} "${program}"
    OUTPUT_VARIABLE output RESULT_VARIABLE status)
  file(READ "${WORK}/expected.txt" expected)
  if(NOT status EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "ended with ${status} and printed\n${output}<<<\nnot\n${expected}<<<")
  endif()
endfunction()
