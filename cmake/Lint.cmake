# Target `tidy`: clang-tidy over every source file of our own targets. Each file that passed leaves a
# stamp, so that only what changed is looked at again. Without clang-tidy there is no such target.

find_program(CLANG_TIDY_PROGRAM clang-tidy)
if(NOT CLANG_TIDY_PROGRAM)
  return()
endif()

# Sets `result` to the absolute paths of the C++ sources of all targets in `directory` and below.
function(tarselvalues_collect_sources result directory)
  set(sources "")
  get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(target_sources ${target} SOURCES)
    get_target_property(target_directory ${target} SOURCE_DIR)
    foreach(source IN LISTS target_sources)
      if(source MATCHES "\\.cpp$")
        cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${target_directory}" NORMALIZE)
        list(APPEND sources "${source}")
      endif()
    endforeach()
  endforeach()
  get_property(subdirectories DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
  foreach(subdirectory IN LISTS subdirectories)
    tarselvalues_collect_sources(more "${subdirectory}")
    list(APPEND sources ${more})
  endforeach()
  set(${result} "${sources}" PARENT_SCOPE)
endfunction()

function(tarselvalues_add_tidy)
  set(folders tarselvalues tools tests examples fuzz bench)
  list(JOIN folders "|" any_folder)
  tarselvalues_collect_sources(sources "${PROJECT_SOURCE_DIR}")
  list(REMOVE_DUPLICATES sources)

  # Headers of the library concern every source file, those of another folder only that folder.
  foreach(folder IN LISTS folders)
    file(GLOB_RECURSE headers_of_${folder} CONFIGURE_DEPENDS
      "${PROJECT_SOURCE_DIR}/${folder}/*.h" "${PROJECT_SOURCE_DIR}/${folder}/.clang-tidy")
  endforeach()

  set(stamps "")
  foreach(source IN LISTS sources)
    cmake_path(RELATIVE_PATH source BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE relative)
    if(NOT relative MATCHES "^(${any_folder})/")
      continue()
    endif()
    set(folder "${CMAKE_MATCH_1}")
    set(stamp "${PROJECT_BINARY_DIR}/tidy/${relative}.stamp")
    cmake_path(GET stamp PARENT_PATH stamp_directory)
    file(MAKE_DIRECTORY "${stamp_directory}")
    add_custom_command(
      OUTPUT "${stamp}"
      COMMAND "${CLANG_TIDY_PROGRAM}" --quiet -p "${PROJECT_BINARY_DIR}" "${source}"
      COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
      DEPENDS "${source}" ${headers_of_tarselvalues} ${headers_of_${folder}}
              "${PROJECT_SOURCE_DIR}/.clang-tidy"
              "${PROJECT_SOURCE_DIR}/cmake/CompilerSettings.cmake"
      COMMENT "clang-tidy ${relative}"
      VERBATIM)
    list(APPEND stamps "${stamp}")
  endforeach()
  add_custom_target(tidy DEPENDS ${stamps})
endfunction()

tarselvalues_add_tidy()
