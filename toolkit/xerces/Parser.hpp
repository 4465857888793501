// The DOM parser of the library: it knows where every element stands, and fails in one way.
//
// Every element that is not written as an empty tag gets a location tag (file, line, column), kept
// as user data of its node; every way in which a parse can fail comes out as xerces::Exception. The
// XML library must be initialised before a Parser is built and until after it is destroyed. A
// Parser and its documents belong to one thread at a time.
#ifndef XERCES_PARSER_HPP
#define XERCES_PARSER_HPP

#include <cstdint>
#include <string>
#include <vector>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMUserDataHandler.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "cppUtil/internal/Position.hpp"
#include "xerces/ErrorHandler.hpp"

namespace xerces {

using cppUtil::internal::Position;

// Contract are the tags, their counts as the handler keeps them, and what getLocationTag answers.
// The table of places and the destruction without notices are for speed.
//
// Who frees a tag: the handler, when a notice that its node is gone takes the count to 0. The
// parser does, for all that it made (tags) and without notices, when no handler has had any since
// the parser was built: then each tag still has its one node, in a document of this parser.
// Otherwise the documents are released in the XML library's own way, which notifies the handler of
// each.
//
// The newest entry of tags, or of the table, is that of the element that was opened last, as long
// as that element has no children: so the place of an element that ends where it started is taken
// back.
class Parser : public xercesc::XercesDOMParser {
 public:
  // Where an element's start tag ends.
  struct LocationTag {
    std::string file;  // as it was given to parseDoc
    int line;
    int column;
    std::int32_t refCount;  // nodes that refer to this tag
  };

  // Keeps the tags' reference counts as the DOM deletes, imports and clones nodes.
  class LocationTagHandler : public xercesc::DOMUserDataHandler {
   public:
    ~LocationTagHandler() override;
    void handle(DOMOperationType operation, const XMLCh* key, void* data,
                const xercesc::DOMNode* src, xercesc::DOMNode* dst) override;

    // The user-data key of every tag.
    static const XMLCh* getLocationTagName();
  };

  // Where the places of elements are kept: as tags on the nodes from the start, or in a table, from
  // which a node gets its tag when getLocationTag asks for it. The table is several times faster
  // and smaller, for those who look at few places.
  enum class Places { ON_NODES, IN_TABLE };

  // Namespaces on, ignorable white space off; everything else as the XML library has it. grammars:
  // a pool that the caller owns and keeps longer than the parser; null for one of its own. memory:
  // where the parse takes its memory, kept as long.
  explicit Parser(xercesc::XMLGrammarPool* grammars = nullptr,
                  xercesc::MemoryManager* memory = xercesc::XMLPlatformUtils::fgMemoryManager,
                  Places places = Places::ON_NODES);
  ~Parser() override;
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  // Parses the file and returns its document, never null. Throws xerces::Exception when the XML
  // library reports an error or throws. The document, like those of earlier calls, belongs to the
  // parser and lives as long as it. Installs the parser's own error handler.
  xercesc::DOMDocument* parseDoc(const std::string& fileName);

  // Documents stay with the parser that keeps their tags.
  xercesc::DOMDocument* adoptDocument() = delete;

  // The tag of a node; a tag with an empty file, line 0 and column 0 when it has none, as elements
  // written as empty tags do. Lives as long as the node.
  static const LocationTag& getLocationTag(const xercesc::DOMNode* node);

  static LocationTagHandler& getLocationTagHandler();

  // Called by the XML library for each start and end tag.
  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId,
                    const XMLCh* prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                    XMLSize_t attributeCount, bool isEmpty, bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int urlId, bool isRoot,
                  const XMLCh* prefix) override;

 protected:
  const std::string& getFileName() const { return fileName; }

  // How parseDoc reads the file.
  virtual void parseFile(const std::string& name);

  // Where the parse stands now.
  Position currentPosition() const;

  // Where the start tag of an element ends, or the element itself when it is written as an empty
  // tag. For places in a table only; nothing for nodes that are not of the last parse.
  Position positionOf(const xercesc::DOMNode* node);

 private:
  struct Place {
    xercesc::DOMNode* node;
    Position position;
    bool isEmptyTag = false;  // then there is no tag
  };

  void keepDocument();
  LocationTag* attachTag(const Place& place);
  const Place* findPlace(const xercesc::DOMNode* node);
  LocationTag* tagFromTable(const xercesc::DOMNode* node);

  ErrorHandler errorHandler;
  std::string fileName;
  const Places places;
  std::vector<Place> table;                             // of the document of the last parse
  bool isTableSorted = false;                           // by node; before that in document order
  std::vector<xercesc::DOMDocument*> earlierDocuments;  // owned
  std::vector<LocationTag*> tags;                       // made by this parser
  unsigned int handledBefore;                           // notices when the parser was built
};

}  // namespace xerces

#endif
