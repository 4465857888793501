#include "LenientParser.hpp"

#include <algorithm>
#include <cstdio>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "xerces/Exception.hpp"
#include "xerces/dom.hpp"

namespace service::util::config::xml::internal {

namespace {

using xercesc::XMLErrorReporter;
using xercesc::XMLErrs;
using xercesc::XMLString;
using xercesc::XMLUni;
using Fault = LenientParser::Fault;

// Two messages of the XML library tell little to those who do not know its grammar.
Fault faultOf(unsigned int code, const XMLCh* domain, XMLErrorReporter::ErrTypes type,
              const XMLCh* text) {
  const std::string message = xerces::transcode(text);
  if (type == XMLErrorReporter::ErrType_Warning) return {Fault::WARNING, message, {}};
  if (XMLString::equals(domain, XMLUni::fgValidityDomain)) return {Fault::INVALID, message, {}};
  if (XMLString::equals(domain, XMLUni::fgXMLErrDomain)) {
    if (code == XMLErrs::ExpectedCommentOrPI) {
      return {Fault::SEVERAL_ROOTS,
              message + ": a document has one root element and nothing after it",
              {}};
    }
    if (code == XMLErrs::InvalidDocumentStructure) {
      return {Fault::NOT_WELL_FORMED, message + ": the root element is missing here", {}};
    }
  }
  return {Fault::NOT_WELL_FORMED, message, {}};
}

// The loader's parser begins its messages with the place.
Fault refusal(const std::string& file, const std::string& message) {
  Fault fault = {Fault::REFUSED, message, {file}};
  const std::string place = "XMLParser: in file \"" + file + "\" at line ";
  int end = 0;
  if (message.compare(0, place.size(), place) == 0 &&
      std::sscanf(message.c_str() + place.size(), "%d at column %d: %n", &fault.location.line,
                  &fault.location.column, &end) == 2) {
    fault.message.erase(0, place.size() + static_cast<std::size_t>(end));
  }
  if (message.empty()) fault.message = "the XML library failed without a reason";
  return fault;
}

}  // namespace

const xercesc::DOMDocument* LenientParser::parseLeniently(const std::string& path) {
  faults.clear();
  elements.clear();
  open.clear();
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
  faults.push_back(std::move(fault));
  DocumentParser::error(code, domain, type, text, systemId, publicId, line, column);
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
