// Where the part of the library that needs the XML library comes from: linkXmlPart.cpp is for
// programs that it is linked into.
#ifndef SRC_ENTRY_FINDXMLPART_HPP
#define SRC_ENTRY_FINDXMLPART_HPP

#include "load/XmlPart.hpp"

namespace service::util::config::xml::internal {

const XmlPart& findXmlPart();

}  // namespace service::util::config::xml::internal

#endif
