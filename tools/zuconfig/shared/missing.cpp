#include "shared/missing.hpp"

#include "service/util/config/visit.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::getPropertyNames;
using service::util::config::getSectionNames;
using service::util::config::IConfig;
using service::util::config::spellName;
using service::util::config::spellPath;

// One of the two kinds of things in a section, as this file words it.
struct Kind {
  const char* noun;
  std::uint32_t (IConfig::*count)(const std::string&) const;
  std::vector<std::string> (*names)(const IConfigPtr&);
};

const Kind property = {"property", &IConfig::getPropertyCount, getPropertyNames};
const Kind section = {"section", &IConfig::getSectionCount, getSectionNames};

std::string inPlace(const std::string& path) {
  return path.empty() ? " at the top" : " in " + path;
}

std::string indexReason(const Kind& kind, const Part& part, std::uint32_t count,
                        const std::string& path) {
  const std::string name = spellName(part.name);
  std::string reason =
      "no " + std::string(kind.noun) + " " + name + "[" + std::to_string(part.index) + "]";
  reason += inPlace(path) + ": there is ";
  if (count == 1) return reason + "one " + name + ", with index 0";
  return reason + "only " + name + "[0] to " + name + "[" + std::to_string(count - 1) + "]";
}

std::string reasonFor(const IConfigPtr& config, const Part& part, const Kind& kind,
                      const Kind& other, const std::string& path) {
  const std::uint32_t count = ((*config).*kind.count)(part.name);
  if (count > 0) return indexReason(kind, part, count, path);
  const std::string name = quoted(part.name);
  if (((*config).*other.count)(part.name) > 0) {
    return name + inPlace(path) + " is a " + other.noun + ", not a " + kind.noun;
  }
  std::string reason = std::string("no ") + kind.noun + " called " + name + inPlace(path);
  if (const auto names = nearest(part.name, kind.names(config)); !names.empty()) {
    return reason + didYouMean(names);
  }
  const auto others = nearest(part.name, other.names(config));
  if (others.empty()) return reason;
  return reason + "; there is a " + other.noun + " called " + quoted(others.front());
}

// A name in config that the parts of pattern from first on spell when their dots belong to it.
// Empty when there is none.
std::string dottedName(const IConfigPtr& config, const Pattern& pattern, std::size_t first) {
  std::string name = pattern.parts[first].name;
  for (std::size_t i = first + 1; i < pattern.parts.size(); ++i) {
    name += "." + pattern.parts[i].name;
    if (config->getPropertyCount(name) + config->getSectionCount(name) > 0) return name;
  }
  return "";
}

}  // namespace

std::vector<Match> sectionsOnTheWay(const IConfigPtr& config, const Pattern& pattern) {
  std::vector<Match> sections;
  IConfigPtr at = config;
  std::string path;
  for (std::size_t i = 0; i + 1 < pattern.parts.size(); ++i) {
    const Part& part = pattern.parts[i];
    const std::uint32_t count = at->getSectionCount(part.name);
    if (!part.isSingle() || part.index >= count) break;
    const IConfigPtr below = at->getSection(part.name, part.index);
    path = spellPath(path, part.name, part.index, count);
    sections.push_back({at, part.name, part.index, path, below});
    at = below;
  }
  return sections;
}

std::string whyMissing(const IConfigPtr& config, const Pattern& pattern, Wanted wanted) {
  const std::vector<Match> reached = sectionsOnTheWay(config, pattern);
  const IConfigPtr& at = reached.empty() ? config : reached.back().section;
  const std::string path = reached.empty() ? "" : reached.back().path;
  const Part& part = pattern.parts[reached.size()];
  const bool isSection = reached.size() + 1 < pattern.parts.size() || wanted == Wanted::SECTIONS;
  const Kind& kind = isSection ? section : property;
  if (part.isGlob || (part.isEveryIndex && ((*at).*kind.count)(part.name) > 0)) {
    return "nothing matches";
  }
  if (const std::string name = dottedName(at, pattern, reached.size()); !name.empty()) {
    return "no section called " + quoted(part.name) + inPlace(path) +
           "; a name with a dot in it is written in quotes: " + spellPath(path, name, 0, 1);
  }
  return reasonFor(at, part, kind, isSection ? property : section, path);
}

}  // namespace zuconfig
