# Fails when LIBRARY exports an operation that no *OutOfMemoryTest.cpp below TESTS names in a call
# of exhaust(), or when a header below HEADERS declares a class of which none is named there. What
# headers declare as private is no operation. NM is the target's nm.
cmake_minimum_required(VERSION 3.25)

# The operations that are run out of memory, as Class::operation. Handles that leak deliberately are
# run by a function of their own, leftByFailing().
file(GLOB_RECURSE sources "${TESTS}/*OutOfMemoryTest.cpp")
set(run "")
foreach(source IN LISTS sources)
  file(READ "${source}" text)
  string(REGEX REPLACE "[][;]" "." text "${text}")  # What CMake's lists choke on.
  string(REGEX REPLACE "\"[ \n]+\"" "" text "${text}")  # One literal in two lines.
  string(REGEX MATCHALL "exhaust<[^(]*>\\([ \n]*\"[A-Za-z:]+\",[ \n]*\"[^\"]+\"" calls "${text}")
  string(REGEX MATCHALL "leftByFailing<lv[A-Za-z]+>" handles "${text}")
  list(TRANSFORM handles REPLACE "leftByFailing<(.*)>" "\\1::\\1")
  list(APPEND run ${handles})
  foreach(call IN LISTS calls)
    string(REGEX REPLACE "^[^\"]*\"([^\"]+)\",[ \n]*\"([^\"]+)\"$" "\\1;\\2" parts "${call}")
    list(POP_FRONT parts class names)
    string(REPLACE ", " ";" names "${names}")
    foreach(name IN LISTS names)
      list(APPEND run "${class}::${name}")
    endforeach()
  endforeach()
endforeach()
if(NOT run)
  message(SEND_ERROR "nothing is run out of memory")
endif()

# What the header of a class declares above its last "private:".
function(read_public class result)
  string(REGEX REPLACE "::.*" "" outer "${class}")
  file(GLOB_RECURSE header "${HEADERS}/${outer}.h")
  if(header)
    file(READ "${header}" text)
    string(REGEX REPLACE "[][;]" "." text "${text}")
    string(FIND "${text}" "\n private:" end REVERSE)
    string(SUBSTRING "${text}" 0 ${end} text)
    set(${result} "${text}" PARENT_SCOPE)
  else()
    set(${result} "" PARENT_SCOPE)
  endif()
endfunction()

execute_process(COMMAND "${NM}" -D -C --defined-only "${LIBRARY}"
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "[][;]" "." symbols "${symbols}")
string(REGEX MATCHALL "[0-9a-f]+ [TW] lv[^\n]+" symbols "${symbols}")
list(TRANSFORM symbols REPLACE "^[0-9a-f]+ [TW] ([^(]+).*$" "\\1")
list(FILTER symbols EXCLUDE REGEX "~")
list(TRANSFORM symbols REPLACE "^lvTools" "lvTools::lvTools")
list(TRANSFORM symbols REPLACE "^(lv[A-Za-z]+)$" "\\1::\\1")  # A function with a header of its own.
list(REMOVE_DUPLICATES symbols)
if(NOT symbols)
  message(SEND_ERROR "${LIBRARY} exports nothing")
endif()
foreach(symbol IN LISTS symbols)
  string(REGEX MATCH "^(.*)::([^:]+)$" matched "${symbol}")
  set(class "${CMAKE_MATCH_1}")
  set(name "${CMAKE_MATCH_2}")
  # An interface has nothing of its own to run.
  if(NOT symbol IN_LIST run AND NOT class MATCHES "^lvi")
    read_public("${class}" public)
    string(REGEX REPLACE "[^A-Za-z_0-9]" "." declared "${name}")
    if(public MATCHES "\n( +|[^\n{(=/]*[ *&])${declared}\\(")
      message(SEND_ERROR "never run out of memory: ${symbol}")
    endif()
  endif()
endforeach()

# Classes whose operations are in their headers.
file(GLOB_RECURSE headers "${HEADERS}/lv[a-hj-z]*.h" "${HEADERS}/lv[A-Z]*.h")
foreach(header IN LISTS headers)
  cmake_path(GET header STEM class)
  set(named "${run}")
  list(FILTER named INCLUDE REGEX "^${class}::")
  if(NOT named)
    message(SEND_ERROR "no operation of ${class} is run out of memory")
  endif()
endforeach()
