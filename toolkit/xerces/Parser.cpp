#include "xerces/Parser.hpp"

#include <atomic>
#include <memory>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/XMLException.hpp>

#include "xerces/Exception.hpp"

namespace xerces {

namespace {

using xercesc::DOMNode;
using xercesc::DOMUserDataHandler;

constexpr XMLCh LOCATION_TAG_KEY[] = {'L', 'i', 'n', 'e', 'N', 'u', 'm', 'b', 'e', 'r', 'A',
                                      'n', 'n', 'o', 't', 'a', 't', 'i', 'o', 'n', 0};

// How often the DOM told the handler of a tag.
std::atomic<unsigned int> handledNotices{0};

// The tag of every document node. Its count starts below that of a node, yet copies of a document
// make up for that, so the handler must know it.
Parser::LocationTag& documentTag() {
  static Parser::LocationTag null = {"", 0, 0, 0};
  return null;
}

}  // namespace

Parser::LocationTagHandler::~LocationTagHandler() = default;

void Parser::LocationTagHandler::handle(DOMOperationType operation, const XMLCh* /*key*/,
                                        void* data, const DOMNode* src, DOMNode* dst) {
  ++handledNotices;
  switch (operation) {
    case NODE_CLONED:
      // The clone does not get the tag, yet it counts: a tag with a cloned node is never freed.
      ++static_cast<LocationTag*>(data)->refCount;
      break;
    case NODE_IMPORTED:
      if (auto* tag = static_cast<LocationTag*>(src->getUserData(LOCATION_TAG_KEY))) {
        ++tag->refCount;
        dst->setUserData(LOCATION_TAG_KEY, tag, this);
      }
      break;
    case NODE_DELETED: {
      auto* tag = static_cast<LocationTag*>(data);
      if (--tag->refCount == 0 && tag != &documentTag()) delete tag;
      break;
    }
    default:
      break;
  }
}

const XMLCh* Parser::LocationTagHandler::getLocationTagName() {
  return LOCATION_TAG_KEY;
}

Parser::Parser(xercesc::XMLGrammarPool* grammars, xercesc::MemoryManager* memory)
    : XercesDOMParser(nullptr, memory, grammars), handledBefore(handledNotices) {
  setErrorHandler(&errorHandler);
  setIncludeIgnorableWhitespace(false);
  setDoNamespaces(true);
}

// To release a document, the XML library walks over it and notifies the handler of every tag, which
// costs as much as half a parse and recurses as deep as the document. When no notice has come since
// this parser was built, no tag is shared and none is gone: then the tags are freed right here, and
// the documents without the walk.
Parser::~Parser() {
  const bool tagsAreOurs = handledBefore == handledNotices;
  if (tagsAreOurs) {
    for (const LocationTag* tag : tags) delete tag;
  }
  const auto destroy = [tagsAreOurs](xercesc::DOMDocument* document) {
    if (!tagsAreOurs) return document->release();
    if (auto* tag = static_cast<LocationTag*>(document->getUserData(LOCATION_TAG_KEY))) {
      --tag->refCount;  // as the notice of a release would
    }
    delete document;
  };
  for (xercesc::DOMDocument* document : earlierDocuments) destroy(document);
  if (getDocument() != nullptr) destroy(AbstractDOMParser::adoptDocument());
}

xercesc::DOMDocument* Parser::parseDoc(const std::string& name) {
  fileName = name;
  keepDocument();
  reset();
  try {
    setErrorHandler(&errorHandler);  // whatever was installed in between
    errorHandler.resetErrors();      // the XML library's DOM parser does not pass the reset on
    parseFile(fileName);
    if (errorHandler.hasErrors()) throw Exception() << errorHandler.getReport();
    xercesc::DOMDocument* document = getDocument();
    if (document == nullptr) {
      throw Exception() << "XMLParser: internal error: Null document";
    }
    document->setUserData(LOCATION_TAG_KEY, &documentTag(), &getLocationTagHandler());
    return document;
  } catch (const Exception&) {
    throw;
  } catch (const xercesc::XMLException& e) {
    throw Exception() << "XMLException: " << e.getSrcFile() << ":"
                      << static_cast<unsigned long long>(e.getSrcLine()) << ": " << e.getMessage();
  } catch (const xercesc::DOMException& e) {
    throw Exception() << "DOMException: " << e.getMessage();
  } catch (const std::exception& e) {
    throw Exception() << e.what();
  } catch (...) {
    throw Exception();
  }
}

void Parser::parseFile(const std::string& name) {
  parse(name.c_str());
}

const Parser::LocationTag& Parser::getLocationTag(const DOMNode* node) {
  static const LocationTag null = {"", 0, 0, 0};

  const auto* tag =
      node == nullptr ? nullptr : static_cast<LocationTag*>(node->getUserData(LOCATION_TAG_KEY));
  return tag == nullptr ? null : *tag;
}

Parser::LocationTagHandler& Parser::getLocationTagHandler() {
  static LocationTagHandler locationTagHandler;
  return locationTagHandler;
}

void Parser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                          const XMLCh* prefix,
                          const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                          XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
  AbstractDOMParser::startElement(declaration, urlId, prefix, attributes, attributeCount, isEmpty,
                                  isRoot);
  if (isEmpty) return;

  const xercesc::Locator* locator = getScanner()->getLocator();
  const auto line = static_cast<int>(locator->getLineNumber());
  const auto column = static_cast<int>(locator->getColumnNumber());
  auto tag = std::make_unique<LocationTag>(LocationTag{fileName, line, column, 0});
  tags.push_back(tag.get());
  try {
    getCurrentNode()->setUserData(LOCATION_TAG_KEY, tag.get(), &getLocationTagHandler());
  } catch (...) {
    tags.pop_back();
    throw;
  }
  ++tag.release()->refCount;
}

// With namespaces on, the scanner reports an empty tag as a start tag and an end tag at the same
// position, and never as empty.
void Parser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId, bool isRoot,
                        const XMLCh* prefix) {
  AbstractDOMParser::endElement(declaration, urlId, isRoot, prefix);
  DOMNode* element = getCurrentNode();
  if (element->hasChildNodes()) return;

  const auto* tag = static_cast<LocationTag*>(element->getUserData(LOCATION_TAG_KEY));
  const xercesc::Locator* locator = getScanner()->getLocator();
  if (tag == nullptr || tag->line != static_cast<int>(locator->getLineNumber()) ||
      tag->column != static_cast<int>(locator->getColumnNumber())) {
    return;
  }
  element->setUserData(LOCATION_TAG_KEY, nullptr, nullptr);
  delete tag;
  tags.pop_back();  // the newest one: the element has no children
}

// Takes over the document of the last parse, before the base class forgets to release it.
void Parser::keepDocument() {
  if (getDocument() == nullptr) return;
  earlierDocuments.reserve(earlierDocuments.size() + 1);
  earlierDocuments.push_back(AbstractDOMParser::adoptDocument());
}

}  // namespace xerces
