// Loading a configuration from XML files.
//
// A load changes process-wide state while it runs, the search path and the initialisation of the
// XML library, and puts both back on every way out. Loads must therefore not overlap. The
// configuration that comes out is independent of all that.
#ifndef SERVICE_UTIL_CONFIG_XML_CREATE_HPP
#define SERVICE_UTIL_CONFIG_XML_CREATE_HPP

#include <list>
#include <string>
#include <utility>

#include "cppUtil/export.hpp"
#include "service/util/config/IConfig.hpp"

namespace service::util::config::xml {

// Further schemas for validation, in order: the URI of a namespace and the location of its schema.
using SchemeList = std::list<std::pair<std::string, std::string>>;

// Loads the file and everything it includes.
//
// file: a name that is looked up along the configuration search path; while a file is read, its own
// directory stands at the front of the path. validate: checks every file against the grammar of
// configuration files and, where they use further namespaces, the given schemas; without it schemes
// is not used.
//
// Throws cppUtil::err::Exception: code 1 when the file is not found, 3 when an included one is not,
// 6 when a document is malformed or invalid, an element lacks a name or a text, or a C++ library
// failed, 7 when something failed that gives no reason; or the code of a failed platform call. On
// failure nothing is returned.
ZU_EXPORT IConfigPtr create(const std::string& file, const SchemeList& schemes, bool validate);

}  // namespace service::util::config::xml

#endif
