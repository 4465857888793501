#include "shared/Effective.hpp"

#include <algorithm>
#include <iostream>

#include "service/util/config/internal/Config.hpp"
#include "service/util/config/visit.hpp"
#include "shared/Failure.hpp"
#include "shared/missing.hpp"
#include "shared/text.hpp"

namespace zuconfig {

using service::util::config::spellPath;
using service::util::config::bind::internal::describedBy;
using service::util::config::bind::internal::Given;
using service::util::config::bind::internal::Holder;
using service::util::config::xml::Severity;

Effective::Effective(Loader& loader, const ProgramOptions& options, const std::string& file)
    : names(loader.getNames()),
      programs(options),
      secrets(programs, loader.getSources()),
      config(loader.load(file, origins)),
      judgement(programs.judge(config, origins)),
      root(std::make_shared<service::util::config::internal::Config>()) {
  secrets.add(judgement, config, origins);
  warn(file);
  for (std::size_t i = 0; i < judgement.surveys.size(); ++i) {
    for (const Surveyed& surveyed : judgement.surveys[i].entries) {
      add({&programs.get()[i], &surveyed});
    }
  }
}

void Effective::warn(const std::string& file) const {
  bool isRefused = false;
  for (const Problem& problem : judgement.problems) {
    const bool isOfOptions = problem.location.file == "command line";
    if (isOfOptions) throw Failure(USAGE, "--set: " + problem.message);
    // Of what nothing reads, programs only warn.
    const bool isRead = problem.rule != "unknown-setting";
    isRefused = isRefused || (isRead && problem.severity == Severity::ERROR);
  }
  if (!isRefused) return;
  std::cerr << "zuconfig: warning: " << printable(programs.names())
            << (programs.get().size() == 1 ? " refuses " : " refuse ") << shownArgument(file)
            << "; \"zuconfig check\" with the same --for tells why\n";
}

void Effective::add(const Entry& entry) {
  const Surveyed& surveyed = *entry.surveyed;
  std::vector<Entry>& known = entries[surveyed.path];
  if (known.empty()) paths.push_back(surveyed.path);
  known.push_back(entry);
  const Described& described = *surveyed.described;
  const bool isThere =
      !surveyed.inForce.empty() || (described.form == Holder::SECTION && !described.isOptional);
  if (described.isSetting()) {
    addValues(surveyed);
  } else if (isThere) {
    const Pattern path(surveyed.path, Wanted::SECTIONS);
    sectionFor(path.parts, path.parts.size());
  }
}

// The section that the first parts lead to, made if need be.
IConfigPtr Effective::sectionFor(const std::vector<Part>& parts, std::size_t count) const {
  IConfigPtr at = root;
  for (std::size_t i = 0; i < count; ++i) {
    while (at->getSectionCount(parts[i].name) <= parts[i].index) at->addSection(parts[i].name);
    at = at->getSection(parts[i].name, parts[i].index);
  }
  return at;
}

void Effective::addValues(const Surveyed& surveyed) {
  std::vector<std::string> texts;
  for (const Given& given : surveyed.inForce) texts.push_back(shown(surveyed, given));
  if (texts.empty()) {
    texts.assign(surveyed.described->defaults.begin(), surveyed.described->defaults.end());
  }
  // A configuration holds no empty text; an empty default, say, is none to it.
  texts.erase(std::remove(texts.begin(), texts.end(), ""), texts.end());
  if (texts.empty()) return;
  const Pattern path(surveyed.path, Wanted::PROPERTIES);
  const IConfigPtr parent = sectionFor(path.parts, path.parts.size() - 1);
  const std::string& name = path.parts.back().name;
  if (parent->getPropertyCount(name) > 0) return;  // of another program
  for (const std::string& text : texts) parent->addProperty(name, text);
  values[{parent.get(), name}] = &surveyed;
}

const std::vector<Effective::Entry>& Effective::at(const std::string& path) const {
  static const std::vector<Entry> none;
  const auto found = entries.find(path);
  return found == entries.end() ? none : found->second;
}

std::string Effective::pathOf(const Pattern& pattern) const {
  const auto sections = sectionsOnTheWay(root, pattern);
  if (sections.size() + 1 < pattern.parts.size()) return "";
  const std::string around = sections.empty() ? "" : sections.back().path;
  const Part& last = pattern.parts.back();
  std::string path = spellPath(around, last.name, 0, 1);
  if (entries.count(path) > 0) return path;
  const std::string indexed = spellPath(around, last.name, last.index, UINT32_MAX);
  return entries.count(indexed) > 0 ? indexed : "";
}

std::string Effective::whyUnread(const Pattern& pattern) const {
  const auto sections = sectionsOnTheWay(root, pattern);
  const Part& part = pattern.parts[sections.size()];
  const std::string around = sections.empty() ? "" : sections.back().path;
  std::string path;
  for (const Part& each : pattern.parts) path = spellPath(path, each.name, 0, 1);
  for (const Program& program : programs.get()) {
    for (const Described& described : describedBy(program.settings).settings) {
      if (described.path != path) continue;
      const std::uint32_t count = part.hasIndex ? UINT32_MAX : 1;
      return "not set, there is no section " + spellPath(around, part.name, part.index, count);
    }
  }
  return printable(programs.names()) +
         (programs.get().size() == 1 ? " reads no such setting" : " read no such setting") +
         didYouMean(nearest(spellPath(around, part.name, 0, 1), paths));
}

std::string Effective::placeOf(const IConfigPtr& config, const std::string& name,
                               std::uint32_t index) const {
  const Surveyed& surveyed = *values.at({config.get(), name});
  return surveyed.inForce.empty() ? "default" : names.shown(surveyed.inForce[index].location);
}

std::string Effective::placesOf(const std::string& path) const {
  std::string places;
  if (at(path).empty()) return places;
  for (const Given& given : at(path).front().surveyed->inForce) {
    places += (places.empty() ? "" : ", ") + names.shown(given.location);
  }
  return places;
}

std::string Effective::shown(const Surveyed& surveyed, const Given& given) const {
  const bool isHidden = (isSecret(*surveyed.described) && !programs.secretNames().empty()) ||
                        secrets.hides(given.part, given.name);
  return isHidden ? secretMark : given.text;
}

}  // namespace zuconfig
