# Calls point one way: fails when a file includes a header of a room that its own room does not know,
# and when a file belongs to no room. docs/design.md tells what the rooms are for.
#
# Headers are told apart by the name they are included by: hidden ones begin with their room
# ("load/LoadEvents.hpp"), public ones with their namespace, those of other libraries with their
# folder. A header without a folder is of the standard library or stands beside the file.
#
# Run as: cmake -D ROOT=<source tree> -P layers.cmake

set(platform "cutil/" "locator/")
set(support "cppUtil/" "service/util/locator/" "service/util/config/error(Module|Texts)\\.hpp")
set(toolkit "xerces/" "xercesc/")
set(model "model/" "service/util/config/(IConfig|Select|visit)\\.hpp" "service/util/config/internal/"
    "service/util/config/errorModule\\.hpp" "cppUtil/(err|internal|export)" "cutil/")
set(load "load/" "service/util/config/xml/" ${model} ${support} ${platform})
# What the command is built with: all that is public, and the text functions.
set(public "service/util/config/" "service/util/locator/" "cppUtil/(err|fileName|logger)/"
    "cppUtil/internal/(Character|text)\\.hpp" ${platform})

set(checked "")

# room(<name> FILES <patterns> SEES <regexes of headers>): no file is needed for a room to be named.
function(room name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FILES;SEES")
  list(TRANSFORM arg_FILES PREPEND ${ROOT}/)
  file(GLOB_RECURSE files ${arg_FILES})
  list(JOIN arg_SEES "|" sees)
  foreach(file IN LISTS files)
    file(STRINGS ${file} includes REGEX "^[ \t]*#[ \t]*include")
    foreach(include IN LISTS includes)
      string(REGEX REPLACE ".*[<\"]([^>\"]+)[>\"].*" "\\1" header ${include})
      if(header MATCHES "/" AND NOT header MATCHES "^(sys/|${sees})")
        message(SEND_ERROR "${file}: a file of ${name} must not include ${header}")
      endif()
    endforeach()
  endforeach()
  set(checked ${checked} ${files} PARENT_SCOPE)
endfunction()

room(cutil FILES platform/cutil/*.h platform/cutil/*.hpp platform/cutil/*.cpp SEES cutil/)
room(locator FILES platform/locator/*.h platform/locator/*.hpp platform/locator/*.cpp
  SEES ${platform})
room(support FILES support/*.hpp support/*.cpp SEES ${support} ${platform})
room(toolkit FILES toolkit/*.hpp toolkit/*.cpp SEES ${toolkit} "cppUtil/(export|internal/Position)\\.hpp")
room(model FILES src/model/*.hpp src/model/*.cpp include/service/util/config/IConfig.hpp
    include/service/util/config/Select.hpp include/service/util/config/visit.hpp
    include/service/util/config/internal/*.hpp
  SEES ${model})
room(grammar FILES src/grammar/* include/service/util/config/grammar/*.hpp
  SEES "service/util/config/grammar/" "cppUtil/export\\.hpp")
room(load FILES src/load/*.hpp src/load/*.cpp include/service/util/config/xml/*.hpp
    include/service/util/config/xml/*.in
  SEES ${load})
room(plain FILES src/plain/*.hpp src/plain/*.cpp
  SEES "plain/" "service/util/config/grammar/" ${load})
room(report FILES src/report/*.hpp src/report/*.cpp SEES "report/" ${load})
room(xml FILES src/xml/*.hpp src/xml/*.cpp
  SEES "(xml|report)/" "service/util/config/grammar/" ${load} ${toolkit})
room(entry FILES src/entry/*.hpp src/entry/*.cpp SEES "(entry|plain)/" ${load})
room(bind FILES src/bind/*.hpp src/bind/*.cpp include/service/util/config/bind.hpp
    include/service/util/config/bind/*.hpp
  SEES "bind/" "service/util/config/bind[./]" ${load})
room(write FILES src/write/*.hpp src/write/*.cpp SEES "write/" "service/util/config/grammar/" ${model})
room(live FILES src/live/*.hpp src/live/*.cpp include/service/util/config/Live.hpp
    include/service/util/config/live/*.hpp
  SEES "(live|bind|write)/" "service/util/config/(live/|Live\\.hpp|bind[./])" ${load})

# The command is a caller of the library. No command calls another.
room(shared FILES tools/zuconfig/shared/*.hpp tools/zuconfig/shared/*.cpp
  SEES "(shared|report|CLI|nlohmann)/" ${public})
room(page FILES tools/zuconfig/page/*.hpp tools/zuconfig/page/*.cpp
  SEES "(page|shared|report|nlohmann)/" ${public})
room(schema FILES tools/zuconfig/schema/*.hpp tools/zuconfig/schema/*.cpp
  SEES "(schema|shared|write)/" ${public})
room(commands FILES tools/zuconfig/commands/*.hpp tools/zuconfig/commands/*.cpp
    tools/zuconfig/main.cpp
  SEES "commands/Command\\.hpp" "(page|schema|shared|write|CLI|nlohmann)/" ${public})

foreach(folder IN ITEMS include src support toolkit platform tools)
  file(GLOB_RECURSE all ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.hpp ${ROOT}/${folder}/*.cpp)
  if(NOT all)
    message(SEND_ERROR "no files in ${folder}")
  endif()
  list(REMOVE_ITEM all ${checked})
  foreach(file IN LISTS all)
    message(SEND_ERROR "${file}: belongs to no room")
  endforeach()
endforeach()
