# Fails when LIBRARY exports the type information of a class that none of the files TESTS derives from:
# by name, or as the argument of a template that derives from it. NM is the target's nm.
cmake_minimum_required(VERSION 3.25)

# Of these nobody can derive: the constructor of one is the library's, and the other is private.
set(closed "^lvString::StringEntry$|^lvrDLList::Cursor<")

execute_process(COMMAND "${NM}" -D -C --defined-only "${LIBRARY}"
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
set(tests "")
foreach(file IN LISTS TESTS)
  file(READ "${file}" text)
  string(APPEND tests "${text}")
endforeach()
# As the tests write it.
set(derived "(class [A-Za-z]+ : public |, public |expectSame[A-Za-z]+<|(Same|Reader)<)")
string(REGEX MATCHALL "typeinfo for [^@\n]+" classes "${symbols}")
list(LENGTH classes count)
if(count LESS 30)
  message(FATAL_ERROR "found only ${count} classes")
endif()
foreach(class IN LISTS classes)
  string(REPLACE "typeinfo for " "" class "${class}")
  if(NOT class MATCHES "${closed}"
     AND NOT tests MATCHES "${derived}${class}[^A-Za-z:]")
    message(SEND_ERROR "exported, but not derived from: ${class}")
  endif()
endforeach()
