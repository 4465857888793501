// The grammar of configuration files, an XML Schema that the library carries inside itself.
//
// The same bytes are installed as share/zu/config.xsd, for editors. Any thread.
#ifndef SERVICE_UTIL_CONFIG_GRAMMAR_GETGRAMMAR_HPP
#define SERVICE_UTIL_CONFIG_GRAMMAR_GETGRAMMAR_HPP

#include <vector>

#include "cppUtil/export.hpp"

namespace service::util::config::grammar {

// The namespace of the elements that it declares.
inline constexpr const char* targetNamespace = "urn:zu:util:config";

// A copy of the grammar's UTF-8 text, without a terminating NUL. Throws std::bad_alloc only.
ZU_EXPORT std::vector<char> getGrammar();

}  // namespace service::util::config::grammar

#endif
