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

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/err/guarded.hpp"
#include "cppUtil/fileName/getPath.hpp"
#include "cppUtil/logger/Logger.hpp"
#include "entry/XmlUse.hpp"
#include "load/SearchedFirst.hpp"
#include "load/Walk.hpp"
#include "plain/Element.hpp"
#include "plain/readFile.hpp"
#include "service/util/config/internal/Config.hpp"
#include "service/util/config/xml/create.hpp"
#include "service/util/config/xml/internal/XmlConfigParser.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace service::util::config::xml {

namespace {

using cppUtil::err::Exception;
using cppUtil::err::guarded;
using internal::createSignature;
using internal::unit;
using locator::ConfigLocator;

constexpr const char* constructorSignature =
    "service::util::config::xml::internal::XmlConfigParser::XmlConfigParser(const string&, const "
    "SchemeList&, bool)";
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

// Opens the part that reads the file, which is not plain.
void requireXmlPart(const std::string& fileName) {
  try {
    internal::xmlPart();
  } catch (Exception& e) {
    e << "; needed for \"" << fileName << "\"";
    throw;
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
using ZU_XERCES_NAMESPACE::DOMElement;

// The parser knows its load while it lives.
struct XmlConfigParser::Load : internal::Load {
  Load(XmlConfigParser& parser, Observer* observer) : internal::Load(observer), parser(parser) {
    parser.load = this;
  }
  ~Load() override { parser.load = nullptr; }

  void read(const IConfigPtr& config, const std::string& name, const std::string& path) override {
    reading(events, name, path, [&] {
      SearchedFirst beside(cppUtil::fileName::getPath(path));
      parser.parse(config, path);
      beside.leave();
    });
  }

  // For the file, which is not plain, and for further ones.
  XmlReader& xmlReader(const std::string& fileName) {
    if (reader == nullptr) {
      requireXmlPart(fileName);
      guarded({unit, createSignature, __LINE__}, [&] {
        if (!xml) xml.emplace();
        reader = (*xml)->makeReader(parser.schemes, parser.validate);
      });
    }
    return *reader;
  }

  XmlConfigParser& parser;
  const bool triesPlain = !isPlainOff();

 private:
  std::optional<XmlUse> xml;
  std::unique_ptr<XmlReader> reader;
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
  Load(*this, observer).read(config, file, fileName);
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
    if (!document) return running.xmlReader(fileName).read(running, config, fileName);
    guarded({unit, parseSignature, __LINE__}, [&] {
      Walk<plain::Element>(running).parseConfig(config, {*document, fileName, 0});
    });
  });
}

void XmlConfigParser::parseConfig(const IConfigPtr& config, const DOMElement& root) {
  inLoad([&](Load& running) { xmlPart().walk(running, ElementKind::CONFIG, config, root); });
}

void XmlConfigParser::parseSection(const IConfigPtr& parent, const DOMElement& element) {
  inLoad([&](Load& running) { xmlPart().walk(running, ElementKind::SECTION, parent, element); });
}

void XmlConfigParser::parseProperty(const IConfigPtr& config, const DOMElement& element) {
  inLoad([&](Load& running) { xmlPart().walk(running, ElementKind::PROPERTY, config, element); });
}

void XmlConfigParser::parseInclude(const IConfigPtr& config, const DOMElement& element) {
  inLoad([&](Load& running) { xmlPart().walk(running, ElementKind::INCLUDE, config, element); });
}

}  // namespace internal

}  // namespace service::util::config::xml
