# The manual of the public headers: the target "docs", which makes HTML pages and man pages in docs/
# below the binary directory. It fails when a public member is not documented, or a function does not
# say which threads may call it. With TARSELVALUES_BUILD_DOCS it is made with everything else.

find_program(DOXYGEN_PROGRAM doxygen)
find_program(PYTHON3_PROGRAM python3)

if(PROJECT_IS_TOP_LEVEL AND DOXYGEN_PROGRAM AND PYTHON3_PROGRAM)
  set(DOCS_ROOT "${PROJECT_SOURCE_DIR}")
  set(DOCS_OUTPUT "${PROJECT_BINARY_DIR}/docs")
  set(DOCS_FILTER "${PYTHON3_PROGRAM} -B ${PROJECT_SOURCE_DIR}/scripts/lib/doc_filter.py")
  get_target_property(documented_headers tarselvalues-mt HEADER_SET)
  list(JOIN documented_headers "\" \\\n    \"" DOCS_INPUT)
  set(DOCS_INPUT "\"${DOCS_INPUT}\"")
  configure_file("${CMAKE_CURRENT_LIST_DIR}/Doxyfile.in" "${PROJECT_BINARY_DIR}/Doxyfile" @ONLY)

  set(made "${DOCS_OUTPUT}/made")
  add_custom_command(OUTPUT "${made}"
    COMMAND ${CMAKE_COMMAND} -E rm -rf "${DOCS_OUTPUT}"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${DOCS_OUTPUT}"
    COMMAND "${DOXYGEN_PROGRAM}" "${PROJECT_BINARY_DIR}/Doxyfile"
    COMMAND "${PYTHON3_PROGRAM}" -B "${PROJECT_SOURCE_DIR}/scripts/lib/doc_check.py"
            "${DOCS_OUTPUT}/xml"
    COMMAND ${CMAKE_COMMAND} -E touch "${made}"
    DEPENDS ${documented_headers} "${PROJECT_BINARY_DIR}/Doxyfile"
            "${PROJECT_SOURCE_DIR}/scripts/lib/doc_filter.py"
            "${PROJECT_SOURCE_DIR}/scripts/lib/doc_check.py"
    COMMENT "Making the manual of the public headers"
    VERBATIM)
  set(docs_in_all "")
  if(TARSELVALUES_BUILD_DOCS)
    set(docs_in_all ALL)
  endif()
  add_custom_target(docs ${docs_in_all} DEPENDS "${made}")
elseif(TARSELVALUES_BUILD_DOCS)
  message(FATAL_ERROR "the manual takes doxygen and python3")
endif()
