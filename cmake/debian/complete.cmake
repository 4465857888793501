# Run by cpack before it packs the staged tree of each component: adds what Debian expects in a
# package beside the program's own files, and gives all files the modes and times that make the
# packages the same on every machine.
cmake_path(GET CMAKE_CURRENT_LIST_FILE PARENT_PATH here)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The time of the release, by which cpack dates the packages themselves too.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  file(STRINGS ${here}/changelog release REGEX "^ -- ")
  string(REGEX REPLACE "^ -- .*  " "" release "${release}")
  execute_process(COMMAND date --date=${release} +%s OUTPUT_VARIABLE seconds
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{SOURCE_DATE_EPOCH} ${seconds})
endif()

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} upper)
  set(name ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(staged ${CPACK_TEMPORARY_DIRECTORY}/${component})
  set(share ${staged}/usr/share)
  file(COPY ${here}/copyright DESTINATION ${share}/doc/${name})
  configure_file(${here}/changelog ${share}/doc/${name}/changelog @ONLY)
  if(EXISTS ${here}/${name}.lintian-overrides)
    configure_file(${here}/${name}.lintian-overrides ${share}/lintian/overrides/${name} COPYONLY)
  endif()
  file(GLOB_RECURSE pages ${share}/man/*)
  run(gzip -9n ${share}/doc/${name}/changelog ${pages})
  run(chmod -R u=rwX,go=rX ${staged})
  run(find ${staged} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +)
endforeach()
