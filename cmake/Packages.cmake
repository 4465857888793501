# What `cpack` makes of a build: a Debian package for each component of the installation.
# scripts/packages configures a build for them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL Runtime RuntimeXml Development Tools Documentation)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/complete.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "zuUtilConfig authors <zuutilconfig@lists.invalid>"
    CACHE STRING "Maintainer of the Debian packages: name <mail address>")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/platform)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
foreach(component IN ITEMS RUNTIME RUNTIMEXML)
  set(CPACK_DEBIAN_${component}_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
endforeach()

function(zu_package component name section summary description)
  set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${component}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${component}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
endfunction()

zu_package(RUNTIME libzuutilconfig1 libs
"configuration trees from XML files, shared libraries"
"A configuration is a tree of named sections that hold named text values. It is
loaded from XML files, which are found along a search path, may include each
other and can be validated, or made in memory.
.
This package holds the libraries that programs need to run.")
zu_package(RUNTIMEXML libzuutilconfigxml1 libs
"configuration trees from XML files, shared library for all XML"
"A configuration is a tree of named sections that hold named text values. It is
loaded from XML files, which are found along a search path, may include each
other and can be validated, or made in memory.
.
This package holds the part of the library that is opened for checks and for
files that are not plain: with a document type, with prefixes, in other
encodings than UTF-8, or with mistakes, which it tells.")
zu_package(DEVELOPMENT libzuutilconfig-dev libdevel
"configuration trees from XML files, development files"
"Programs in C++17 read the values of a configuration by name and index or with
a selector such as network.interface[1].address[2].
.
This package holds the headers, the CMake package, the pkg-config files and the
grammar for editors.")
zu_package(TOOLS zuconfig utils
"configuration trees from XML files, command"
"Prints, explains, compares and checks configurations: where a value comes from,
what all included files come to, what is wrong in them.
.
This package holds the command, its manual and its completion for bash and zsh.")
zu_package(DOCUMENTATION libzuutilconfig-doc doc
"configuration trees from XML files, documents and example"
"A configuration is a tree of named sections that hold named text values. It is
loaded from XML files, which are found along a search path, may include each
other and can be validated, or made in memory.
.
This package holds the documents for programmers, a reference of the headers
and an example.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)

set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_RUNTIMEXML_DEPENDS Runtime)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime RuntimeXml)
set(CPACK_COMPONENT_TOOLS_DEPENDS Runtime RuntimeXml)
# Programs' packages depend on the first part alone, so that an image can leave the other one out.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "libzuutilconfigxml1 (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libzuutilconfig-doc)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS libzuutilconfig-doc)
include(CPack)
