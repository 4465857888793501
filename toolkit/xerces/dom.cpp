#include "xerces/dom.hpp"

#include <memory>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "xerces/Exception.hpp"
#include "xerces/Parser.hpp"

namespace xerces {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::XMLPlatformUtils;
using xercesc::XMLString;

struct ReleaseText {
  void operator()(char* text) const {
    XMLString::release(&text, XMLPlatformUtils::fgMemoryManager);
  }
};

Exception failureAt(const DOMElement& element) {
  const Parser::LocationTag& tag = Parser::getLocationTag(&element);
  Exception failure;
  failure << "XMLParser: in file \"" << tag.file << "\" at line " << tag.line << " at column "
          << tag.column;
  return failure;
}

}  // namespace

std::string transcode(const XmlString& text) {
  return transcode(text.c_str());
}

std::string transcode(const XMLCh* text) {
  const std::unique_ptr<char, ReleaseText> buffer(
      XMLString::transcode(text, XMLPlatformUtils::fgMemoryManager));
  return buffer == nullptr ? std::string() : buffer.get();
}

std::list<DOMElement*> namedChildElements(const DOMElement& element, const XmlString& name) {
  std::list<DOMElement*> children;
  for (DOMNode* node = element.getFirstChild(); node != nullptr; node = node->getNextSibling()) {
    if (node->getNodeType() == DOMNode::ELEMENT_NODE &&
        XMLString::compareString(node->getLocalName(), name.c_str()) == 0) {
      children.push_back(static_cast<DOMElement*>(node));
    }
  }
  return children;
}

void match(const DOMElement& element, const XmlString& name) {
  const XMLCh* localName = element.getLocalName();
  if (localName != nullptr && XMLString::compareString(localName, name.c_str()) == 0) return;
  throw failureAt(element) << ": expected element called \"" << transcode(name) << "\"!";
}

std::string mandatoryAttribute(const DOMElement& element, const XmlString& name) {
  std::string value = transcode(element.getAttribute(name.c_str()));
  if (value.empty()) {
    throw failureAt(element) << ": expected attribute \"" << transcode(name) << "\"!";
  }
  return value;
}

std::string textContent(const DOMElement& element) {
  std::string text = transcode(element.getTextContent());
  if (text.empty()) {
    throw failureAt(element) << ": expected element to have a text content!";
  }
  return text;
}

}  // namespace xerces
