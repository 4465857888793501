#include "xerces/Parser.hpp"

#include <algorithm>
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

// Leads from a document whose places are in a table to its parser.
constexpr XMLCh PARSER_KEY[] = {'P', 'a', 'r', 's', 'e', 'r', 0};

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

Parser::Parser(xercesc::XMLGrammarPool* grammars, xercesc::MemoryManager* memory, Places places)
    : XercesDOMParser(nullptr, memory, grammars), places(places), handledBefore(handledNotices) {
  setErrorHandler(&errorHandler);
  setIncludeIgnorableWhitespace(false);
  setDoNamespaces(true);
}

// To release a document, the XML library walks over it and notifies the handler of every tag, which
// costs as much as half a parse and recurses as deep as the document.
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
  table.clear();
  isTableSorted = false;
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
    if (places == Places::IN_TABLE) document->setUserData(PARSER_KEY, this, nullptr);
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

  if (node == nullptr) return null;
  const auto* tag = static_cast<LocationTag*>(node->getUserData(LOCATION_TAG_KEY));
  const xercesc::DOMDocument* document = node->getOwnerDocument();
  if (tag == nullptr && document != nullptr) {
    if (auto* parser = static_cast<Parser*>(document->getUserData(PARSER_KEY))) {
      tag = parser->tagFromTable(node);
    }
  }
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

  const Place place = {getCurrentNode(), currentPosition()};
  if (places == Places::IN_TABLE) {
    table.push_back(place);
  } else {
    attachTag(place);
  }
}

// With namespaces on, the scanner reports an empty tag as a start tag and an end tag at the same
// position, and never as empty.
void Parser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId, bool isRoot,
                        const XMLCh* prefix) {
  AbstractDOMParser::endElement(declaration, urlId, isRoot, prefix);
  DOMNode* element = getCurrentNode();
  if (element->hasChildNodes()) return;

  // The newest place is that of this element, which has no children.
  const Position here = currentPosition();
  if (places == Places::IN_TABLE) {
    if (!table.empty() && table.back().position == here) table.back().isEmptyTag = true;
  } else if (!tags.empty() && Position{tags.back()->line, tags.back()->column} == here) {
    element->setUserData(LOCATION_TAG_KEY, nullptr, nullptr);
    delete tags.back();
    tags.pop_back();
  }
}

Parser::LocationTag* Parser::attachTag(const Place& place) {
  auto tag = std::make_unique<LocationTag>(
      LocationTag{fileName, place.position.line, place.position.column, 0});
  tags.push_back(tag.get());
  try {
    place.node->setUserData(LOCATION_TAG_KEY, tag.get(), &getLocationTagHandler());
  } catch (...) {
    tags.pop_back();
    throw;
  }
  ++tag->refCount;
  return tag.release();
}

const Parser::Place* Parser::findPlace(const DOMNode* node) {
  const auto isBefore = [](const Place& left, const Place& right) {
    return left.node < right.node;
  };
  if (!isTableSorted) std::sort(table.begin(), table.end(), isBefore);
  isTableSorted = true;
  const Place wanted = {const_cast<DOMNode*>(node), {}};
  const auto found = std::lower_bound(table.begin(), table.end(), wanted, isBefore);
  return found == table.end() || found->node != node ? nullptr : &*found;
}

Parser::LocationTag* Parser::tagFromTable(const DOMNode* node) {
  const Place* place = findPlace(node);
  return place == nullptr || place->isEmptyTag ? nullptr : attachTag(*place);
}

Position Parser::positionOf(const DOMNode* node) {
  const Place* place = findPlace(node);
  return place == nullptr ? Position() : place->position;
}

// Just behind what was read last.
Position Parser::currentPosition() const {
  const xercesc::Locator* locator = getScanner()->getLocator();
  return {static_cast<int>(locator->getLineNumber()), static_cast<int>(locator->getColumnNumber())};
}

// Takes over the document of the last parse, before the base class forgets to release it.
void Parser::keepDocument() {
  if (getDocument() == nullptr) return;
  earlierDocuments.reserve(earlierDocuments.size() + 1);
  earlierDocuments.push_back(AbstractDOMParser::adoptDocument());
}

}  // namespace xerces
