# Fails unless COMMAND, a compiler with its arguments, takes SOURCE as it is, and refuses each of
# its misuses, MISUSE 1 and so on, with the message for it in MESSAGES, a list of regular
# expressions.
cmake_minimum_required(VERSION 3.25)

function(compile misuse)
  execute_process(COMMAND ${COMMAND} -fsyntax-only -DMISUSE=${misuse} "${SOURCE}"
    RESULT_VARIABLE status ERROR_VARIABLE errors OUTPUT_QUIET)
  set(status "${status}" PARENT_SCOPE)
  set(errors "${errors}" PARENT_SCOPE)
endfunction()

compile(0)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the legal use is refused:\n${errors}")
endif()

set(misuse 0)
foreach(expected IN LISTS MESSAGES)
  math(EXPR misuse "${misuse} + 1")
  compile(${misuse})
  if(status EQUAL 0)
    message(SEND_ERROR "misuse ${misuse} compiles")
  elseif(NOT errors MATCHES "${expected}")
    message(SEND_ERROR "misuse ${misuse} is refused, but not with \"${expected}\":\n${errors}")
  endif()
endforeach()
