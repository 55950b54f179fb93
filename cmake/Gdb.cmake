# What gdb needs to show values: tools/gdb/tarselvalues_gdb, and a file that gdb finds by the name of the
# library and its place, which has the release in it. Where the library is built it lies beside it.

set(library "libtarselvalues-mt.so.${PROJECT_VERSION}")
set(autoload_source "${PROJECT_SOURCE_DIR}/tools/gdb/autoload.py.in")

set(folder "${PROJECT_SOURCE_DIR}/tools/gdb")
get_target_property(library_directory tarselvalues-mt BINARY_DIR)
configure_file("${autoload_source}" "${library_directory}/${library}-gdb.py" @ONLY)

set(package_directory "${CMAKE_INSTALL_DATADIR}/tarselvalues/gdb")
set(autoload_directory "${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}")
cmake_path(RELATIVE_PATH package_directory BASE_DIRECTORY "${autoload_directory}"
  OUTPUT_VARIABLE folder)
configure_file("${autoload_source}" "${PROJECT_BINARY_DIR}/autoload.py" @ONLY)

install(DIRECTORY "${PROJECT_SOURCE_DIR}/tools/gdb/tarselvalues_gdb"
  DESTINATION "${package_directory}" COMPONENT gdb
  FILES_MATCHING PATTERN "*.py")
install(FILES "${PROJECT_BINARY_DIR}/autoload.py"
  RENAME "${library}-gdb.py" DESTINATION "${autoload_directory}" COMPONENT gdb)
