# The library: one OBJECT library that feeds the shared object and the internal tests.

# The grammar is kept as a file that editors can use and compiled in as a string.
file(READ ${PROJECT_SOURCE_DIR}/src/grammar/config.xsd ZU_GRAMMAR)
configure_file(src/grammar/getGrammar.cpp.in getGrammar.cpp @ONLY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS src/grammar/config.xsd)

# The namespace of the XML library carries its version; public headers only forward declare in it.
string(REGEX REPLACE "^([0-9]+)\\.([0-9]+).*" "xercesc_\\1_\\2" ZU_XERCES_NAMESPACE
       "${XercesC_VERSION}")
set(ZU_GENERATED_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)
configure_file(include/service/util/config/xml/internal/xercesNamespace.hpp.in
               ${ZU_GENERATED_INCLUDE_DIR}/service/util/config/xml/internal/xercesNamespace.hpp
               @ONLY)

# What the XML library takes for the local code page in any locale: UTF-8, or what the locale says.
if(NOT CMAKE_CROSSCOMPILING OR CMAKE_CROSSCOMPILING_EMULATOR)
  include(CheckCXXSourceRuns)
  set(CMAKE_REQUIRED_LIBRARIES XercesC::XercesC)
  check_cxx_source_runs([[
    #include <xercesc/util/PlatformUtils.hpp>
    #include <xercesc/util/XMLString.hpp>
    int main() {
      xercesc::XMLPlatformUtils::Initialize();
      const XMLCh text[] = {0xE9, 0};
      char* local = xercesc::XMLString::transcode(text);
      const bool isUtf8 = local != nullptr && local[0] == char(0xC3) && local[1] == char(0xA9);
      xercesc::XMLString::release(&local);  // a leak is a failure under a sanitizer
      xercesc::XMLPlatformUtils::Terminate();
      return isUtf8 ? 0 : 1;
    }]] ZU_LOCAL_CODE_PAGE_IS_UTF8)
  unset(CMAKE_REQUIRED_LIBRARIES)
endif()

# The library has two parts, so that programs which load plain files only never see the XML library.
# What both need of the rooms below them, and nothing that has a state, is in each.
add_library(zuUtilConfigShared OBJECT
  support/cppUtil/err/guarded.cpp
  support/cppUtil/err/platformCall.cpp
  support/cppUtil/internal/stackLeft.cpp
  support/service/util/locator/SearchOrder.cpp
  src/load/Load.cpp
  src/load/LoadEvents.cpp
  src/load/SearchedFirst.cpp
  src/load/describeFile.cpp
  src/report/SourceFile.cpp
  support/cppUtil/internal/Character.cpp
  support/cppUtil/internal/text.cpp)
add_library(zuUtilConfigObjects OBJECT
  support/cppUtil/err/Exception.cpp
  support/cppUtil/err/StackTrace.cpp
  support/cppUtil/err/describe.cpp
  support/cppUtil/fileName/getPath.cpp
  support/cppUtil/logger/Logger.cpp
  support/service/util/config/errorModule.cpp
  support/service/util/locator/ConfigLocator.cpp
  toolkit/xerces/Exception.cpp
  src/bind/Description.cpp
  src/bind/Findings.cpp
  src/bind/Path.cpp
  src/bind/Precedence.cpp
  src/bind/Reader.cpp
  src/bind/Settings.cpp
  src/bind/Together.cpp
  src/bind/bind.cpp
  src/bind/build.cpp
  src/bind/elsewhere.cpp
  src/bind/environment.cpp
  src/bind/exporting.cpp
  src/bind/readSections.cpp
  src/bind/report.cpp
  src/bind/soundness.cpp
  src/bind/survey.cpp
  src/bind/units.cpp
  src/bind/values.cpp
  src/entry/XmlUse.cpp
  src/entry/check.cpp
  src/entry/session.cpp
  src/entry/xmlConfig.cpp
  src/live/Choices.cpp
  src/live/Engine.cpp
  src/live/LastGood.cpp
  src/live/Listeners.cpp
  src/live/ObservedLoad.cpp
  src/live/Places.cpp
  src/live/Reading.cpp
  src/live/Settings.cpp
  src/live/Signals.cpp
  src/live/Trigger.cpp
  src/live/keepForStart.cpp
  src/load/observer.cpp
  src/load/origins.cpp
  src/model/Contents.cpp
  src/model/config.cpp
  src/model/section.cpp
  src/model/select.cpp
  src/model/visit.cpp
  src/plain/Document.cpp
  src/plain/Markup.cpp
  src/plain/characters.cpp
  src/plain/read.cpp
  src/plain/readFile.cpp
  src/report/ProblemText.cpp
  src/report/SourceText.cpp
  src/report/format.cpp
  src/write/writeXml.cpp
  src/write/xmlText.cpp
  ${PROJECT_BINARY_DIR}/getGrammar.cpp)
