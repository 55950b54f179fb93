# 32-bit x86 with Clang, which brings libFuzzer, and the libraries of Debian's cross compiler.
# Programs find those, and the loader, by themselves, because libFuzzer starts itself again.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CXX_COMPILER_TARGET i686-linux-gnu)
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-Wl,--dynamic-linker=/usr/i686-linux-gnu/lib/ld-linux.so.2 -Wl,-rpath,/usr/i686-linux-gnu/lib")
