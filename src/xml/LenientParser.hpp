// Parses a document that may be wrong: keeps every report of the XML library, and whatever part of
// the document could be built.
#ifndef SRC_XML_LENIENTPARSER_HPP
#define SRC_XML_LENIENTPARSER_HPP

#include <string>
#include <unordered_set>
#include <vector>

#include "service/util/config/xml/Location.hpp"
#include "xml/DocumentParser.hpp"

namespace service::util::config::xml::internal {

class LenientParser : public DocumentParser {
 public:
  // A fault of the document, as the XML library or the loader's parser tells it.
  struct Fault {
    enum Kind { WARNING, INVALID, NOT_WELL_FORMED, SEVERAL_ROOTS, REFUSED };
    Kind kind;
    std::string message;
    Location location;
    std::string subject = {};  // the name that an invalid document is wrong about

    Position position() const { return {location.line, location.column}; }
  };

  using DocumentParser::DocumentParser;

  // Returns the document, incomplete when there are faults, null when nothing could be built. It
  // belongs to the parser.
  const xercesc::DOMDocument* parseLeniently(const std::string& path);

  // In the order in which they were found.
  const std::vector<Fault>& getFaults() const { return faults; }

  // Where the start tag of element ends; of elements written as empty tags, where they do.
  Location locationOf(const xercesc::DOMElement& element);

  // Whether the parse ended inside the element, so that part of its content may be missing.
  bool isOpen(const xercesc::DOMElement& element) const;

  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                    const XMLCh* prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                    XMLSize_t attributeCount, bool isEmpty, bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId, bool isRoot,
                  const XMLCh* prefix) override;
  void error(unsigned int code, const XMLCh* domain, ErrTypes type, const XMLCh* text,
             const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
             XMLFileLoc column) override;

 protected:
  void parseFile(const std::string& name) override;

 private:
  struct Open {
    const xercesc::DOMNode* element;
    Position position;
  };

  void explainOpenTag(Fault& fault, unsigned int code);
  bool followsFromUnknownElement(const Fault& fault, unsigned int code);

  std::vector<Fault> faults;
  std::unordered_set<std::string> unknownElements;         // that were reported
  Position lastUnknown;                                    // of the last such report
  std::vector<Open> open;                                  // elements, outermost first
  std::unordered_set<const xercesc::DOMNode*> unfinished;  // those that stayed open
};

}  // namespace service::util::config::xml::internal

#endif
