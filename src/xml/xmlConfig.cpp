// The loader. A file is found on the search path, its directory goes to the front of the path, the
// file is read, and the walk over what was read fills the configuration; an include does the same
// again for the file that it names.
//
// There are two ways to read a file: the plain one, and the one through the XML library, which is
// the reference. A file goes through the XML library when the plain reader gives it up.

#include <cutil/cutil.h>

#include <cstdlib>
#include <cstring>
#include <optional>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/err/guarded.hpp"
#include "cppUtil/fileName/getPath.hpp"
#include "cppUtil/logger/Logger.hpp"
#include "load/LoadEvents.hpp"
#include "load/SearchedFirst.hpp"
#include "load/Walk.hpp"
#include "plain/Element.hpp"
#include "plain/readFile.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "service/util/config/internal/Config.hpp"
#include "service/util/config/xml/create.hpp"
#include "service/util/config/xml/internal/XmlConfigParser.hpp"
#include "service/util/locator/ConfigLocator.hpp"
#include "xerces/Exception.hpp"
#include "xerces/Parser.hpp"
#include "xerces/dom.hpp"
#include "xml/DocumentParser.hpp"
#include "xml/XmlLibrary.hpp"
#include "xml/names.hpp"
#include "xml/validation.hpp"
#include "xml/withoutXmlExceptions.hpp"

namespace service::util::config::xml {

namespace {

using cppUtil::err::Exception;
using cppUtil::err::guarded;
using cppUtil::err::Place;
using internal::ElementKind;
using internal::Position;
using internal::unit;
using internal::withoutXmlExceptions;
using locator::ConfigLocator;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::XMLPlatformUtils;

// The signatures that failures are reported with, whatever version of the XML library is in use.
constexpr const char* createSignature =
    "service::util::config::IConfigPtr service::util::config::xml::create(const string&, const "
    "SchemeList&, bool)";
constexpr const char* constructorSignature =
    "service::util::config::xml::internal::XmlConfigParser::XmlConfigParser(const string&, const "
    "SchemeList&, bool)";
constexpr const char* parseSignature =
    "void service::util::config::xml::internal::XmlConfigParser::parse(const IConfigPtr&, const "
    "string&)";

constexpr std::uint32_t infoLevel = CU_INFO;

void logParsing(const std::string& fileName) {
  cppUtil::logger::Logger logger(infoLevel);
  logger << "Parsing configuration file '" << fileName << "'";
  logger.log();
}

// For tests, and to find out whether a fault is one of the plain way.
bool isPlainOff() {
  const char* setting = ::secure_getenv("ZU_CONFIG_PLAIN");
  return setting != nullptr && std::strcmp(setting, "off") == 0;
}

void requireKnownNamespace(const DOMElement& root, const SchemeList& schemes) {
  if (internal::isInKnownNamespace(root, schemes)) return;
  throw xerces::failureAt(
      root, std::string("expected element in the namespace \"") + grammar::targetNamespace + "\"!");
}

// An element of a DOM for the walk.
class DomElement {
 public:
  class Children;

  explicit DomElement(const DOMElement& element) : element(&element) {}

  void match(ElementKind kind) const { xerces::match(*element, nameOf(kind)); }
  void readName(std::string& name) const {
    name = xerces::mandatoryAttribute(*element, names::name);
  }
  void readText(std::string& text) const { text = xerces::textContent(*element); }
  Position position() const { return {tag().line, tag().column}; }
  std::string file() const { return tag().file; }
  void fail(const char* reason) const { throw xerces::failureAt(*element, reason); }

 private:
  static const xerces::XmlString& nameOf(ElementKind kind) {
    switch (kind) {
      case ElementKind::PROPERTY:
        return names::property;
      case ElementKind::INCLUDE:
        return names::include;
      case ElementKind::SECTION:
        return names::section;
      default:
        return names::config;
    }
  }

  const xerces::Parser::LocationTag& tag() const { return xerces::Parser::getLocationTag(element); }

  const DOMElement* element;
};

// Sorted by kind in one go, as the DOM is slow to walk over.
class DomElement::Children {
 public:
  explicit Children(const DomElement& parent) {
    for (const DOMNode* node = parent.element->getFirstChild(); node != nullptr;
         node = node->getNextSibling()) {
      if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
      const auto* element = static_cast<const DOMElement*>(node);
      if (const auto kind = names::kindOf(*element)) {
        elements[static_cast<std::size_t>(*kind)].emplace_back(*element);
      }
    }
  }

  template <class Step>
  void forEach(ElementKind kind, const Step& step) const {
    for (const DomElement& element : elements[static_cast<std::size_t>(kind)]) step(element);
  }

