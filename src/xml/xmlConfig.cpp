// The loader. A file is found on the search path, its directory goes to the front of the path, the
// file is parsed into a DOM, and the walk over the DOM fills the configuration; an include does the
// same again for the file that it names.

#include <cutil/cutil.h>

#include <optional>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/err/guarded.hpp"
#include "cppUtil/fileName/getPath.hpp"
#include "cppUtil/internal/stackLeft.hpp"
#include "cppUtil/logger/Logger.hpp"
#include "load/LoadEvents.hpp"
#include "load/SearchedFirst.hpp"
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
using internal::withoutXmlExceptions;
using locator::ConfigLocator;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::XMLPlatformUtils;
using xercesc::XMLString;

constexpr const char* unit = "src/xmlConfig";

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
constexpr const char* parseConfigSignature =
    "void service::util::config::xml::internal::XmlConfigParser::parseConfig(const IConfigPtr&, "
    "const xercesc_3_1::DOMElement&)";
constexpr const char* parseSectionSignature =
    "void service::util::config::xml::internal::XmlConfigParser::parseSection(const IConfigPtr&, "
    "const xercesc_3_1::DOMElement&)";
constexpr const char* parsePropertySignature =
    "void service::util::config::xml::internal::XmlConfigParser::parseProperty(const IConfigPtr&, "
    "const xercesc_3_1::DOMElement&)";
constexpr const char* parseIncludeSignature =
    "void service::util::config::xml::internal::XmlConfigParser::parseInclude(const IConfigPtr&, "
    "const xercesc_3_1::DOMElement&)";

constexpr std::uint32_t infoLevel = CU_INFO;

// What must be left of the stack, in bytes, to go into a section and to parse a file, with room to
// report a failure there; and how much a load uses before that is looked at.
constexpr std::size_t sectionStack = 64UL * 1024;
constexpr std::size_t includeStack = 96UL * 1024;
constexpr std::size_t uncheckedStack = 32UL * 1024;

void logParsing(const std::string& fileName) {
  cppUtil::logger::Logger logger(infoLevel);
  logger << "Parsing configuration file '" << fileName << "'";
  logger.log();
}

void requireKnownNamespace(const DOMElement& root, const SchemeList& schemes) {
  if (internal::isInKnownNamespace(root, schemes)) return;
  throw xerces::failureAt(
      root, std::string("expected element in the namespace \"") + grammar::targetNamespace + "\"!");
}

// The child elements of an element that mean something, by kind, each kind in document order.
struct Children {
  explicit Children(const DOMElement& parent) {
    for (const DOMNode* node = parent.getFirstChild(); node != nullptr;
         node = node->getNextSibling()) {
      if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
      const auto* element = static_cast<const DOMElement*>(node);
      const XMLCh* name = element->getLocalName();
      if (XMLString::equals(name, names::property.c_str())) {
        properties.push_back(element);
      } else if (XMLString::equals(name, names::section.c_str())) {
        sections.push_back(element);
      } else if (XMLString::equals(name, names::include.c_str())) {
        includes.push_back(element);
      }
    }
  }

  std::vector<const DOMElement*> properties;
  std::vector<const DOMElement*> includes;
  std::vector<const DOMElement*> sections;
};

// Files that include others more than once multiply.
constexpr std::size_t maximumFiles = 100000;

// Runs step for each element, guarded at place.
template <class Step>
void forEach(const std::vector<const DOMElement*>& elements, const Place& place, const Step& step) {
  for (const DOMElement* element : elements) {
    guarded(place, [&] { step(*element); });
  }
}

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

// What the files of one load have in common. The parser knows it while it lives.
struct XmlConfigParser::Load {
  explicit Load(XmlConfigParser& parser) : parser(parser) { parser.load = this; }
  ~Load() { parser.load = nullptr; }
  Load(const Load&) = delete;
  Load& operator=(const Load&) = delete;

  XmlConfigParser& parser;
  const char* stackBase = static_cast<const char*>(__builtin_frame_address(0));
  // Holds the grammar of configuration files and nothing else: schemas that one file brings along
  // must not change what holds for the next.
  xercesc::XMLGrammarPoolImpl grammars{XMLPlatformUtils::fgMemoryManager};
  bool hasGrammar = false;
  std::size_t files = 1;  // read so far or being read
};

XmlConfigParser::XmlConfigParser(const std::string& file, const SchemeList& schemes, bool validate)
    : XmlConfigParser(file, schemes, validate, nullptr) {}

