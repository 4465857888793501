# What `cmake --install` gives: the public headers, the libraries, a CMake package, pkg-config files,
# the grammar and the documents. The tree may be moved as a whole. Its components are Runtime,
# RuntimeXml, which programs that load plain files only can do without, Development, Documentation,
# and Tools, the command.
#
# Neither the package nor the pkg-config files name the XML library: callers do not need its
# development files.
include(CMakePackageConfigHelpers)

install(CODE [[
  if(IS_DIRECTORY "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
    set(ZU_PREFIX_EXISTED TRUE)
  endif()]] ALL_COMPONENTS)  # asked by readable.cmake, after all other steps

# The headers that callers may rely on. The toolkit and the helpers that the adapters share are not
# among them.
target_sources(zuUtilConfig PUBLIC FILE_SET HEADERS
  BASE_DIRS
    ${PROJECT_SOURCE_DIR}/include
    ${PROJECT_SOURCE_DIR}/support
    ${ZU_GENERATED_INCLUDE_DIR}
  FILES
    include/service/util/config/IConfig.hpp
    include/service/util/config/Live.hpp
    include/service/util/config/Select.hpp
    include/service/util/config/bind.hpp
    include/service/util/config/bind/Fields.hpp
    include/service/util/config/bind/Overrides.hpp
    include/service/util/config/bind/Settings.hpp
    include/service/util/config/bind/tables.hpp
    include/service/util/config/bind/values.hpp
    include/service/util/config/grammar/getGrammar.hpp
    include/service/util/config/internal/Config.hpp
    include/service/util/config/internal/Section.hpp
    include/service/util/config/live/Engine.hpp
    include/service/util/config/visit.hpp
    include/service/util/config/xml/Location.hpp
    include/service/util/config/xml/Observer.hpp
    include/service/util/config/xml/Origins.hpp
    include/service/util/config/xml/Session.hpp
    include/service/util/config/xml/check.hpp
    include/service/util/config/xml/create.hpp
    include/service/util/config/xml/format.hpp
    include/service/util/config/xml/internal/XmlConfigParser.hpp
    ${ZU_GENERATED_INCLUDE_DIR}/service/util/config/xml/internal/xercesNamespace.hpp
    support/cppUtil/err/Exception.hpp
    support/cppUtil/err/StackTrace.hpp
    support/cppUtil/err/describe.hpp
    support/cppUtil/export.hpp
    support/cppUtil/fileName/getPath.hpp
    support/cppUtil/logger/Logger.hpp
    support/service/util/config/errorModule.hpp
    support/service/util/locator/ConfigLocator.hpp)
set(ZU_INSTALLED_LIBRARIES zuUtilConfig)

if(ZU_PLATFORM STREQUAL "BUNDLED")
  target_sources(zuCUtil PUBLIC FILE_SET HEADERS
    BASE_DIRS ${PROJECT_SOURCE_DIR}/platform/cutil/include
    FILES ${PROJECT_SOURCE_DIR}/platform/cutil/include/cutil/cutil.h)
  target_sources(zuUtilLocator PUBLIC FILE_SET HEADERS
    BASE_DIRS ${PROJECT_SOURCE_DIR}/platform/locator/include
    FILES ${PROJECT_SOURCE_DIR}/platform/locator/include/locator/locator.h)
  list(APPEND ZU_INSTALLED_LIBRARIES zuCUtil zuUtilLocator)
endif()

# The libraries find each other in whatever directory they were put.
set_target_properties(${ZU_INSTALLED_LIBRARIES} zuUtilConfigXml PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS ${ZU_INSTALLED_LIBRARIES} EXPORT zuUtilConfig
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT Runtime NAMELINK_COMPONENT Development
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development)

# Nobody links it.
install(TARGETS zuUtilConfigXml LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  COMPONENT RuntimeXml NAMELINK_SKIP)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zuUtilConfig)
install(EXPORT zuUtilConfig FILE zuUtilConfigTargets.cmake NAMESPACE zu::
  DESTINATION ${package_dir} COMPONENT Development)
install(FILES cmake/zuUtilConfigConfig.cmake cmake/zuExportSettings.cmake
  DESTINATION ${package_dir} COMPONENT Development)
write_basic_package_version_file(zuUtilConfigConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zuUtilConfigConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT Development)

# One pkg-config file for each library; requires names the modules that its headers include.
function(zu_install_pkg_config name description requires)
  # Relative to the file itself, so that the tree can be moved.
  set(here ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${here} OUTPUT_VARIABLE prefix)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${here} OUTPUT_VARIABLE libdir)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR BASE_DIRECTORY ${here}
             OUTPUT_VARIABLE includedir)
  configure_file(cmake/library.pc.in ${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
endfunction()

zu_install_pkg_config(zuUtilConfig "${PROJECT_DESCRIPTION}" "")
if(ZU_PLATFORM STREQUAL "BUNDLED")
  zu_install_pkg_config(zuCUtil "Error registry, search paths, file names and logging in C" "")
  zu_install_pkg_config(zuUtilLocator "The search path of configuration files" zuCUtil)
endif()

install(FILES src/grammar/config.xsd DESTINATION ${CMAKE_INSTALL_DATADIR}/zu COMPONENT Development)

# In the folders of the source, so that the documents' links to each other hold.
set(documents ${CMAKE_INSTALL_DOCDIR})
install(FILES README.md CHANGELOG.md DESTINATION ${documents} COMPONENT Documentation)
install(FILES platform/README.md DESTINATION ${documents}/platform COMPONENT Documentation)
install(FILES examples/gateway.cpp examples/gatewaySettings.hpp
  DESTINATION ${documents}/examples COMPONENT Documentation)
install(DIRECTORY examples/broken examples/gateway DESTINATION ${documents}/examples COMPONENT Documentation)
install(DIRECTORY docs DESTINATION ${documents} COMPONENT Documentation)
install(DIRECTORY ${PROJECT_BINARY_DIR}/html DESTINATION ${documents}
  COMPONENT Documentation OPTIONAL)  # of the target docs
