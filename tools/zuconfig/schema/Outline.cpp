#include "schema/Outline.hpp"

#include "service/util/config/visit.hpp"
#include "shared/Failure.hpp"
#include "shared/text.hpp"

namespace zuconfig {

using namespace service::util::config;

Outline::Outline(const bind::Settings& settings) {
  const auto& exported = bind::internal::describedBy(settings);
  byPath[""].isOpen = exported.isOpen;
  for (const Described& described : exported.settings) {
    const auto way = bind::internal::wayTo(described);
    std::string path;
    Entry* around = nullptr;
    for (const std::string& name : way) {
      around = &byPath[path];
      path += (path.empty() ? "" : ".") + spellName(name);
    }
    Entry& entry = byPath[path];
    entry.described = &described;
    entry.name = way.back();
    entry.isOpen = described.isOpen;
    around->entries.push_back(&entry);
  }
}

const Entry& Outline::section(const std::string& path) const {
  const auto found = byPath.find(path);
  const bool isThere = found != byPath.end();
  if (isThere && (path.empty() || !found->second.described->isSetting())) return found->second;
  std::vector<std::string> sections;
  for (const auto& [known, entry] : byPath) {
    if (entry.described != nullptr && !entry.described->isSetting()) sections.push_back(known);
  }
  throw Failure(NO, "no section " + printable(path) + didYouMean(nearest(path, sections)));
}

const Entry& Outline::contentOf(const Entry& section) const {
  const bool isItself = section.described == nullptr || section.described->like.empty();
  return isItself ? section : byPath.at(section.described->like);
}

}  // namespace zuconfig
