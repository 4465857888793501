// What is in force, told setting by setting: the part of Reader that fills a Survey, and the
// judgement of a configuration by the descriptions of several programs.

#include <algorithm>
#include <utility>

#include "bind/Reader.hpp"
#include "bind/Store.hpp"

namespace service::util::config::bind::internal {

Given Reader::given(const Occurrence& source) const {
  const std::string text = source.value == nullptr ? "" : *source.value;
  const xml::Location location = precedence.placeOf(source).location;
  if (source.part == nullptr) return {text, nullptr, "", 0, location};
  return {text, *source.part, *source.name, source.index, location};
}

void Reader::record(const Level& level, std::size_t at, Occurrences inForce) {
  const Row& row = *level.description.rows[at];
  Surveyed surveyed = {row.described, extended(level.describedPath(), row.name), true};
  for (const Occurrence& source : inForce) surveyed.inForce.push_back(given(source));
  const auto addLost = [&](const Occurrence& source) {
    const bool isInForce =
        std::any_of(inForce.begin(), inForce.end(),
                    [&](const Occurrence& other) { return source.value == other.value; });
    if (!isInForce) surveyed.lost.push_back(given(source));
  };
  for (const Occurrence& occurrence : level.found(at)) {
    addLost(occurrence);
    if (row.value.kind != Kind::SECRET) continue;
    request.survey->secrets.emplace(occurrence.part->get(), *occurrence.name);
  }
  for (const Occurrence& other : elsewhere(level, at)) addLost(other);
  request.survey->entries.push_back(std::move(surveyed));
}

void Reader::record(const Level& below, Occurrences sections) const {
  Surveyed surveyed = {below.row->described, below.describedPath(), false};
  for (const Occurrence& section : sections) surveyed.inForce.push_back(given(section));
  request.survey->entries.push_back(std::move(surveyed));
}

bool judge(const std::vector<Settings>& programs, const IConfigPtr& config,
           const xml::Origins& origins, const Overrides& overrides,
           const Settings::Options& options, std::vector<xml::Problem>& problems,
           std::vector<Survey>& surveys) {
  const Precedence precedence(&origins);
  Findings findings(precedence);
  Together together;
  Together* const several = programs.size() > 1 ? &together : nullptr;
  for (const Settings& program : programs) {
    surveys.emplace_back();
    const Request request = {
        program.get().top(),      nullptr, config,         &origins, overrides, options.unknown,
        options.takesEnvironment, several, &surveys.back()};
    Reader(request, precedence, findings).read();
  }
  together.tell(programs.size(), options.unknown, findings);
  return findings.take(problems);
}

const Exported& describedBy(const Settings& settings) {
  return settings.get().exported;
}

std::vector<std::string> wayTo(const Described& described) {
  std::vector<std::string> way;
  for (PathPart& part : parsePath(described.path)) way.push_back(std::move(part.name));
  return way;
}

std::vector<std::string> unitsOf(const Described& described) {
  std::vector<std::string> names;
  const ValueRules rules = rulesOf(described);
  if (!rules.hasUnit()) return names;
  for (const Unit& unit : unitsOf(rules)) names.emplace_back(unit.name);
  return names;
}

std::pair<std::string, std::string> boundsOf(const Described& described) {
  if (!described.lowest.empty()) return {described.lowest, described.highest};
  const ValueRules rules = rulesOf(described);
  if (!rules.isOrdered() || rules.isFloating) return {};
  const auto [least, greatest] = boundsOf(rules);
  return {print(rules, least), print(rules, greatest)};
}

}  // namespace service::util::config::bind::internal
