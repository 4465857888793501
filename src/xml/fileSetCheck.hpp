// Finds all that is wrong with a file and everything it includes.
#ifndef SRC_XML_FILESETCHECK_HPP
#define SRC_XML_FILESETCHECK_HPP

#include "service/util/config/xml/check.hpp"

namespace service::util::config::xml::internal {

// xml::check, with the XML library initialised.
std::vector<Problem> checkFileSet(const std::string& file, const SchemeList& schemes, bool validate,
                                  Observer& observer);

}  // namespace service::util::config::xml::internal

#endif
