// The names of elements and attributes in configuration documents, as the XML library spells them,
// and what each element means to a walk.
#ifndef SRC_XML_NAMES_HPP
#define SRC_XML_NAMES_HPP

#include <optional>
#include <string_view>
#include <xercesc/util/XMLString.hpp>

#include "load/ElementKind.hpp"
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

// What a child element means, whatever its namespace; nothing when it is passed over.
inline std::optional<internal::ElementKind> kindOf(const xercesc::DOMElement& element) {
  const XMLCh* name = element.getLocalName();
  const auto isCalled = [name](const xerces::XmlString& known) {
    return xercesc::XMLString::equals(name, known.c_str());
  };
  if (isCalled(property)) return internal::ElementKind::PROPERTY;
  if (isCalled(section)) return internal::ElementKind::SECTION;
  if (isCalled(include)) return internal::ElementKind::INCLUDE;
  return std::nullopt;
}

}  // namespace service::util::config::xml::names

#endif
