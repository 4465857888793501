# zu_export_settings(<program> TYPE <type> HEADER <header> [SOURCES <file>...]
#                    [INCLUDE_DIRECTORIES <directory>...] [EXPECTED <file>] [NO_INSTALL])
#
# Writes what a program says about its settings to share/zu/settings/<program>.xml, where the command
# zuconfig finds it: builds a small program of the header, which declares the type and its
# description, and of the sources, and runs it as part of the build. The target is
# <program>_settings, the file settings/<program>.xml in the binary directory.
#
# EXPECTED: a copy of the file that is kept beside the sources. The test <program>_settings fails,
# and shows the difference, when the two are not the same, so that no change of the settings goes
# unnoticed.
#
# The small program runs on the machine that builds. In a cross build that machine needs this library
# as well: ZU_HOST_LIBRARY names it (the full path of libzuUtilConfig.so), and ZU_HOST_COMPILER the
# compiler for it, c++ unless set. A cross build with an emulator needs neither.
include_guard()

function(zu_export_settings program)
  cmake_parse_arguments(PARSE_ARGV 1 arg "NO_INSTALL" "TYPE;HEADER;EXPECTED" "SOURCES;INCLUDE_DIRECTORIES")
  if(NOT arg_TYPE OR NOT arg_HEADER OR arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zu_export_settings(${program}) needs a TYPE and a HEADER, and does not know: "
      "${arg_UNPARSED_ARGUMENTS}")
  endif()
  include(GNUInstallDirs)
  set(directory ${CMAKE_CURRENT_BINARY_DIR}/settings)
  set(exported ${directory}/${program}.xml)
  set(writer ${program}_settings_writer)
  set(main ${directory}/${writer}.cpp)
  set(includes ${CMAKE_CURRENT_SOURCE_DIR} ${arg_INCLUDE_DIRECTORIES})
  set(header ${arg_HEADER})
  cmake_path(ABSOLUTE_PATH header BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
  set(sources)
  foreach(source IN LISTS arg_SOURCES)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    list(APPEND sources ${source})
  endforeach()
  file(CONFIGURE OUTPUT ${main} CONTENT [[
#include "@header@"

#include <cppUtil/err/Exception.hpp>
#include <fstream>
#include <iostream>
#include <service/util/config/bind/Settings.hpp>

int main(int, char** arguments) {
  try {
    const std::string text =
        service::util::config::bind::Settings::of<@arg_TYPE@>().toXml("@program@");
    return std::ofstream(arguments[1]) << text << std::flush ? 0 : 1;
  } catch (const cppUtil::err::Exception& e) {
    std::cerr << "@program@: " << e.getMessage() << "\n";
    return 1;
  }
}
]] @ONLY)

  if(ZU_HOST_LIBRARY)
    if(NOT ZU_HOST_COMPILER)
      set(ZU_HOST_COMPILER c++)
    endif()
    list(APPEND includes $<TARGET_PROPERTY:zu::UtilConfig,INTERFACE_INCLUDE_DIRECTORIES>)
    cmake_path(GET ZU_HOST_LIBRARY PARENT_PATH libraries)
    add_custom_command(OUTPUT ${directory}/${writer}
      COMMAND ${ZU_HOST_COMPILER} -std=c++17 "-I$<JOIN:${includes},;-I>" ${main} ${sources}
        ${ZU_HOST_LIBRARY} -Wl,-rpath,${libraries} -Wl,-rpath-link,${libraries}
        -o ${directory}/${writer}
      DEPENDS ${main} ${header} ${sources} ${ZU_HOST_LIBRARY}
      COMMAND_EXPAND_LISTS VERBATIM)
    set(command ${directory}/${writer})
  elseif(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    message(FATAL_ERROR "zu_export_settings(${program}) runs a program on the machine that builds: "
      "set ZU_HOST_LIBRARY to a libzuUtilConfig.so of that machine")
  else()
    add_executable(${writer} ${main} ${sources})
    set_target_properties(${writer} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${directory})
    target_include_directories(${writer} PRIVATE ${includes})
    target_link_libraries(${writer} PRIVATE zu::UtilConfig)
    set(command ${writer})
  endif()
  add_custom_command(OUTPUT ${exported} COMMAND ${command} ${exported} DEPENDS ${command} VERBATIM)
  add_custom_target(${program}_settings ALL DEPENDS ${exported})
  if(NOT arg_NO_INSTALL)
    install(FILES ${exported} DESTINATION ${CMAKE_INSTALL_DATADIR}/zu/settings)
  endif()
  if(arg_EXPECTED)
    cmake_path(ABSOLUTE_PATH arg_EXPECTED BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    add_test(NAME ${program}_settings COMMAND diff -u ${arg_EXPECTED} ${exported})
  endif()
endfunction()
