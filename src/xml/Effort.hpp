// Bounds what the XML library does for one document in time that grows faster than the document.
//
// It looks names up in lists as long as there are names, prefixes in a list of all elements and
// namespaces around the place, and builds automata of content models in cubic time. The bounds are
// beyond every file of configuration; what passes one is refused with the place. Belongs to one
// parser.
#ifndef SRC_XML_EFFORT_HPP
#define SRC_XML_EFFORT_HPP

#include <cstdint>
#include <unordered_set>
#include <vector>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/util/RefVectorOf.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>

#include "xerces/dom.hpp"
#include "xml/Budget.hpp"

namespace service::util::config::xml::internal {

class Effort {
 public:
  // Kept by reference.
  explicit Effort(Budget& budget) : budget(budget) {}

  // Called by the parser for each start tag, with what it is given there, and each end tag.
  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                    const XMLCh* prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                    XMLSize_t attributeCount);
  void endElement();

  // Called for what a document type declares: entities and notations, attributes, and, when it is
  // to be validated against, the content of elements.
  void declareName();
  void declareAttribute(const xercesc::DTDElementDecl& element);
  void declareContent(const xercesc::DTDElementDecl& element);

 private:
  struct Hash {
    std::size_t operator()(const xerces::XmlString& text) const;
  };

  void requireStack();
  void requireFewNames(std::size_t count);
  void addName(const XMLCh* prefix, const XMLCh* localName);
  bool addAttribute(const xercesc::XMLAttr& attribute);

  Budget& budget;
  std::unordered_set<xerces::XmlString, Hash> names;  // those that are not counted otherwise
  std::size_t declared = 0;                           // names in document types
  std::vector<std::size_t> open;  // of each open element, how many namespaces it declares
  std::size_t around = 0;         // open elements and the namespaces that they declare
  std::uint64_t steps = 0;        // to look up prefixes
};

}  // namespace service::util::config::xml::internal

#endif
