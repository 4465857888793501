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

set(headers include/service/util/config)
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

room(cutil FILES platform/cutil/* SEES cutil/)
room(locator FILES platform/locator/* SEES ${platform})
room(support FILES support/* SEES ${support} ${platform})
room(toolkit FILES toolkit/* SEES ${toolkit} "cppUtil/(export|internal/Position)\\.hpp")
room(model FILES src/model/* ${headers}/IConfig.hpp ${headers}/Select.hpp ${headers}/visit.hpp
    ${headers}/internal/* SEES ${model})
room(grammar FILES src/grammar/* ${headers}/grammar/*
  SEES "service/util/config/grammar/" "cppUtil/export\\.hpp")
room(load FILES src/load/* ${headers}/xml/* SEES ${load})
room(plain FILES src/plain/* SEES "plain/" "service/util/config/grammar/" ${load})
room(report FILES src/report/* SEES "report/" ${load})
room(xml FILES src/xml/* SEES "(xml|report)/" "service/util/config/grammar/" ${load} ${toolkit})
room(entry FILES src/entry/* SEES "(entry|plain)/" ${load})
room(bind FILES src/bind/* ${headers}/bind.hpp ${headers}/bind/*
  SEES "bind/" "service/util/config/bind[./]" ${load})
room(write FILES src/write/* SEES "write/" "service/util/config/grammar/" ${model})
room(live FILES src/live/* ${headers}/Live.hpp ${headers}/live/*
  SEES "(live|bind|write)/" "service/util/config/(live/|Live\\.hpp|bind[./])" ${load})

# The command is a caller of the library. No command calls another.
set(command tools/zuconfig)
room(shared FILES ${command}/shared/* SEES "(shared|report|CLI|nlohmann)/" ${public})
room(page FILES ${command}/page/* SEES "(page|shared|report|nlohmann)/" ${public})
room(schema FILES ${command}/schema/* SEES "(schema|shared|write)/" ${public})
room(commands FILES ${command}/commands/* ${command}/main.cpp
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
