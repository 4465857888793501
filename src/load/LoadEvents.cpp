#include "load/LoadEvents.hpp"

#include "load/describeFile.hpp"
#include "xerces/Parser.hpp"

namespace service::util::config::xml::internal {

using xercesc::DOMElement;

void LoadEvents::sectionAdded(const IConfigPtr& parent, const std::string& name,
                              const IConfigPtr& section, const DOMElement& element) {
  observer.sectionAdded(parent, name, parent->getSectionCount(name) - 1, section,
                        locationOf(element));
}

void LoadEvents::propertyAdded(const IConfigPtr& config, const std::string& name,
                               const DOMElement& element) {
  observer.propertyAdded(config, name, config->getPropertyCount(name) - 1, locationOf(element));
}

Observer::File LoadEvents::describe(const std::string& name, const std::string& path,
                                    const DOMElement* include) {
  return describeFile(name, path, include == nullptr ? Location() : locationOf(*include), current);
}

void LoadEvents::setCurrent(const Observer::File* file) {
  current = file;
  location.file = file == nullptr ? "" : file->path;
}

const Location& LoadEvents::locationOf(const DOMElement& element) {
  const auto& tag = xerces::Parser::getLocationTag(&element);
  location.line = tag.line;
  location.column = tag.column;
  return location;
}

}  // namespace service::util::config::xml::internal
