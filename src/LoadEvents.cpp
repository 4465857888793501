#include "LoadEvents.hpp"

#include "xerces/Parser.hpp"

namespace service::util::config::xml::internal {

using locator::ConfigLocator;
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

// Entries further up the path than the one that path was found in hold no file of that name, unless
// one has appeared since the look-up.
Observer::File LoadEvents::describe(const std::string& name, const std::string& path,
                                    const DOMElement* include) {
  Observer::File file;
  file.name = name;
  file.path = path;
  for (ConfigLocator::Match& match : ConfigLocator::findAll(name)) {
    if (match.file == path) {
      file.directory = std::move(match.directory);
    } else {
      file.shadowed.push_back(std::move(match));
    }
  }
  if (include != nullptr) file.include = locationOf(*include);
  file.includer = current;
  return file;
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
