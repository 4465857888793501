// A configuration as an XML document.
#ifndef SRC_WRITE_WRITEXML_HPP
#define SRC_WRITE_WRITEXML_HPP

#include <ostream>
#include <string>

#include "service/util/config/IConfig.hpp"

namespace service::util::config::write {

// Writes, while it walks, a document that is valid against the grammar and loads to the same
// content. name: of the configuration, in the document. It is XML 1.1 when there are control
// characters that XML 1.0 cannot hold. Throws std::runtime_error for what neither can.
void writeXml(std::ostream& out, const IConfigPtr& config, const std::string& name);

}  // namespace service::util::config::write

#endif
