#include "xml/Effort.hpp"

#include <limits>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

#include "cppUtil/internal/stackLeft.hpp"
#include "xml/names.hpp"

namespace service::util::config::xml::internal {

namespace {

using xercesc::XMLString;
using xercesc::XMLUni;

// The XML library inserts attributes into a sorted list, one by one. Those that a document type
// declares for an element it goes through at each such element.
constexpr XMLSize_t maximumAttributes = 10000;
constexpr XMLSize_t maximumDeclaredAttributes = 1000;

constexpr std::uint64_t initialNames = 20000;
constexpr std::uint64_t bytesReadPerName = 1000;

// A thousand million take some three seconds.
constexpr std::uint64_t initialSteps = 256U << 20;
constexpr std::uint64_t stepsPerByteRead = 100;

// Names and operators. The largest take a tenth of a second.
constexpr std::size_t maximumContentNodes = 2000;
constexpr std::size_t stackPerContentNode = 256;

// Reading the text of nested elements takes this much stack for each level, and so, or less, does
// the walk over nested sections.
constexpr std::size_t stackPerLevel = 512;
constexpr std::size_t stackReserve = 64UL * 1024;
constexpr std::size_t levelsBetweenChecks = 64;

bool isEmpty(const XMLCh* text) {
  return text == nullptr || *text == 0;
}

std::size_t countNodes(const xercesc::ContentSpecNode* content, std::size_t maximum) {
  std::vector<const xercesc::ContentSpecNode*> left = {content};
  std::size_t count = 0;
  while (!left.empty() && count <= maximum) {
    const xercesc::ContentSpecNode* node = left.back();
    left.pop_back();
    if (node == nullptr) continue;
    ++count;
    left.push_back(node->getFirst());
    left.push_back(node->getSecond());
  }
  return count;
}

}  // namespace

std::size_t Effort::Hash::operator()(const xerces::XmlString& text) const {
  return XMLString::hash(text.c_str(), std::numeric_limits<XMLSize_t>::max());
}

void Effort::startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                          const XMLCh* prefix,
                          const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                          XMLSize_t attributeCount) {
  if (attributeCount > maximumAttributes) budget.refuse("too many attributes");
  // The XML library numbers elements and namespaces as it meets them.
  requireFewNames(declaration.getId());
  requireFewNames(urlId);
  if (!isEmpty(prefix)) addName(prefix, declaration.getBaseName());
  std::size_t namespaces = 0;
  std::size_t lookups = 1;
  for (XMLSize_t i = 0; i < attributeCount; ++i) {
    const xercesc::XMLAttr& attribute = *attributes.elementAt(i);
    if (addAttribute(attribute)) ++namespaces;
    if (!isEmpty(attribute.getPrefix())) ++lookups;
  }
  open.push_back(namespaces);
  around += 1 + namespaces;
  requireStack();
  steps += around * lookups;
  if (steps > initialSteps + budget.getRead() * stepsPerByteRead) {
    budget.refuse("elements or namespaces nested too deeply for the size of the document");
  }
}

void Effort::endElement() {
  around -= 1 + open.back();
  open.pop_back();
}

void Effort::declareName() {
  requireFewNames(++declared);
}

void Effort::declareAttribute(const xercesc::DTDElementDecl& element) {
  declareName();
  if (element.getAttDefList().getAttDefCount() > maximumDeclaredAttributes) {
    budget.refuse("too many attributes");
  }
}

// The automaton is made later, with less stack than now by no more than the reserve.
void Effort::declareContent(const xercesc::DTDElementDecl& element) {
  const std::size_t nodes = countNodes(element.getContentSpec(), maximumContentNodes);
  if (nodes > maximumContentNodes ||
      cppUtil::internal::stackLeft() < stackReserve + nodes * stackPerContentNode) {
    budget.refuse("content model too large");
  }
}

void Effort::requireStack() {
  if (open.size() % levelsBetweenChecks == 0 &&
      cppUtil::internal::stackLeft() < stackReserve + open.size() * stackPerLevel) {
    budget.refuse("elements nested too deeply for the stack");
  }
}

void Effort::requireFewNames(std::size_t count) {
  if (count > initialNames && count > initialNames + budget.getRead() / bytesReadPerName) {
    budget.refuse("too many names");
  }
}

void Effort::addName(const XMLCh* prefix, const XMLCh* localName) {
  xerces::XmlString name;
  if (!isEmpty(prefix)) name.append(prefix).append(1, ':');
  names.insert(name.append(localName));
  requireFewNames(names.size());
}

// Whether the attribute declares a namespace.
bool Effort::addAttribute(const xercesc::XMLAttr& attribute) {
  const XMLCh* prefix = attribute.getPrefix();
  const XMLCh* name = attribute.getName();
  if (isEmpty(prefix) && XMLString::equals(name, names::name.c_str())) return false;
  addName(prefix, name);
  requireFewNames(attribute.getURIId());
  return XMLString::equals(isEmpty(prefix) ? name : prefix, XMLUni::fgXMLNSString);
}

}  // namespace service::util::config::xml::internal
