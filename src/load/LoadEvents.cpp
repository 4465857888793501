#include "load/LoadEvents.hpp"

#include "load/describeFile.hpp"

namespace service::util::config::xml::internal {

void LoadEvents::sectionAdded(const IConfigPtr& parent, const std::string& name,
                              const IConfigPtr& section, const Position& position) {
  observer.sectionAdded(parent, name, parent->getSectionCount(name) - 1, section,
                        locationOf(position));
}

void LoadEvents::propertyAdded(const IConfigPtr& config, const std::string& name,
                               const Position& position) {
  observer.propertyAdded(config, name, config->getPropertyCount(name) - 1, locationOf(position));
}

Observer::File LoadEvents::describe(const std::string& name, const std::string& path) {
  const Location place = current == nullptr ? Location() : locationOf(lastInclude);
  return describeFile(order, name, path, place, current);
}

void LoadEvents::setCurrent(const Observer::File* file) {
  current = file;
  location.file = file == nullptr ? "" : file->path;
}

const Location& LoadEvents::locationOf(const Position& position) {
  location.line = position.line;
  location.column = position.column;
  return location;
}

}  // namespace service::util::config::xml::internal
