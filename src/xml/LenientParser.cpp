#include "xml/LenientParser.hpp"

#include <algorithm>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLValidityCodes.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "report/SourceFile.hpp"
#include "xerces/LocatedException.hpp"
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

// The first name that a message of the XML library puts into quotes.
std::string quotedName(const std::string& message) {
  const std::size_t start = message.find('\'');
  const std::size_t end = start == message.npos ? start : message.find('\'', start + 1);
  return end == message.npos ? "" : message.substr(start + 1, end - start - 1);
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
            {},
            quotedName(message)};
  }
  // Values that their type does not allow, and declarations in the document itself.
  if (XMLString::equals(domain, XMLUni::fgExceptDomain) &&
      (type == XMLErrorReporter::ErrType_Error || code == xercesc::XMLExcepts::Val_CantHaveIntSS)) {
    return {Fault::INVALID, message, {}};
  }
  if (XMLString::equals(domain, XMLUni::fgXMLErrDomain)) {
    const bool isRoot = code == XMLErrs::ExpectedCommentOrPI;
    return {isRoot ? Fault::SEVERAL_ROOTS : Fault::NOT_WELL_FORMED, message + hintFor(code), {}};
  }
  return {Fault::NOT_WELL_FORMED, message, {}};
}

Fault refusal(const std::string& file, const std::string& message) {
  return {Fault::REFUSED,
          message.empty() ? "the XML library failed without a reason" : message,
          {file}};
}

}  // namespace

const xercesc::DOMDocument* LenientParser::parseLeniently(const std::string& path) {
  faults.clear();
  open.clear();
  unfinished.clear();
  unknownElements.clear();
  lastUnknown = {};
  const xercesc::DOMDocument* document = nullptr;
  try {
    document = parseDoc(path);
  } catch (const xerces::Exception& e) {
    if (faults.empty()) faults.push_back(refusal(path, e.what()));
    document = getDocument();
  }
  for (const Open& element : open) unfinished.insert(element.element);
  return document;
}

Location LenientParser::locationOf(const xercesc::DOMElement& element) {
  const Position position = positionOf(&element);
  return {getFileName(), position.line, position.column};
}

bool LenientParser::isOpen(const xercesc::DOMElement& element) const {
  return unfinished.count(&element) > 0;
}

void LenientParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                                 const XMLCh* prefix,
                                 const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                 XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
  DocumentParser::startElement(declaration, urlId, prefix, attributes, attributeCount, isEmpty,
                               isRoot);
  if (!isEmpty) open.push_back({getCurrentNode(), currentPosition()});
}

void LenientParser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                               bool isRoot, const XMLCh* prefix) {
  DocumentParser::endElement(declaration, urlId, isRoot, prefix);
  const auto isCurrent = [this](const Open& entry) { return entry.element == getCurrentNode(); };
  const auto found = std::find_if(open.rbegin(), open.rend(), isCurrent);
  if (found != open.rend()) open.erase(std::next(found).base(), open.end());
}

void LenientParser::error(unsigned int code, const XMLCh* domain, ErrTypes type, const XMLCh* text,
                          const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
                          XMLFileLoc column) {
  Fault fault = faultOf(code, domain, type, text);
  fault.location = {xerces::transcode(systemId), static_cast<int>(line), static_cast<int>(column)};
  if (fault.location.file.empty()) fault.location = {getFileName()};
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
  const Position place = open.back().position;
  fault.message += ": the start tag in line " + std::to_string(place.line) + " is still open";
  const auto isInside = [&](const Fault& other) {
    return other.kind == Fault::INVALID && place < other.position();
  };
  faults.erase(std::remove_if(faults.begin(), faults.end(), isInside), faults.end());
}

// An element that the grammar does not have gives up to three reports; the first one is enough.
bool LenientParser::followsFromUnknownElement(const Fault& fault, unsigned int code) {
  switch (code) {
    case xercesc::XMLValid::ElementNotDefined:
      unknownElements.insert(fault.subject);
      lastUnknown = fault.position();
      return false;
    case xercesc::XMLValid::AttNotDefinedForElement:
      return fault.position() == lastUnknown;
    case xercesc::XMLValid::ElementNotValidForContent:
      return unknownElements.count(fault.subject) > 0;
    default:
      return false;
  }
}

void LenientParser::parseFile(const std::string& name) {
  try {
    DocumentParser::parseFile(name);
  } catch (const xerces::LocatedException& e) {
    const Position at = e.getPosition();
    faults.push_back({Fault::REFUSED, e.getReason(), {e.getFile(), at.line, at.column}});
  } catch (const xerces::Exception& e) {
    faults.push_back(refusal(name, e.what()));
  } catch (const xercesc::XMLException& e) {
    faults.push_back(refusal(name, xerces::transcode(e.getMessage())));
  }
}

}  // namespace service::util::config::xml::internal