XmlConfigParser::XmlConfigParser(const std::string& file, const SchemeList& schemes, bool validate,
                                 Observer* observer)
    : config(std::make_shared<Config>()),
      fileName(ConfigLocator::find(file)),
      schemes(schemes),
      validate(validate) {
  if (fileName.empty()) {
    throw Exception(CU_MISSING_ARGUMENT, 0, unit, constructorSignature, __LINE__, "");
  }
  const std::string directory = cppUtil::fileName::getPath(fileName);
  const XmlLibrary library;
  const Load running(*this);
  std::optional<LoadEvents> observed;
  if (observer != nullptr) events = &observed.emplace(*observer);
  reading(events, file, fileName, nullptr, [&] {
    SearchedFirst beside(directory);
    parse(config, fileName);
    beside.leave();
  });
  events = nullptr;
}

XmlConfigParser::~XmlConfigParser() = default;

IConfigPtr XmlConfigParser::getConfig() const {
  return config;
}

void XmlConfigParser::parse(const IConfigPtr& config, const std::string& fileName) {
  if (load == nullptr) {
    const Load running(*this);
    return parse(config, fileName);
  }
  logParsing(fileName);
  withoutXmlExceptions([&] {
    if (validate && !load->hasGrammar) loadGrammar(load->grammars);
    load->hasGrammar = validate;
    Budget budget(fileName);
    DocumentParser parser(load->grammars, schemes, budget);
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
  const auto at = [](int line) { return Place{unit, parseConfigSignature, line}; };
  guarded(at(__LINE__), [&] { xerces::match(root, names::config); });
  const Children children(root);
  forEach(children.properties, at(__LINE__), [&](const auto& e) { parseProperty(config, e); });
  forEach(children.includes, at(__LINE__), [&](const auto& e) { parseInclude(config, e); });
  forEach(children.sections, at(__LINE__), [&](const auto& e) { parseSection(config, e); });
}

void XmlConfigParser::parseSection(const IConfigPtr& parent, const DOMElement& element) {
  const auto at = [](int line) { return Place{unit, parseSectionSignature, line}; };
  guarded(at(__LINE__), [&] { xerces::match(element, names::section); });
  guarded(at(__LINE__), [&] { requireStack(element, sectionStack); });
  const std::string name =
      guarded(at(__LINE__), [&] { return xerces::mandatoryAttribute(element, names::name); });
  const IConfigPtr child = parent->addSection(name);
  if (events != nullptr) events->sectionAdded(parent, name, child, element);
  const Children children(element);
  forEach(children.properties, at(__LINE__), [&](const auto& e) { parseProperty(child, e); });
  forEach(children.includes, at(__LINE__), [&](const auto& e) { parseInclude(child, e); });
  forEach(children.sections, at(__LINE__), [&](const auto& e) { parseSection(child, e); });
}

void XmlConfigParser::parseProperty(const IConfigPtr& config, const DOMElement& element) {
  const auto at = [](int line) { return Place{unit, parsePropertySignature, line}; };
  guarded(at(__LINE__), [&] { xerces::match(element, names::property); });
  const std::string name =
      guarded(at(__LINE__), [&] { return xerces::mandatoryAttribute(element, names::name); });
  const std::string value = guarded(at(__LINE__), [&] { return xerces::textContent(element); });
  config->addProperty(name, value);
  if (events != nullptr) events->propertyAdded(config, name, element);
}

void XmlConfigParser::parseInclude(const IConfigPtr& config, const DOMElement& element) {
  const auto at = [](int line) { return Place{unit, parseIncludeSignature, line}; };
  guarded(at(__LINE__), [&] { xerces::match(element, names::include); });
  guarded(at(__LINE__), [&] {
    requireStack(element, includeStack);
    const std::string text = xerces::textContent(element);
    const std::string path = ConfigLocator::find(text);
    if (path.empty()) {
      const auto& tag = xerces::Parser::getLocationTag(&element);
      // The double blank before "included" is part of the message.
      throw Exception(CU_FILE_NOT_FOUND, 0, unit, parseIncludeSignature, __LINE__, "")
          << "XMLParser: in file \"" << tag.file << "\" at line " << tag.line << " at column "
          << tag.column << ":  included configuration file '" << text << "' not found!";
    }
    if (load != nullptr && ++load->files > maximumFiles) {
      throw xerces::failureAt(element, "too many files!");
    }
    reading(events, text, path, &element, [&] {
      SearchedFirst beside(cppUtil::fileName::getPath(path));
      parse(config, path);
      beside.leave();
    });
  });
}

// Files that include each other and sections in sections go as deep as the input says. The stack is
// asked for only when the load has used some of it.
void XmlConfigParser::requireStack(const DOMElement& element, std::size_t bytes) const {
  const auto* here = static_cast<const char*>(__builtin_frame_address(0));
  if (load == nullptr || static_cast<std::size_t>(load->stackBase - here) < uncheckedStack) return;
  if (cppUtil::internal::stackLeft() >= bytes) return;
  throw xerces::failureAt(element, "files or sections nested too deeply for the stack!");
}

}  // namespace internal

}  // namespace service::util::config::xml
