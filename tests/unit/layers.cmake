# Calls point one way, loader -> model and toolkit -> support -> platform: fails when a file includes
# a header of a layer that its own layer must not see.
#
# Run as: cmake -D ROOT=<source tree> -P layers.cmake

set(xml_library "[<\"]xercesc/")
set(toolkit "[<\"]xerces/")
set(model "[<\"]service/util/config/(IConfig|Select|internal/)")
set(loader "[<\"]service/util/config/(xml|grammar)/")
set(rooms "\"(load|plain|xml|bind|live)/")  # the hidden headers of the rooms above the model
set(support "[<\"](cppUtil|service/util/locator)/")
set(export "[<\"]cppUtil/export\\.hpp[>\"]")

# check(<layer> ALLOWED <regexes> FORBIDDEN <regexes> FILES <patterns>)
function(check layer)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FORBIDDEN;ALLOWED;FILES")
  list(TRANSFORM arg_FILES PREPEND ${ROOT}/)
  file(GLOB_RECURSE files ${arg_FILES})
  if(NOT files)
    message(SEND_ERROR "no files in the ${layer} layer: ${arg_FILES}")
  endif()
  foreach(file IN LISTS files)
    file(STRINGS ${file} includes REGEX "^[ \t]*#[ \t]*include")
    foreach(include IN LISTS includes)
      foreach(forbidden IN LISTS arg_FORBIDDEN)
        if(include MATCHES "${forbidden}" AND NOT (arg_ALLOWED AND include MATCHES "${arg_ALLOWED}"))
          message(SEND_ERROR "${file}: a ${layer} file must not have ${include}")
        endif()
      endforeach()
    endforeach()
  endforeach()
endfunction()

check(public FILES include/*.hpp include/*.in FORBIDDEN ${xml_library} ${toolkit})
check(model FILES src/model/*.hpp src/model/*.cpp
  include/service/util/config/IConfig.hpp include/service/util/config/Select.hpp
  include/service/util/config/visit.hpp
  include/service/util/config/internal/*.hpp
  FORBIDDEN ${xml_library} ${toolkit} ${loader} ${rooms})
check(toolkit FILES toolkit/*.hpp toolkit/*.cpp FORBIDDEN ${model} ${loader} ${rooms} ${support}
  ALLOWED ${export})
check(support FILES support/*.hpp support/*.cpp
  FORBIDDEN ${xml_library} ${toolkit} ${model} ${loader} ${rooms})
check(platform FILES platform/*.h platform/*.hpp platform/*.cpp
  FORBIDDEN ${xml_library} ${toolkit} ${model} ${loader} ${support})

check(shared FILES tools/zuconfig/shared/*.hpp tools/zuconfig/shared/*.cpp FORBIDDEN "\"commands/")
