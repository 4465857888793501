// Text as it stands in XML.
#ifndef SRC_WRITE_XMLTEXT_HPP
#define SRC_WRITE_XMLTEXT_HPP

#include <string>

namespace service::util::config::write {

// Where a text stands. White space is kept: in attributes it is written as references, because a
// parser makes blanks of it otherwise, and so are carriage returns everywhere.
enum class XmlPlace { ATTRIBUTE, ELEMENT };

// text, escaped for its place. Throws std::runtime_error for what XML 1.1 cannot hold.
std::string inXml(const std::string& text, XmlPlace place);

}  // namespace service::util::config::write

#endif
