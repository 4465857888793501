// The part of the library that needs the XML library, as the rest of it sees it: a table of
// functions, which is all that one asks of the other.
//
// Exceptions of the XML library do not leave these functions. The rules of xml::create on threads
// hold for all of them.
#ifndef SRC_LOAD_XMLPART_HPP
#define SRC_LOAD_XMLPART_HPP

#include <memory>
#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "load/ElementKind.hpp"
#include "load/Load.hpp"
#include "service/util/config/xml/check.hpp"
#include "service/util/config/xml/internal/xercesNamespace.hpp"

namespace ZU_XERCES_NAMESPACE {
class DOMElement;
}

namespace service::util::config::xml::internal {

// Reads the documents of one load. The XML library must be initialised while it lives.
class XmlReader {
 public:
  virtual ~XmlReader() = default;

  // Reads the file, by its full name, into config, as a file of that load.
  virtual void read(Load& load, const IConfigPtr& config, const std::string& fileName) = 0;
};

// Of both; only those of one version fit.
constexpr const char* xmlPartVersion = ZU_VERSION;

struct XmlPart {
  // The calls are counted. The first one throws when the XML library cannot be initialised:
  // std::bad_alloc when there is no memory for that.
  void (*initialize)();
  void (*terminate)();

  // schemes must live as long as the reader.
  std::unique_ptr<XmlReader> (*makeReader)(const SchemeList& schemes, bool validate);

  // The step of a load that adds to config what the element, of that kind, holds.
  void (*walk)(Load& load, ElementKind kind, const IConfigPtr& config,
               const ZU_XERCES_NAMESPACE::DOMElement& element);

  // xml::check, with the XML library initialised.
  std::vector<Problem> (*check)(const std::string& file, const SchemeList& schemes, bool validate,
                                Observer& observer);
};

// Null when the part is of another version.
extern "C" ZU_EXPORT const XmlPart* zuUtilConfigXml(const char* version);

}  // namespace service::util::config::xml::internal

#endif