 private:
  std::vector<DomElement> elements[4];
};

IConfigPtr createObserved(const std::string& file, const SchemeList& schemes, bool validate,
                          Observer* observer) {
  return guarded({unit, createSignature, __LINE__}, [&] {
    return internal::XmlConfigParser(file, schemes, validate, observer).getConfig();
  });
}

}  // namespace

IConfigPtr create(const std::string& file, const SchemeList& schemes, bool validate) {
  return createObserved(file, schemes, validate, nullptr);
}

IConfigPtr create(const std::string& file, const SchemeList& schemes, bool validate,
                  Observer& observer) {
  return createObserved(file, schemes, validate, &observer);
}

namespace internal {

using config::internal::Config;

// What a load needs once one of its files goes through the XML library.
struct XmlState {
  XmlLibrary library;
  // Holds the grammar of configuration files and nothing else: schemas that one file brings along
  // must not change what holds for the next.
  xercesc::XMLGrammarPoolImpl grammars{XMLPlatformUtils::fgMemoryManager};
  bool hasGrammar = false;
};

// The parser knows its load while it lives.
struct XmlConfigParser::Load : internal::Load {
  Load(XmlConfigParser& parser, Observer* observer) : internal::Load(observer), parser(parser) {
    parser.load = this;
  }
  ~Load() override { parser.load = nullptr; }

  void include(const IConfigPtr& config, const std::string& name, const std::string& path,
               const Position& position) override {
    read(config, name, path, &position);
  }

  // include: where the include is; null for the top-level file.
  void read(const IConfigPtr& config, const std::string& name, const std::string& path,
            const Position* include) {
    reading(events, name, path, include, [&] {
      SearchedFirst beside(cppUtil::fileName::getPath(path));
      parser.parse(config, path);
      beside.leave();
    });
  }

  XmlConfigParser& parser;
  const bool triesPlain = !isPlainOff();
  std::optional<XmlState> xml;
};

XmlConfigParser::XmlConfigParser(const std::string& file, const SchemeList& schemes, bool validate)
    : XmlConfigParser(file, schemes, validate, nullptr) {}

XmlConfigParser::XmlConfigParser(const std::string& file, const SchemeList& schemes, bool validate,
                                 Observer* observer)
    : config(std::make_shared<Config>()),
      fileName(ConfigLocator::find(file)),
      schemes(schemes),
      validate(validate) {
  if (observer != nullptr) observer->fileLookedUp(file, fileName);
  if (fileName.empty()) {
    throw Exception(CU_MISSING_ARGUMENT, 0, unit, constructorSignature, __LINE__, "");
  }
  Load(*this, observer).read(config, file, fileName, nullptr);
}

XmlConfigParser::~XmlConfigParser() = default;

IConfigPtr XmlConfigParser::getConfig() const {
  return config;
}

// A step that a program calls by itself is a load of its own.
template <class Step>
void XmlConfigParser::inLoad(const Step& step) {
  if (load != nullptr) return step(*load);
  Load alone(*this, nullptr);
  step(alone);
}

// Tries the plain way first, which does nothing that anybody could notice when it gives up. It does
// not know further schemas.
void XmlConfigParser::parse(const IConfigPtr& config, const std::string& fileName) {
  inLoad([&](Load& running) {
    logParsing(fileName);
    std::optional<plain::Document> document;
    if (running.triesPlain && !(validate && !schemes.empty())) {
      document = plain::readFile(fileName, validate);
    }
    if (!document) return parseXml(config, fileName);
    guarded({unit, parseSignature, __LINE__}, [&] {
      Walk<plain::Element>(running).parseConfig(config, {*document, fileName, 0});
    });
  });
}

void XmlConfigParser::parseXml(const IConfigPtr& config, const std::string& fileName) {
  if (!load->xml) guarded({unit, createSignature, __LINE__}, [&] { load->xml.emplace(); });
  XmlState& xml = *load->xml;
  withoutXmlExceptions([&] {
    if (validate && !xml.hasGrammar) loadGrammar(xml.grammars);
    xml.hasGrammar = validate;
    Budget budget(fileName);
    DocumentParser parser(xml.grammars, schemes, budget, load->events);
    if (validate) enableValidation(parser, schemes);
    const xercesc::DOMDocument* document = parser.parseDoc(fileName);
    const DOMElement* root = document->getDocumentElement();
    if (root == nullptr) {
      throw xerces::Exception() << "XMLParser: internal error: No document root element";
    }
    if (validate) requireKnownNamespace(*root, schemes);
    guarded({unit, parseSignature, __LINE__}, [&] { parseConfig(config, *root); });
  });
}

void XmlConfigParser::parseConfig(const IConfigPtr& config, const DOMElement& root) {
  inLoad([&](Load& running) { Walk<DomElement>(running).parseConfig(config, DomElement(root)); });
}

void XmlConfigParser::parseSection(const IConfigPtr& parent, const DOMElement& element) {
  inLoad(
      [&](Load& running) { Walk<DomElement>(running).parseSection(parent, DomElement(element)); });
}

void XmlConfigParser::parseProperty(const IConfigPtr& config, const DOMElement& element) {
  inLoad(
      [&](Load& running) { Walk<DomElement>(running).parseProperty(config, DomElement(element)); });
}

void XmlConfigParser::parseInclude(const IConfigPtr& config, const DOMElement& element) {
  inLoad(
      [&](Load& running) { Walk<DomElement>(running).parseInclude(config, DomElement(element)); });
}

}  // namespace internal

}  // namespace service::util::config::xml
