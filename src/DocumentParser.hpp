// The loader's document parser: builds only what the walk over a configuration document reads.
//
// Text stands in properties and includes alone. The white space between all other elements is half
// of the nodes of a usual document, and it is left out together with comments.
#ifndef SRC_DOCUMENTPARSER_HPP
#define SRC_DOCUMENTPARSER_HPP

#include "xerces/Parser.hpp"

namespace service::util::config::xml::internal {

class DocumentParser : public xerces::Parser {
 public:
  explicit DocumentParser(xercesc::XMLGrammarPool* grammars);

  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                    const XMLCh* prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                    XMLSize_t attributeCount, bool isEmpty, bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId, bool isRoot,
                  const XMLCh* prefix) override;
  void docCharacters(const XMLCh* text, XMLSize_t length, bool isCdata) override;

 private:
  std::size_t valueDepth = 0;  // open elements, counted from the outermost property or include
};

}  // namespace service::util::config::xml::internal

#endif
