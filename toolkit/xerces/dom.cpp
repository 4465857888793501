#include "xerces/dom.hpp"

#include <memory>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "xerces/Parser.hpp"

namespace xerces {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::XMLPlatformUtils;
using xercesc::XMLString;

struct ReleaseText {
  template <class Character>
  void operator()(Character* text) const {
    XMLString::release(&text, XMLPlatformUtils::fgMemoryManager);
  }
};

using LocalText = std::unique_ptr<char, ReleaseText>;

// Whether the local code page writes every ASCII character as itself, as all usual ones do.
bool isLocalAscii() {
  static const bool answer = [] {
    std::string ascii;
    for (char c = 1; c > 0; ++c) ascii += c;
    const XmlString text(ascii.begin(), ascii.end());
    const LocalText local(XMLString::transcode(text.c_str(), XMLPlatformUtils::fgMemoryManager));
    return local != nullptr && ascii == local.get();
  }();
  return answer;
}

// The text of most elements and attributes is one text node, which is read in place: the XML
// library's own answer is several times slower. Null for all others.
const XMLCh* onlyTextOf(const DOMNode& node) {
  const DOMNode* child = node.getFirstChild();
  const bool isOnlyText = child != nullptr && child->getNodeType() == DOMNode::TEXT_NODE &&
                          child->getNextSibling() == nullptr;
  return isOnlyText ? child->getNodeValue() : nullptr;
}

}  // namespace

std::string transcode(const XmlString& text) {
  return transcode(text.c_str());
}

std::string transcode(const XMLCh* text) {
  if (text == nullptr) return "";
  const XMLCh* end = text;
  while (*end != 0 && *end < 0x80) ++end;
  if (*end == 0 && isLocalAscii()) return {text, end};

  const LocalText local(XMLString::transcode(text, XMLPlatformUtils::fgMemoryManager));
  return local == nullptr ? std::string() : local.get();
}

XmlString fromLocal(const std::string& text) {
  const std::unique_ptr<XMLCh, ReleaseText> units(
      XMLString::transcode(text.c_str(), XMLPlatformUtils::fgMemoryManager));
  return units == nullptr ? XmlString() : units.get();
}

LocatedException failureAt(const DOMElement& element, const std::string& reason) {
  const Parser::LocationTag& tag = Parser::getLocationTag(&element);
  return {tag.file, {tag.line, tag.column}, reason};
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
  throw failureAt(element, "expected element called \"" + transcode(name) + "\"!");
}

std::string mandatoryAttribute(const DOMElement& element, const XmlString& name) {
  const DOMNode* attribute = element.getAttributeNode(name.c_str());
  const XMLCh* text = attribute == nullptr ? nullptr : onlyTextOf(*attribute);
  std::string value = transcode(text != nullptr ? text : element.getAttribute(name.c_str()));
  if (value.empty()) {
    throw failureAt(element, "expected attribute \"" + transcode(name) + "\"!");
  }
  return value;
}

std::string textContent(const DOMElement& element) {
  const XMLCh* content = onlyTextOf(element);
  std::string text = transcode(content != nullptr ? content : element.getTextContent());
  if (text.empty()) {
    throw failureAt(element, "expected element to have a text content!");
  }
  return text;
}

}  // namespace xerces
