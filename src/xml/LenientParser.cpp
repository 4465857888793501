#include "xml/LenientParser.hpp"

#include <algorithm>
#include <cstdio>
#include <tuple>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLValidityCodes.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "report/SourceFile.hpp"
#include "xerces/Exception.hpp"
#include "xerces/dom.hpp"

namespace service::util::config::xml::internal {

namespace {

using xercesc::XMLErrorReporter;
using xercesc::XMLErrs;
using xercesc::XMLString;
using xercesc::XMLUni;
using Fault = LenientParser::Fault;

// What a message of the XML library leaves open for those who do not know its grammar.
const char* hintFor(unsigned int code) {
  switch (code) {
    case XMLErrs::ExpectedEntityRefName:
    case XMLErrs::UnterminatedEntityRef:
      return ": an ampersand in a text is written &amp;";
    case XMLErrs::ExpectedElementName:
      return ": a less-than sign in a text is written &lt;";
    case XMLErrs::EntityNotFound:
      return ": those of XML are &amp;, &lt;, &gt;, &quot; and &apos;";
    case XMLErrs::ExpectedAttrValue:
      return ": it stands in straight quotes";
    case XMLErrs::ExpectedWhitespace:
      return ": before this place a quote or \">\" may be missing, or a quote be one too many";
    case XMLErrs::ExpectedAttrName:
      return ": before this place a blank or \">\" may be missing";
    case XMLErrs::ExpectedCommentOrPI:
      return ": a document has one root element and nothing after it";
    case XMLErrs::InvalidDocumentStructure:
      return ": the root element is missing here";
    default:
      return "";
  }
}

// Whether the line is one of those that a merge leaves where two changes contradict each other.
bool isConflictMark(const Location& location) {
  report::SourceFile file(location.file);
  const auto line = file.find(location.line, 1);
  return line && file.read(line->offset, 7) == "<<<<<<<";
}

Fault faultOf(unsigned int code, const XMLCh* domain, XMLErrorReporter::ErrTypes type,
              const XMLCh* text) {
  const std::string message = xerces::transcode(text);
  if (type == XMLErrorReporter::ErrType_Warning) return {Fault::WARNING, message, {}};
  if (XMLString::equals(domain, XMLUni::fgValidityDomain)) {
    const bool isText = code == xercesc::XMLValid::NoCharDataInCM;
    return {Fault::INVALID,
            message + (isText ? ": the text before this place belongs in a property" : ""),
            {}};
  }
  // Values that their type does not allow.
  if (XMLString::equals(domain, XMLUni::fgExceptDomain) &&
      type == XMLErrorReporter::ErrType_Error) {
    return {Fault::INVALID, message, {}};
  }
  if (XMLString::equals(domain, XMLUni::fgXMLErrDomain)) {
    const bool isRoot = code == XMLErrs::ExpectedCommentOrPI;
    return {isRoot ? Fault::SEVERAL_ROOTS : Fault::NOT_WELL_FORMED, message + hintFor(code), {}};
  }
  return {Fault::NOT_WELL_FORMED, message, {}};
}

// The loader's parser begins its messages with the place.
Fault refusal(const std::string& file, const std::string& message) {
  Fault fault = {Fault::REFUSED, message, {file}};
  const std::string start = "XMLParser: in file \"";
  const std::size_t place = message.find("\" at line ");
  int length = 0;
  if (message.compare(0, start.size(), start) == 0 && place != std::string::npos &&
      std::sscanf(message.c_str() + place, "\" at line %d at column %d: %n", &fault.location.line,
                  &fault.location.column, &length) == 2) {
    fault.location.file = message.substr(start.size(), place - start.size());
    fault.message.erase(0, place + static_cast<std::size_t>(length));
  }
  if (message.empty()) fault.message = "the XML library failed without a reason";
  return fault;
}

}  // namespace

const xercesc::DOMDocument* LenientParser::parseLeniently(const std::string& path) {
  faults.clear();
  elements.clear();
  open.clear();
  unknownElements.clear();
  lastUnknown = {};
  try {
    return parseDoc(path);
  } catch (const xerces::Exception& e) {
    if (faults.empty()) faults.push_back(refusal(path, e.what()));
    return getDocument();
  }
}

Location LenientParser::locationOf(const xercesc::DOMElement& element) const {
  const auto found = elements.find(&element);
  if (found == elements.end()) return {getFileName()};
  return {getFileName(), found->second.line, found->second.column};
}

bool LenientParser::isOpen(const xercesc::DOMElement& element) const {
  return std::find(open.begin(), open.end(), &element) != open.end();
}

void LenientParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                                 const XMLCh* prefix,
                                 const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                 XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
  DocumentParser::startElement(declaration, urlId, prefix, attributes, attributeCount, isEmpty,
                               isRoot);
  const xercesc::Locator* locator = getScanner()->getLocator();
  const xercesc::DOMNode* element = getCurrentNode();
  elements[element] = {static_cast<int>(locator->getLineNumber()),
                       static_cast<int>(locator->getColumnNumber())};
  if (!isEmpty) open.push_back(element);
}

