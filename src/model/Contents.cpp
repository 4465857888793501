#include "model/Contents.hpp"

#include <typeinfo>

#include "service/util/config/visit.hpp"

namespace service::util::config::internal {

Contents::Contents(const IConfigPtr& config) {
  const IConfig* given = config.get();
  if (given != nullptr && typeid(*given) == typeid(Config)) {
    const auto& own = static_cast<const Config&>(*given);
    heldProperties = &own.properties;
    heldSections = &own.sections;
    return;
  }
  copy = std::make_unique<Copy>();
  for (const std::string& name : getPropertyNames(config)) {
    auto& values = copy->properties[name];
    values.resize(config->getPropertyCount(name));
    for (std::uint32_t i = 0; i < values.size(); ++i) config->getProperty(name, values[i], i);
  }
  for (const std::string& name : getSectionNames(config)) {
    auto& sections = copy->sections[name];
    const std::uint32_t count = config->getSectionCount(name);
    for (std::uint32_t i = 0; i < count; ++i) sections.push_back(config->getSection(name, i));
  }
  heldProperties = &copy->properties;
  heldSections = &copy->sections;
}

}  // namespace service::util::config::internal
