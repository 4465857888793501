// The loader: turns a configuration file and its includes into a configuration.
//
// The whole load happens in the constructor; programs call xml::create, which also translates what
// is thrown here. The other operations are the steps of the load. The rules of xml::create on
// process-wide state and threads hold here.
#ifndef SERVICE_UTIL_CONFIG_XML_INTERNAL_XMLCONFIGPARSER_HPP
#define SERVICE_UTIL_CONFIG_XML_INTERNAL_XMLCONFIGPARSER_HPP

#include <string>

#include "cppUtil/export.hpp"
#include "service/util/config/IConfig.hpp"
#include "service/util/config/xml/create.hpp"
#include "service/util/config/xml/internal/xercesNamespace.hpp"

namespace ZU_XERCES_NAMESPACE {
class DOMElement;
}

namespace service::util::config::xml {
class Observer;
}

namespace service::util::config::xml::internal {

class ZU_EXPORT XmlConfigParser {
 public:
  // Loads the file. Throws cppUtil::err::Exception with code 1 when it is not found on the search
  // path; malformed and invalid documents leave as xerces::Exception.
  XmlConfigParser(const std::string& file, const SchemeList& schemes, bool validate);
  // The same, and tells the observer about it, if there is one. It is not used after the load.
  XmlConfigParser(const std::string& file, const SchemeList& schemes, bool validate,
                  Observer* observer);
  ~XmlConfigParser();
  XmlConfigParser(const XmlConfigParser&) = delete;
  XmlConfigParser& operator=(const XmlConfigParser&) = delete;

  // The loaded configuration, never empty.
  IConfigPtr getConfig() const;

  // Reads one file, by its full name, into config.
  void parse(const IConfigPtr& config, const std::string& fileName);

  // Each adds to config what the element holds: first its properties, then what its includes
  // contribute, then its sections, whatever the order in the file.
  void parseConfig(const IConfigPtr& config, const ZU_XERCES_NAMESPACE::DOMElement& root);
  void parseSection(const IConfigPtr& parent, const ZU_XERCES_NAMESPACE::DOMElement& element);
  void parseProperty(const IConfigPtr& config, const ZU_XERCES_NAMESPACE::DOMElement& element);

  // Reads the file that the element's text names into config. Throws cppUtil::err::Exception with
  // code 3 when it is not found on the search path.
  void parseInclude(const IConfigPtr& config, const ZU_XERCES_NAMESPACE::DOMElement& element);

 private:
  struct ZU_NO_EXPORT Load;

  template <class Step>
  ZU_NO_EXPORT void inLoad(const Step& step);

  IConfigPtr config;
  std::string fileName;
  SchemeList schemes;
  bool validate;
  Load* load = nullptr;  // while a load is running
};

}  // namespace service::util::config::xml::internal

#endif
