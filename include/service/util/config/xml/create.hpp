// Loading a configuration from XML files.
//
// A load changes two things of the whole process while it runs: the search path, and whether the
// XML library is initialised. It puts both back, also when it fails. Loads must therefore not
// overlap. The configuration that comes out depends on neither.
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
// file: a name that is looked up along the configuration search path. While a file is read, its own
// directory stands at the front of the path. validate: whether to check every file against the
// grammar of configuration files. schemes: the schemas of further namespaces, used only when
// validating; a relative location starts at the directory of the document that is read.
//
// Throws cppUtil::err::Exception: code 1 when the file is not found; 3 when an included one is not;
// 6 when a document is malformed or invalid, when an element has no name or no text, and for any
// std::exception; 7 for anything else that was thrown; or the code of a platform call that failed.
ZU_EXPORT IConfigPtr create(const std::string& file, const SchemeList& schemes, bool validate);

}  // namespace service::util::config::xml

#endif
