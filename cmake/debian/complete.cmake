# Run by cpack before it packs the staged tree of each component: adds what Debian expects in a
# package beside the program's own files.
cmake_path(GET CMAKE_CURRENT_LIST_FILE PARENT_PATH here)

function(compress file)
  execute_process(COMMAND gzip -9n ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} upper)
  set(name ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  file(COPY ${here}/copyright DESTINATION ${share}/doc/${name})
  configure_file(${here}/changelog ${share}/doc/${name}/changelog @ONLY)
  compress(${share}/doc/${name}/changelog)
  if(EXISTS ${here}/${name}.lintian-overrides)
    configure_file(${here}/${name}.lintian-overrides ${share}/lintian/overrides/${name} COPYONLY)
  endif()
  file(GLOB_RECURSE pages ${share}/man/*)
  foreach(page ${pages})
    compress(${page})
  endforeach()
endforeach()