void LenientParser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                               bool isRoot, const XMLCh* prefix) {
  DocumentParser::endElement(declaration, urlId, isRoot, prefix);
  const auto found = std::find(open.rbegin(), open.rend(), getCurrentNode());
  if (found != open.rend()) open.erase(std::next(found).base(), open.end());
}

void LenientParser::error(unsigned int code, const XMLCh* domain, ErrTypes type, const XMLCh* text,
                          const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
                          XMLFileLoc column) {
  Fault fault = faultOf(code, domain, type, text);
  fault.location = {xerces::transcode(systemId), static_cast<int>(line), static_cast<int>(column)};
  if (code == XMLErrs::ExpectedElementName && isConflictMark(fault.location)) {
    fault.message = xerces::transcode(text) + ": this line is the mark of an unresolved merge";
  }
  const bool isInvalid = fault.kind == Fault::INVALID;
  if (!isInvalid && XMLString::equals(domain, XMLUni::fgXMLErrDomain)) explainOpenTag(fault, code);
  if (!isInvalid || !followsFromUnknownElement(fault, code)) faults.push_back(std::move(fault));
  DocumentParser::error(code, domain, type, text, systemId, publicId, line, column);
}

// Tells which tag is not closed, and takes back what is invalid only because of that.
void LenientParser::explainOpenTag(Fault& fault, unsigned int code) {
  if (code != XMLErrs::ExpectedEndOfTagX && code != XMLErrs::EndedWithTagsOnStack) return;
  if (open.empty()) return;
  const Place place = elements[open.back()];
  fault.message += ": the start tag in line " + std::to_string(place.line) + " is still open";
  const auto isInside = [&](const Fault& other) {
    return other.kind == Fault::INVALID && std::tie(other.location.line, other.location.column) >
                                               std::tie(place.line, place.column);
  };
  faults.erase(std::remove_if(faults.begin(), faults.end(), isInside), faults.end());
}

// An element that the grammar does not have gives up to three reports; the first one is enough.
bool LenientParser::followsFromUnknownElement(const Fault& fault, unsigned int code) {
  const std::size_t quote = fault.message.find('\'');
  const std::string name =
      fault.message.substr(quote + 1, fault.message.find('\'', quote + 1) - quote - 1);
  switch (code) {
    case xercesc::XMLValid::ElementNotDefined:
      unknownElements.insert(name);
      lastUnknown = fault.location;
      return false;
    case xercesc::XMLValid::AttNotDefinedForElement:
      return fault.location.line == lastUnknown.line && fault.location.column == lastUnknown.column;
    case xercesc::XMLValid::ElementNotValidForContent:
      return unknownElements.count(name) > 0;
    default:
      return false;
  }
}

void LenientParser::parseFile(const std::string& name) {
  try {
    DocumentParser::parseFile(name);
  } catch (const xerces::Exception& e) {
    faults.push_back(refusal(name, e.what()));
  } catch (const xercesc::XMLException& e) {
    faults.push_back(refusal(name, xerces::transcode(e.getMessage())));
  }
}

}  // namespace service::util::config::xml::internal
