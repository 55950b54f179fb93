# The program finds the library in PREFIX with find_package(), and runs. DEVICE is the toolchain file, if
# it is another than the library was built with.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

if(DEVICE)
  set(TOOLCHAIN "${DEVICE}")
endif()
make_consumer(consumer)
build_consumer("-DCMAKE_PREFIX_PATH=${PREFIX}")
run_consumer("${WORK}/build/consumer")
