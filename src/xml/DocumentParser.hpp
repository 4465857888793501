// The loader's document parser: builds only what the walk over a configuration document reads, and
// stays calm whatever the document holds.
//
// Text stands in properties and includes alone. The white space between all other elements is half
// of the nodes of a usual document, and it is left out together with comments.
//
// Documents are foreign input: memory, expansion of entities, depth and number of attributes are
// bounded, what a document refers to is read from this machine only, and the file that is parsed is
// the one that its path names. What passes a bound is refused with the place.
#ifndef SRC_XML_DOCUMENTPARSER_HPP
#define SRC_XML_DOCUMENTPARSER_HPP

#include "xerces/Parser.hpp"
#include "xml/Budget.hpp"
#include "xml/DocumentGrammars.hpp"
#include "xml/Effort.hpp"
#include "xml/EntityResolver.hpp"

namespace service::util::config::xml::internal {

// What a parser is made with and therefore outlives it.
struct BeforeParser {
  DocumentGrammars documentGrammars;
};

class DocumentParser : private BeforeParser, public xerces::Parser {
 public:
  // All are kept by reference. grammars: those that documents have in common. schemes: the schemas
  // that documents may use besides. events: null when nobody observes.
  DocumentParser(xercesc::XMLGrammarPool& grammars, const SchemeList& schemes, Budget& budget,
                 LoadEvents* events = nullptr);

  void startDocument() override;
  void endDocument() override;
  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                    const XMLCh* prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                    XMLSize_t attributeCount, bool isEmpty, bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId, bool isRoot,
                  const XMLCh* prefix) override;
  void elementDecl(const xercesc::DTDElementDecl& element, bool isIgnored) override;
  void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute,
              bool isIgnored) override;
  void entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameter, bool isIgnored) override;
  void notationDecl(const xercesc::XMLNotationDecl& notation, bool isIgnored) override;
  void docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) override;

 protected:
  void parseFile(const std::string& name) override;

 private:
  Budget& budget;
  Effort effort;
  EntityResolver resolver;
  std::size_t valueDepth = 0;  // open elements, counted from the outermost property or include
};

}  // namespace service::util::config::xml::internal

#endif
