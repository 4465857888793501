#include "service/util/config/internal/Config.hpp"

#include <cutil/cutil.h>

#include <typeinfo>
#include <utility>

#include "cppUtil/err/Exception.hpp"
#include "model/releaseChildren.hpp"
#include "service/util/config/errorModule.hpp"

namespace service::util::config {

IConfig::~IConfig() = default;

namespace internal {

namespace {

using cppUtil::err::Exception;

// The places that failures are reported from, as the signature and a line number that is fixed and
// does not follow the source: callers tell the checks of one operation apart by it.
struct Place {
  const char* function;
  int line;
};

constexpr const char* addPropertySignature =
    "virtual void service::util::config::internal::Config::addProperty(const string&, const "
    "string&)";
constexpr const char* getSectionSignature =
    "virtual service::util::config::IConfigPtr "
    "service::util::config::internal::Config::getSection(const string&, uint32_t) const";

constexpr Place addPropertyName = {addPropertySignature, 30};
constexpr Place addPropertyValue = {addPropertySignature, 31};
constexpr Place addSectionName = {
    "virtual service::util::config::IConfigPtr "
    "service::util::config::internal::Config::addSection(const string&)",
    39};
constexpr Place getSectionCountName = {
    "virtual uint32_t service::util::config::internal::Config::getSectionCount(const string&) "
    "const",
    49};
constexpr Place getSectionName = {getSectionSignature, 59};
constexpr Place getSectionUnknown = {getSectionSignature, 64};
constexpr Place getSectionIndex = {getSectionSignature, 70};
constexpr Place getPropertyCountName = {
    "virtual uint32_t service::util::config::internal::Config::getPropertyCount(const string&) "
    "const",
    81};
constexpr Place getPropertyName = {
    "virtual bool service::util::config::internal::Config::getProperty(const string&, "
    "std::string&, uint32_t) const",
    92};

constexpr const char* emptySectionName = "Section name is empty!";
constexpr const char* emptyPropertyName = "Properties name is empty!";
constexpr const char* emptyPropertyValue = "Properties value is empty!";

Exception failure(std::uint32_t code, const Place& place) {
  return Exception(code, 0, "src/config", place.function, place.line, "");
}

[[noreturn, gnu::cold]] void failEmpty(const Place& place, const char* message) {
  throw failure(CU_MISSING_ARGUMENT, place) << message;
}

void requireText(const std::string& text, const Place& place, const char* message) {
  if (text.empty()) failEmpty(place, message);
}

// The number of elements that map holds under name.
template <class Map>
std::uint32_t countOf(const Map& map, const std::string& name) {
  const auto found = map.find(name);
  return found == map.end() ? 0 : static_cast<std::uint32_t>(found->second.size());
}

template <class Map>
std::vector<std::string> namesOf(const Map& map) {
  std::vector<std::string> names;
  names.reserve(map.size());
  for (const auto& [name, elements] : map) names.push_back(name);
  return names;
}

// Appends element to the elements under name. When the append fails, no empty entry stays behind.
template <class Map, class Element>
void append(Map& map, const std::string& name, const Element& element) {
  const auto position = map.lower_bound(name);
  if (position != map.end() && position->first == name) {
    position->second.push_back(element);
  } else {
    map.emplace_hint(position, name, typename Map::mapped_type(1, element));
  }
}

}  // namespace

Config::~Config() {
  releaseChildren<IConfigPtr>(sections,
                              [this](std::vector<IConfigPtr>& left) { leaveSections(left); });
}

void Config::leaveSections(std::vector<IConfigPtr>& left) {
  for (auto& [name, children] : sections) {
    for (IConfigPtr& child : children) left.push_back(std::move(child));
  }
}

void Config::addProperty(const std::string& name, const std::string& value) {
  requireText(name, addPropertyName, emptyPropertyName);
  requireText(value, addPropertyValue, emptyPropertyValue);
  append(properties, name, value);
}

IConfigPtr Config::addSection(const std::string& name) {
  requireText(name, addSectionName, emptySectionName);
  IConfigPtr section = std::make_shared<Config>();
  append(sections, name, section);
  return section;
}

std::uint32_t Config::getSectionCount(const std::string& name) const {
  requireText(name, getSectionCountName, emptySectionName);
  return countOf(sections, name);
}

IConfigPtr Config::getSection(const std::string& name, std::uint32_t index) const {
  return findSection(name, index);
}

const IConfigPtr& Config::findSection(const std::string& name, std::uint32_t index) const {
  requireText(name, getSectionName, emptySectionName);
  const auto found = sections.find(name);
  if (found == sections.end()) {
    throw failure(NOT_FOUND, getSectionUnknown)
        << "util::config: no section called \"" << name << "\"";
  }
  if (index >= found->second.size()) {
    throw failure(NOT_FOUND, getSectionIndex) << "util::config: section index " << index
                                              << " for section \"" << name << "\" out of bounds";
  }
  return found->second[index];
}

std::uint32_t Config::getPropertyCount(const std::string& name) const {
  requireText(name, getPropertyCountName, emptySectionName);  // the section's wording, as ever
  return countOf(properties, name);
}

bool Config::getProperty(const std::string& name, std::string& value, std::uint32_t index) const {
  requireText(name, getPropertyName, emptyPropertyName);
  const auto found = properties.find(name);
  if (found == properties.end() || index >= found->second.size()) return false;
  value = found->second[index];
  return true;
}

bool Config::getProperty(const Select& select, std::string& value) const {
  const IConfig* current = this;
  IConfigPtr held;
  for (const auto& [name, index] : select.sectionPath) {
    if (typeid(*current) == typeid(Config)) {
      // Its sections live as long as itself, so no reference is taken.
      current = static_cast<const Config*>(current)->findSection(name, index).get();
    } else {  // a derived class may answer differently
      held = current->getSection(name, index);
      current = held ? held.get() : this;
    }
  }
  return current->getProperty(select.propertyName, value, select.propertyIndex);
}

std::vector<std::string> Config::getPropertyNames() const {
  return namesOf(properties);
}

std::vector<std::string> Config::getSectionNames() const {
  return namesOf(sections);
}

}  // namespace internal

}  // namespace service::util::config
