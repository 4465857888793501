// What is in force, told setting by setting: the part of Reader that fills a Survey, and the
// judgement of a configuration by the descriptions of several programs.

#include <algorithm>
#include <utility>

#include "bind/Reader.hpp"
#include "bind/Store.hpp"

namespace service::util::config::bind::internal {

Given Reader::given(const Source& source) const {
  if (source.occurrence == nullptr) return {source.given, nullptr, "", 0, {source.giver}};
  const Occurrence& occurrence = *source.occurrence;
  return {occurrence.value == nullptr ? "" : *occurrence.value, *occurrence.part, *occurrence.name,
          occurrence.index, precedence.placeOf(occurrence).location};
}

void Reader::record(const Level& level, std::size_t at, const std::vector<Source>& inForce) const {
  if (request.survey == nullptr) return;
  const Row& row = *level.description.rows[at];
  std::vector<Source> all;
  for (const Occurrence& occurrence : level.found(at)) {
    all.push_back({&occurrence});
    if (row.value.kind != Kind::SECRET) continue;
    request.survey->secrets.emplace(occurrence.part->get(), *occurrence.name);
  }
  for (Source& source : environmentSource(level, at)) all.push_back(std::move(source));
  for (Source& source : assignedSources(level, at)) all.push_back(std::move(source));

  Surveyed surveyed = {row.described, extended(level.describedPath, row.name), {}, {}};
  for (const Source& source : inForce) surveyed.inForce.push_back(given(source));
  for (const Source& source : all) {
    const bool isInForce = std::any_of(inForce.begin(), inForce.end(), [&](const Source& other) {
      return source.occurrence == other.occurrence && source.given == other.given &&
             source.giver == other.giver;
    });
    if (!isInForce) surveyed.lost.push_back(given(source));
  }
  request.survey->entries.push_back(std::move(surveyed));
}

void Reader::record(const Level& level, std::size_t at, const std::string& path,
                    Occurrences sections) const {
  if (request.survey == nullptr) return;
  Surveyed surveyed = {level.description.rows[at]->described, path, {}, {}};
  for (const Occurrence& section : sections) surveyed.inForce.push_back(given({&section}));
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
