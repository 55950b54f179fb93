# What is installed, in components each of which can be installed alone:
#
#   runtime  the shared library
#   dev      headers, the link to the library, the files for find_package() and pkg-config
#   tools    lvtext, its manual page, and the completion of its arguments in bash
#   doc      the documents, examples and manual pages; with TARSELVALUES_BUILD_DOCS, the manual of the
#            headers
#   gdb      what gdb needs to show values (see Gdb.cmake)

include(CMakePackageConfigHelpers)

set(config_directory "${CMAKE_INSTALL_LIBDIR}/cmake/tarselvalues")

install(TARGETS tarselvalues-mt EXPORT tarselvalues
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT dev
  FILE_SET HEADERS COMPONENT dev DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT tarselvalues NAMESPACE tarselvalues:: FILE tarselvalues-targets.cmake
  DESTINATION "${config_directory}" COMPONENT dev)

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/tarselvalues-config.cmake.in"
  "${PROJECT_BINARY_DIR}/tarselvalues-config.cmake"
  INSTALL_DESTINATION "${config_directory}"
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/tarselvalues-config-version.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/tarselvalues-config.cmake"
  "${PROJECT_BINARY_DIR}/tarselvalues-config-version.cmake"
  DESTINATION "${config_directory}" COMPONENT dev)

# The file for pkg-config says where it lies itself, so that the folder may be another than was
# configured, and may be moved; but the system's own folder by name, for only then does pkg-config
# know that compilers search there anyway.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(PKGCONFIG_PREFIX "/usr")
else()
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE way_to_prefix)
  set(PKGCONFIG_PREFIX "\${pcfiledir}/${way_to_prefix}")
endif()
foreach(kind LIB INCLUDE)
  set(PKGCONFIG_${kind}DIR "${CMAKE_INSTALL_${kind}DIR}")
  if(NOT IS_ABSOLUTE "${PKGCONFIG_${kind}DIR}")
    string(PREPEND PKGCONFIG_${kind}DIR "\${prefix}/")
  endif()
endforeach()
configure_file("${CMAKE_CURRENT_LIST_DIR}/tarselvalues-mt.pc.in"
  "${PROJECT_BINARY_DIR}/tarselvalues-mt.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/tarselvalues-mt.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)

if(TARGET lvtext)
  # So that it runs from any prefix. Packages for a system's own directories switch it off with
  # CMAKE_SKIP_INSTALL_RPATH.
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY "${CMAKE_INSTALL_FULL_BINDIR}"
    OUTPUT_VARIABLE way_to_library)
  set_target_properties(lvtext PROPERTIES INSTALL_RPATH "$ORIGIN/${way_to_library}")
  install(TARGETS lvtext RUNTIME COMPONENT tools)
  install(FILES "${PROJECT_SOURCE_DIR}/docs/man/lvtext.1"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools)
  install(FILES "${PROJECT_SOURCE_DIR}/tools/lvtext/lvtext.bash" RENAME lvtext
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tools)
endif()

# Another project that has the library as a folder has documents and an archive of its own.
if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()

# As they stand beside each other here, so that links from one to another lead there.
install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT doc)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT doc
  FILES_MATCHING PATTERN "*.md" PATTERN "man" EXCLUDE)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT doc
  PATTERN "CMakeLists.txt" EXCLUDE)
install(FILES "${PROJECT_SOURCE_DIR}/tests/install/consumer/CMakeLists.txt"
              "${PROJECT_SOURCE_DIR}/tests/install/consumer/consumer.cpp"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples/consumer" COMPONENT doc)
install(FILES "${PROJECT_SOURCE_DIR}/docs/man/tarselvalues.7"
  DESTINATION "${CMAKE_INSTALL_MANDIR}/man7" COMPONENT doc)
if(TARSELVALUES_BUILD_DOCS)
  install(DIRECTORY "${PROJECT_BINARY_DIR}/docs/html" DESTINATION "${CMAKE_INSTALL_DOCDIR}"
    COMPONENT doc)
  # A page for each class, and for each header that has functions of its own.
  set(with_functions
      "lvBuilders|lvCell|lvRead|lvStream|lvString|lvText|lvTools|lvVersion|lvWalk")
  install(DIRECTORY "${PROJECT_BINARY_DIR}/docs/man/man3" DESTINATION "${CMAKE_INSTALL_MANDIR}"
    COMPONENT doc
    FILES_MATCHING REGEX "/([A-Za-z_]+|(${with_functions})\\.h)\\.3$")
endif()

# `cpack` packs all of it into one archive, for systems that know no packages of Debian's. It may be
# unpacked anywhere.
set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_FILE_NAME "tarselvalues-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Dynamically typed values, with a text format, for small devices")
include(CPack)
