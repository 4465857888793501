# The target docs, where there is Doxygen: the documents, and a reference of the headers that are
# installed, as pages in html/. They are installed when they were made; nothing else needs them.
find_program(ZU_DOXYGEN doxygen)
if(ZU_DOXYGEN AND ZU_PLATFORM STREQUAL "BUNDLED")
  file(GLOB ZU_REFERENCE_INPUT ${PROJECT_SOURCE_DIR}/*.md ${PROJECT_SOURCE_DIR}/docs/*.md)
  list(APPEND ZU_REFERENCE_INPUT ${PROJECT_SOURCE_DIR}/platform/README.md
       ${PROJECT_SOURCE_DIR}/cmake/reference/namespaces.dox)
  foreach(library IN ITEMS zuUtilConfig zuCUtil zuUtilLocator)
    get_target_property(headers ${library} HEADER_SET)
    get_target_property(bases ${library} HEADER_DIRS)
    foreach(header IN LISTS headers)
      cmake_path(ABSOLUTE_PATH header BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
      list(APPEND ZU_REFERENCE_INPUT ${header})
    endforeach()
    list(APPEND ZU_REFERENCE_BASES ${bases})
  endforeach()
  list(FILTER ZU_REFERENCE_INPUT EXCLUDE REGEX "/bind/tables\\.hpp$")  # says itself: not for programs
  foreach(list IN ITEMS ZU_REFERENCE_INPUT ZU_REFERENCE_BASES)
    list(TRANSFORM ${list} REPLACE "(.+)" "\"\\1\"")
    list(JOIN ${list} " " ${list})
  endforeach()
  configure_file(cmake/reference/Doxyfile.in Doxyfile @ONLY)
  add_custom_target(docs
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${PROJECT_BINARY_DIR}/html
    COMMAND ${ZU_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
    COMMAND cmake/reference/finish ${PROJECT_BINARY_DIR}/html
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM)
endif()
