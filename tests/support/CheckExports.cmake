# Fails when LIBRARY exports a name that is none of its own classes and functions, or lacks one of
# the names that a program needs first. NM is the target's nm.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${NM}" -D -C --defined-only "${LIBRARY}"
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" " " symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")

set(own "lv[airt]?[A-Z][A-Za-z]*::|lvTools|lvGetVersion|lvWalk\\(|vtable for lv|typeinfo for lv|typeinfo name for lv")
set(own "^[0-9a-f]+ [A-Za-z] (${own}|non-virtual thunk to lv|TARSELVALUES_1$)")
foreach(symbol IN LISTS symbols)
  if(NOT symbol STREQUAL "" AND NOT symbol MATCHES "${own}")
    message(SEND_ERROR "exported, but not the library's own: ${symbol}")
  endif()
endforeach()
foreach(name "lvArg::assign(lvArg const&)" "lvToolsToString(lvArg const&)" "vtable for lvrVector"
             "typeinfo for lviMap")
  string(FIND "${symbols}" " ${name}" at)
  if(at EQUAL -1)
    message(SEND_ERROR "not exported: ${name}")
  endif()
endforeach()
foreach(hidden "internBuffer" "isStillUnheld" "Forks" "tarselvalues::")
  if(symbols MATCHES "${hidden}")
    message(SEND_ERROR "exported, but the library's alone: ${hidden}")
  endif()
endforeach()
