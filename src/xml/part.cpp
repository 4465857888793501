// The table of the functions that the rest of the library calls; reads documents by the DOM.

#include <cstring>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "cppUtil/err/guarded.hpp"
#include "load/Walk.hpp"
#include "load/XmlPart.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "xml/DocumentParser.hpp"
#include "xml/DomElement.hpp"
#include "xml/XmlLibrary.hpp"
#include "xml/fileSetCheck.hpp"
#include "xml/validation.hpp"
#include "xml/withoutXmlExceptions.hpp"

namespace service::util::config::xml::internal {

namespace {

using cppUtil::err::guarded;
using xercesc::DOMElement;

void requireKnownNamespace(const DOMElement& root, const SchemeList& schemes) {
  if (internal::isInKnownNamespace(root, schemes)) return;
  throw xerces::failureAt(
      root, std::string("expected element in the namespace \"") + grammar::targetNamespace + "\"!");
}

class DomReader : public XmlReader {
 public:
  DomReader(const SchemeList& schemes, bool validate) : schemes(schemes), validate(validate) {}

  void read(Load& load, const IConfigPtr& config, const std::string& fileName) override {
    withoutXmlExceptions([&] {
      if (validate && !hasGrammar) {
        loadGrammar(grammars);
        hasGrammar = true;
      }
      Budget budget(fileName);
      DocumentParser parser(grammars, schemes, budget, load.events);
      if (validate) enableValidation(parser, schemes);
      const xercesc::DOMDocument* document = parser.parseDoc(fileName);
      const DOMElement* root = document->getDocumentElement();
      if (root == nullptr) {
        throw xerces::Exception() << "XMLParser: internal error: No document root element";
      }
      if (validate) requireKnownNamespace(*root, schemes);
      guarded({unit, parseSignature, __LINE__},
              [&] { Walk<DomElement>(load).parseConfig(config, DomElement(*root)); });
    });
  }

 private:
  const SchemeList& schemes;
  const bool validate;
  // Holds the grammar of configuration files and nothing else: schemas that one file brings along
  // must not change what holds for the next.
  xercesc::XMLGrammarPoolImpl grammars{xercesc::XMLPlatformUtils::fgMemoryManager};
  bool hasGrammar = false;
};

std::unique_ptr<XmlReader> makeReader(const SchemeList& schemes, bool validate) {
  return withoutXmlExceptions([&] { return std::make_unique<DomReader>(schemes, validate); });
}

void walk(Load& load, ElementKind kind, const IConfigPtr& config, const DOMElement& element) {
  Walk<DomElement>(load).parse(kind, config, DomElement(element));
}

std::vector<Problem> check(const std::string& file, const SchemeList& schemes, bool validate,
                           Observer& observer) {
  return withoutXmlExceptions([&] { return checkFileSet(file, schemes, validate, observer); });
}

constexpr XmlPart part = {initializeXmlLibrary, terminateXmlLibrary, makeReader, walk, check};

}  // namespace

const XmlPart* zuUtilConfigXml(const char* version) {
  return std::strcmp(version, xmlPartVersion) == 0 ? &part : nullptr;
}

}  // namespace service::util::config::xml::internal
