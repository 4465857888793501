# Run at the end of an installation. CMake gives files modes of their own, but directories those that
# the umask allows: here all on the way to what was installed are opened for everyone. A prefix that
# was there before keeps its mode.
cmake_minimum_required(VERSION 3.25)
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX OUTPUT_VARIABLE prefix)
set(directories "")
foreach(directory IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
  cmake_path(ABSOLUTE_PATH directory)
  cmake_path(IS_PREFIX prefix "${directory}" is_inside)
  while(is_inside)
    cmake_path(GET directory PARENT_PATH directory)
    if(directory STREQUAL prefix OR directory IN_LIST directories)
      break()
    endif()
    list(APPEND directories "${directory}")
  endwhile()
endforeach()
if(NOT ZU_PREFIX_EXISTED)
  list(APPEND directories "${prefix}")
endif()
list(TRANSFORM directories PREPEND "$ENV{DESTDIR}")
execute_process(COMMAND chmod go+rx -- ${directories} ERROR_QUIET)  # those of others are their own
