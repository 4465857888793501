// The names of elements and attributes in configuration documents, as the XML library spells them.
#ifndef SRC_XML_NAMES_HPP
#define SRC_XML_NAMES_HPP

#include <string_view>

#include "xerces/dom.hpp"

namespace service::util::config::xml::names {

inline xerces::XmlString fromAscii(std::string_view text) {
  return {text.begin(), text.end()};
}

inline const xerces::XmlString config = fromAscii("config");
inline const xerces::XmlString section = fromAscii("section");
inline const xerces::XmlString property = fromAscii("property");
inline const xerces::XmlString include = fromAscii("include");
inline const xerces::XmlString name = fromAscii("name");

}  // namespace service::util::config::xml::names

#endif
