#include "xml/EntityResolver.hpp"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLURL.hpp>
#include <xercesc/util/XMLUri.hpp>

#include "xerces/dom.hpp"
#include "xml/FileSource.hpp"

namespace service::util::config::xml::internal {

namespace {

using xercesc::XMLResourceIdentifier;
using xercesc::XMLURL;

class RefusedSource : public xercesc::InputSource {
 public:
  explicit RefusedSource(const XMLCh* systemId) : InputSource(systemId) {}
  xercesc::BinInputStream* makeStream() const override { return nullptr; }
};

// Replaces %XX by the byte; what is not two hexadecimal digits stays.
std::string percentDecoded(const std::string& text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string digits = text.substr(i + 1, 2);
    if (text[i] == '%' && digits.size() == 2 &&
        digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos) {
      decoded += static_cast<char>(std::strtol(digits.c_str(), nullptr, 16));
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

// A local file under its system id.
struct Local {
  std::string path;
  xerces::XmlString systemId;
};

// The file that a system id names, relative to the document that names it; nothing when that is not
// on this machine.
std::optional<Local> localFile(const XMLCh* base, const XMLCh* systemId) {
  XMLURL url;
  if (!url.setURL(base, systemId, url) || url.isRelative()) {
    xercesc::XMLBuffer path;
    xercesc::XMLUri::normalizeURI(systemId, path);  // %20 is a blank, all else stays
    const xercesc::LocalFileInputSource file(base, path.getRawBuffer());
    return Local{xerces::transcode(file.getSystemId()), file.getSystemId()};
  }
  const std::string host = xerces::transcode(url.getHost());
  if (url.getProtocol() != XMLURL::File || !(host.empty() || host == "localhost")) {
    return std::nullopt;
  }
  return Local{percentDecoded(xerces::transcode(url.getPath())), url.getURLText()};
}

}  // namespace

EntityResolver::EntityResolver(const SchemeList& schemes, Budget& budget, LoadEvents* events)
    : schemas(schemaLocations(schemes)), budget(budget), events(events) {}

xercesc::InputSource* EntityResolver::resolveEntity(XMLResourceIdentifier* resource) {
  const XMLCh* systemId = resource->getSystemId();
  if (resource->getResourceIdentifierType() != XMLResourceIdentifier::SchemaGrammar ||
      isAllowedSchema(*resource)) {
    if (const auto local = localFile(resource->getBaseURI(), systemId)) {
      if (events != nullptr) events->referred(local->path);
      return new FileSource(local->path, local->systemId.c_str(), budget);
    }
  }
  return new RefusedSource(systemId);
}

// Documents may hint at schemas of their own. One that could bring its own rules would not be held
// to the grammar.
bool EntityResolver::isAllowedSchema(const XMLResourceIdentifier& resource) const {
  const std::pair<std::string, std::string> wanted(xerces::transcode(resource.getNameSpace()),
                                                   xerces::transcode(resource.getSystemId()));
  return std::find(schemas.begin(), schemas.end(), wanted) != schemas.end();
}

}  // namespace service::util::config::xml::internal
