#include "DocumentParser.hpp"

#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/util/XMLString.hpp>

#include "names.hpp"

namespace service::util::config::xml::internal {

namespace {

bool isValue(const XMLCh* name) {
  return xercesc::XMLString::equals(name, names::property.c_str()) ||
         xercesc::XMLString::equals(name, names::include.c_str());
}

}  // namespace

DocumentParser::DocumentParser(xercesc::XMLGrammarPool* grammars) : Parser(grammars) {
  setCreateCommentNodes(false);
}

void DocumentParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                                  const XMLCh* prefix,
                                  const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                  XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
  if (valueDepth > 0 || isValue(declaration.getBaseName())) ++valueDepth;
  Parser::startElement(declaration, urlId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

// Called for empty elements too, by the base class.
void DocumentParser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                                bool isRoot, const XMLCh* prefix) {
  Parser::endElement(declaration, urlId, isRoot, prefix);
  if (valueDepth > 0) --valueDepth;
}

void DocumentParser::docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) {
  if (valueDepth > 0) Parser::docCharacters(text, length, isCdata);
}

}  // namespace service::util::config::xml::internal
