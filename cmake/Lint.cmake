# Target `tidy`: clang-tidy over every source file of our own targets. Each file that passed leaves
# a stamp, so that only what changed is looked at again. Without clang-tidy there is no such target.

find_program(CLANG_TIDY_PROGRAM clang-tidy)
if(NOT CLANG_TIDY_PROGRAM)
  return()
endif()

# Adds a command that looks at `file`, which is `relative` to the project or to what is generated.
# The variables in capitals are what it depends on and the options that it takes. The stamp is
# appended to the global property TARSELVALUES_TIDY_STAMPS.
function(tarselvalues_tidy file relative)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "DEPENDS;OPTIONS")
  set(stamp "${PROJECT_BINARY_DIR}/tidy/${relative}.stamp")
  get_property(stamps GLOBAL PROPERTY TARSELVALUES_TIDY_STAMPS)
  if(stamp IN_LIST stamps)
    return()
  endif()
  # Headers of the library concern every source file, those of another folder only that folder.
  string(REGEX REPLACE "/.*" "" folder "${relative}")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/tarselvalues/*.h"
    "${PROJECT_SOURCE_DIR}/${folder}/*.h" "${PROJECT_SOURCE_DIR}/${folder}/.clang-tidy")
  cmake_path(GET stamp PARENT_PATH stamp_directory)
  file(MAKE_DIRECTORY "${stamp_directory}")
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND "${CLANG_TIDY_PROGRAM}" --quiet -p "${PROJECT_BINARY_DIR}" ${arg_OPTIONS} "${file}"
    COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
    DEPENDS ${arg_DEPENDS} ${headers} "${PROJECT_SOURCE_DIR}/.clang-tidy"
            "${PROJECT_SOURCE_DIR}/cmake/CompilerSettings.cmake"
    COMMENT "clang-tidy ${relative}"
    VERBATIM)
  set_property(GLOBAL APPEND PROPERTY TARSELVALUES_TIDY_STAMPS "${stamp}")
endfunction()

# The same for the sources of a target: those that are compiled together are looked at together. A
# target with the property TARSELVALUES_TIDY_ELSEWHERE has sources that belong to another one, too.
function(tarselvalues_tidy_target target)
  get_target_property(elsewhere ${target} TARSELVALUES_TIDY_ELSEWHERE)
  if(elsewhere)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  get_target_property(source_directory ${target} SOURCE_DIR)
  get_target_property(binary_directory ${target} BINARY_DIR)
  get_target_property(unity ${target} UNITY_BUILD)
  get_target_property(batch_size ${target} UNITY_BUILD_BATCH_SIZE)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  set(together "")
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${source_directory}" NORMALIZE)
    get_source_file_property(alone "${source}" TARGET_DIRECTORY ${target} SKIP_UNITY_BUILD_INCLUSION)
    cmake_path(RELATIVE_PATH source BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE relative)
    if(NOT relative MATCHES "^(tarselvalues|tools|tests|examples|fuzz|bench)/")
      continue()  # Other people's.
    elseif(unity AND NOT alone)
      list(APPEND together "${source}")
    else()
      tarselvalues_tidy("${source}" "${relative}" DEPENDS "${source}")
    endif()
  endforeach()
  set(batch 0)
  while(together)
    list(SUBLIST together 0 ${batch_size} sources)
    list(REMOVE_ITEM together ${sources})
    set(file "${binary_directory}/CMakeFiles/${target}.dir/Unity/unity_${batch}_cxx.cxx")
    tarselvalues_tidy("${file}" "tests/${target}${batch}" DEPENDS ${sources}
      OPTIONS "--config-file=${PROJECT_SOURCE_DIR}/tests/.clang-tidy"
              "--checks=-bugprone-suspicious-include")
    math(EXPR batch "${batch} + 1")
  endwhile()
endfunction()

function(tarselvalues_tidy_directory directory)
  get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    tarselvalues_tidy_target(${target})
  endforeach()
  get_property(subdirectories DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
  foreach(subdirectory IN LISTS subdirectories)
    tarselvalues_tidy_directory("${subdirectory}")
  endforeach()
endfunction()

tarselvalues_tidy_directory("${PROJECT_SOURCE_DIR}")
get_property(stamps GLOBAL PROPERTY TARSELVALUES_TIDY_STAMPS)
add_custom_target(tidy DEPENDS ${stamps})