add_library(zuUtilConfigXmlObjects OBJECT
  toolkit/xerces/ErrorHandler.cpp
  toolkit/xerces/LocatedException.cpp
  toolkit/xerces/Parser.cpp
  toolkit/xerces/dom.cpp
  src/xml/Budget.cpp
  src/xml/DocumentGrammars.cpp
  src/xml/DocumentParser.cpp
  src/xml/Effort.cpp
  src/xml/EntityResolver.cpp
  src/xml/FileSource.cpp
  src/xml/LenientParser.cpp
  src/xml/RepeatedSections.cpp
  src/xml/XmlLibrary.cpp
  src/xml/documentCheck.cpp
  src/xml/fileSetCheck.cpp
  src/xml/part.cpp
  src/xml/validation.cpp)
foreach(objects IN ITEMS zuUtilConfigShared zuUtilConfigObjects zuUtilConfigXmlObjects)
  set_target_properties(${objects} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_compile_definitions(${objects} PRIVATE ZU_VERSION="${PROJECT_VERSION}")
  target_include_directories(${objects} PRIVATE
    ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/support ${PROJECT_SOURCE_DIR}/toolkit
    ${PROJECT_SOURCE_DIR}/src ${ZU_GENERATED_INCLUDE_DIR})
  target_link_libraries(${objects} PRIVATE zu_build_flags zu::CUtil zu::UtilLocator)
endforeach()
target_link_libraries(zuUtilConfigXmlObjects PRIVATE XercesC::XercesC)
set_property(SOURCE src/plain/readFile.cpp DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY
  COMPILE_DEFINITIONS ZU_LOCAL_CODE_PAGE_IS_UTF8=$<BOOL:${ZU_LOCAL_CODE_PAGE_IS_UTF8}>)

# Both parts for programs that link them instead of the shared objects; without the platform.
add_library(zuUtilConfigWhole INTERFACE)
target_sources(zuUtilConfigWhole INTERFACE
  $<TARGET_OBJECTS:zuUtilConfigShared> $<TARGET_OBJECTS:zuUtilConfigObjects>
  $<TARGET_OBJECTS:zuUtilConfigXmlObjects> ${PROJECT_SOURCE_DIR}/src/entry/linkXmlPart.cpp)
target_compile_definitions(zuUtilConfigWhole INTERFACE ZU_VERSION="${PROJECT_VERSION}")
target_include_directories(zuUtilConfigWhole INTERFACE
  ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/support ${PROJECT_SOURCE_DIR}/toolkit
  ${PROJECT_SOURCE_DIR}/src ${ZU_GENERATED_INCLUDE_DIR})
target_link_libraries(zuUtilConfigWhole INTERFACE XercesC::XercesC)

add_library(zuUtilConfig SHARED)
add_library(zu::UtilConfig ALIAS zuUtilConfig)
target_include_directories(zuUtilConfig INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/support>
  $<BUILD_INTERFACE:${ZU_GENERATED_INCLUDE_DIR}>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(zuUtilConfig INTERFACE cxx_std_17)
# Callers need none of these to build; the export set therefore does not name them.
target_sources(zuUtilConfig PRIVATE src/entry/openXmlPart.cpp)
target_include_directories(zuUtilConfig PRIVATE ${PROJECT_SOURCE_DIR}/src)
target_compile_definitions(zuUtilConfig PRIVATE ZU_VERSION="${PROJECT_VERSION}"
  ZU_XML_PART="$<TARGET_SONAME_FILE_NAME:zuUtilConfigXml>")
target_link_libraries(zuUtilConfig PRIVATE
  $<BUILD_INTERFACE:zuUtilConfigShared;zuUtilConfigObjects;zu_build_flags;zu::CUtil;zu::UtilLocator>
  ${CMAKE_DL_LIBS})
set_target_properties(zuUtilConfig PROPERTIES EXPORT_NAME UtilConfig)

# The part that needs the XML library, which the other one opens when it is needed first.
add_library(zuUtilConfigXml SHARED)
target_link_libraries(zuUtilConfigXml PRIVATE
  zuUtilConfigShared zuUtilConfigXmlObjects zu_build_flags zuUtilConfig XercesC::XercesC zu::CUtil
  zu::UtilLocator)

foreach(library IN ITEMS zuUtilConfig zuUtilConfigXml)
  set_target_properties(${library} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 1)
  # The error registry and the parts keep pointers into each other for the life of the process.
  target_link_options(${library} PRIVATE LINKER:-z,nodelete LINKER:--no-undefined)
  zu_limit_exports(${library} ${PROJECT_SOURCE_DIR}/cmake/${library}.map)
endforeach()
