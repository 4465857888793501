#include "xml/DocumentParser.hpp"

#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLString.hpp>

#include "xml/FileSource.hpp"
#include "xml/names.hpp"

namespace service::util::config::xml::internal {

namespace {

bool isValue(const XMLCh* name) {
  return xercesc::XMLString::equals(name, names::property.c_str()) ||
         xercesc::XMLString::equals(name, names::include.c_str());
}

}  // namespace

DocumentParser::DocumentParser(xercesc::XMLGrammarPool& grammars, const SchemeList& schemes,
                               Budget& budget, LoadEvents* events)
    : BeforeParser{{grammars, budget}},
      Parser(&documentGrammars, &budget, Places::IN_TABLE),
      budget(budget),
      effort(budget),
      resolver(schemes, budget, events) {
  setCreateCommentNodes(false);
  setXMLEntityResolver(&resolver);
}

void DocumentParser::parseFile(const std::string& name) {
  // Whether it ends well, with an exception or, for a malformed document, without either.
  struct End {
    ~End() { budget.end(); }
    Budget& budget;
  };
  const End end = {budget};
  parse(FileSource(name, budget));
}

void DocumentParser::startDocument() {
  budget.begin(*getScanner()->getReaderMgr());
  Parser::startDocument();
}

void DocumentParser::endDocument() {
  Parser::endDocument();
  budget.end();
}

void DocumentParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                                  const XMLCh* prefix,
                                  const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                  XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
  effort.startElement(declaration, urlId, prefix, attributes, attributeCount);
  if (valueDepth > 0 || isValue(declaration.getBaseName())) ++valueDepth;
  Parser::startElement(declaration, urlId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

// Called for empty elements too, by the base class.
void DocumentParser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                                bool isRoot, const XMLCh* prefix) {
  Parser::endElement(declaration, urlId, isRoot, prefix);
  effort.endElement();
  if (valueDepth > 0) --valueDepth;
}

void DocumentParser::elementDecl(const xercesc::DTDElementDecl& element, bool isIgnored) {
  if (getValidationScheme() != Val_Never) effort.declareContent(element);
  Parser::elementDecl(element, isIgnored);
}

void DocumentParser::attDef(const xercesc::DTDElementDecl& element,
                            const xercesc::DTDAttDef& attribute, bool isIgnored) {
  effort.declareAttribute(element);
  Parser::attDef(element, attribute, isIgnored);
}

void DocumentParser::entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter,
                                bool isIgnored) {
  effort.declareName();
  Parser::entityDecl(entity, isParameter, isIgnored);
}

void DocumentParser::notationDecl(const xercesc::XMLNotationDecl& notation, bool isIgnored) {
  effort.declareName();
  Parser::notationDecl(notation, isIgnored);
}

void DocumentParser::docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) {
  if (valueDepth > 0) Parser::docCharacters(text, length, isCdata);
}

}  // namespace service::util::config::xml::internal
