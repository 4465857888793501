#include "xml/DocumentParser.hpp"

#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include "cppUtil/internal/stackLeft.hpp"
#include "xml/FileSource.hpp"
#include "xml/names.hpp"

namespace service::util::config::xml::internal {

namespace {

bool isValue(const XMLCh* name) {
  return xercesc::XMLString::equals(name, names::property.c_str()) ||
         xercesc::XMLString::equals(name, names::include.c_str());
}

// The XML library inserts attributes into a sorted list, one by one.
constexpr XMLSize_t maximumAttributes = 10000;

constexpr XMLSize_t maximumExpansions = 50000;

// Reading the text of nested elements takes this much stack for each level, and so, or less, does
// the walk over nested sections.
constexpr std::size_t stackPerLevel = 512;
constexpr std::size_t stackReserve = 64UL * 1024;
constexpr std::size_t levelsBetweenChecks = 64;

}  // namespace

DocumentParser::DocumentParser(xercesc::XMLGrammarPool& grammars, const SchemeList& schemes,
                               Budget& budget)
    : Parser(&grammars, &budget, Places::IN_TABLE), budget(budget), resolver(schemes, budget) {
  setCreateCommentNodes(false);
  setXMLEntityResolver(&resolver);
  limits.setEntityExpansionLimit(maximumExpansions);
  setSecurityManager(&limits);
}

void DocumentParser::parseFile(const std::string& name) {
  try {
    parse(FileSource(name, budget));
  } catch (...) {
    budget.setLocator(nullptr);
    throw;
  }
}

// The locator is good in between only: without a file to read it crashes.
void DocumentParser::startDocument() {
  budget.setLocator(getScanner()->getLocator());
  Parser::startDocument();
}

void DocumentParser::endDocument() {
  Parser::endDocument();
  budget.setLocator(nullptr);
}

void DocumentParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                                  const XMLCh* prefix,
                                  const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                  XMLSize_t attributeCount, bool isEmpty, bool isRoot) {
  if (attributeCount > maximumAttributes) budget.refuse("too many attributes");
  if (++depth % levelsBetweenChecks == 0 &&
      cppUtil::internal::stackLeft() < stackReserve + depth * stackPerLevel) {
    budget.refuse("elements nested too deeply for the stack");
  }
  if (valueDepth > 0 || isValue(declaration.getBaseName())) ++valueDepth;
  Parser::startElement(declaration, urlId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

// Called for empty elements too, by the base class.
void DocumentParser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                                bool isRoot, const XMLCh* prefix) {
  Parser::endElement(declaration, urlId, isRoot, prefix);
  --depth;
  if (valueDepth > 0) --valueDepth;
}

void DocumentParser::startEntityReference(const xercesc::XMLEntityDecl& entity) {
  budget.addReference(entity.getValueLen());
  Parser::startEntityReference(entity);
}

void DocumentParser::entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter,
                                bool isIgnored) {
  budget.addEntity(entity.getValueLen());
  Parser::entityDecl(entity, isParameter, isIgnored);
}

void DocumentParser::docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) {
  if (valueDepth > 0) Parser::docCharacters(text, length, isCdata);
}

}  // namespace service::util::config::xml::internal
