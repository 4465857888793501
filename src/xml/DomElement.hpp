// An element of a DOM as the walk over documents wants it, see load/Walk.hpp.
#ifndef SRC_XML_DOMELEMENT_HPP
#define SRC_XML_DOMELEMENT_HPP

#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "load/LoadEvents.hpp"
#include "xerces/Parser.hpp"
#include "xerces/dom.hpp"
#include "xml/names.hpp"

namespace service::util::config::xml::internal {

class DomElement {
 public:
  class Children;

  explicit DomElement(const xercesc::DOMElement& element) : element(&element) {}

  void match(ElementKind kind) const { xerces::match(*element, nameOf(kind)); }
  void readName(std::string& name) const {
    name = xerces::mandatoryAttribute(*element, names::name);
  }
  void readText(std::string& text) const { text = xerces::textContent(*element); }
  Position position() const { return {tag().line, tag().column}; }
  std::string file() const { return tag().file; }

 private:
  static const xerces::XmlString& nameOf(ElementKind kind) {
    switch (kind) {
      case ElementKind::PROPERTY:
        return names::property;
      case ElementKind::INCLUDE:
        return names::include;
      case ElementKind::SECTION:
        return names::section;
      default:
        return names::config;
    }
  }

  const xerces::Parser::LocationTag& tag() const { return xerces::Parser::getLocationTag(element); }

  const xercesc::DOMElement* element;
};

// Sorted by kind in one go, as the DOM is slow to walk over.
class DomElement::Children {
 public:
  explicit Children(const DomElement& parent) {
    for (const xercesc::DOMNode* node = parent.element->getFirstChild(); node != nullptr;
         node = node->getNextSibling()) {
      if (node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE) continue;
      const auto* element = static_cast<const xercesc::DOMElement*>(node);
      if (const auto kind = names::kindOf(*element)) {
        elements[static_cast<std::size_t>(*kind)].emplace_back(*element);
      }
    }
  }

  template <class Step>
  void forEach(ElementKind kind, const Step& step) const {
    for (const DomElement& element : elements[static_cast<std::size_t>(kind)]) step(element);
  }

 private:
  std::vector<DomElement> elements[4];
};

}  // namespace service::util::config::xml::internal

#endif
