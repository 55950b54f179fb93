# 32-bit x86 with Debian's cross compiler. Programs run natively, started by the cross package's
# own loader, because a 64-bit machine need not have a 32-bit one at its usual place.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CXX_COMPILER i686-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR
  /usr/i686-linux-gnu/lib/ld-linux.so.2;--library-path;/usr/i686-linux-gnu/lib)
