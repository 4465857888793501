#include "bind/Reader.hpp"

#include <algorithm>
#include <numeric>

#include "bind/Reported.hpp"
#include "cppUtil/internal/text.hpp"

namespace service::util::config::bind::internal {

namespace {

using xml::Severity;

Place rootOf(const xml::Origins* origins) {
  if (origins == nullptr || origins->getFiles().empty()) return {};
  const auto& top = origins->getFiles().front();
  return {{top.path}, &top};
}

}  // namespace

void* valueIn(const Row& row, void* object) {
  if (object == nullptr) return nullptr;
  void* member = row.in(object);
  const Holder& holder = *row.member.holder;
  if (holder.shape != Holder::OPTIONAL) return member;
  const void* value = holder.value(member);
  return value == nullptr ? holder.engage(member) : const_cast<void*>(value);
}

Reader::Reader(const Request& request, const Precedence& precedence, Findings& findings)
    : request(request), precedence(precedence), findings(findings) {
  for (const auto& [path, text] : request.overrides.get()) {
    overrides.emplace_back(parsePath(path), text);
  }
}

void Reader::read() {
  Level top = {request.description,
               request.object,
               "",
               {request.config},
               rootOf(request.origins),
               request.description.variablePrefix,
               {},
               request.description.isOpen,
               nullptr,
               request.given};
  for (const auto& override : overrides) top.assignments.push_back({&override, 0});
  readLevel(top);
}

void Reader::readLevel(Level& level) {
  const std::size_t errorsBefore = findings.errors();
  assign(level);
  search(level);
  if (!level.description.checks.empty()) {
    level.places.assign(level.description.rows.size(), level.place);
  }
  for (std::size_t at = 0; at < level.description.rows.size(); ++at) readRow(level, at);
  tellUnknownVariables(level);
  if (findings.errors() == errorsBefore && level.object != nullptr) runChecks(level);
}

void Reader::readRow(Level& level, std::size_t at) {
  tellRenamed(level, at);
  switch (level.description.rows[at]->form) {
    case Holder::SETTING:
      return readSetting(level, at);
    case Holder::LIST:
      return readList(level, at);
    case Holder::SECTION:
      return readSection(level, at);
    case Holder::SECTIONS:
      return readSections(level, at);
  }
}

void Reader::runChecks(const Level& level) {
  Reported reported = {level.description, level.path, level.place, level.places, findings};
  Report report(reported);
  for (const auto& check : level.description.checks) {
    check.run(check.check.get(), level.object, report);
  }
}

void Reader::search(Level& level) {
  const Description& description = level.description;
  std::vector<std::pair<std::size_t, Occurrence>> found;  // with their rows
  std::vector<std::size_t> counts(description.rows.size());
  found.reserve(counts.size());
  level.contents.reserve(level.parts.size());
  for (const IConfigPtr& part : level.parts) {
    const auto& contents = level.contents.emplace_back(part);
    if (request.together != nullptr) request.together->enter(part, description, level.isOpen);
    const auto take = [&](const Description::Name* name, const Occurrence& occurrence) {
      if (name == nullptr) return tellUnknown(level, occurrence);
      found.emplace_back(name->row, occurrence);
      found.back().second.isFormer = name->isFormer;
      ++counts[name->row];
    };
    match(description.settings, part, contents.properties(), take);
    match(description.sections, part, contents.sections(), take);
  }
  level.ends.resize(counts.size());
  std::partial_sum(counts.begin(), counts.end(), level.ends.begin());
  level.occurrences.resize(found.size());
  for (const auto& [row, occurrence] : found) {
    level.occurrences[level.ends[row] - counts[row]--] = occurrence;
  }
}

// Both the names in a section and those of its description are in byte order.
template <class Map, class Found>
void Reader::match(const std::vector<Description::Name>& known, const IConfigPtr& part,
                   const Map& map, const Found& found) {
  auto name = known.begin();
  for (const auto& [given, elements] : map) {
    while (name != known.end() && name->name < given) ++name;
    const bool isKnown = name != known.end() && name->name == given;
    for (std::uint32_t index = 0; index < elements.size(); ++index) {
      found(isKnown ? &*name : nullptr, occurrenceOf(part, given, elements, index));
    }
  }
}

void Reader::tellUnknown(const Level& level, const Occurrence& unknown) {
  if (request.together == nullptr && level.isOpen) return;
  const std::string path = extended(level.path, *unknown.name, unknown.index, unknown.count);
  const Place place = precedence.placeOf(unknown);
  if (request.together != nullptr) return request.together->add(unknown, path, place);
  findings.add(request.unknown, "unknown-setting", path,
               unknownMessage({&level.description}, unknown.value != nullptr, *unknown.name),
               place);
}

void Reader::readSetting(Level& level, std::size_t at) {
  const Occurrences found = level.found(at);
  tellRepeated(level, at);
  const std::vector<Source> elsewhere = sourcesElsewhere(level, at);
  if (elsewhere.empty() && found.empty()) {
    record(level, at, elsewhere);
    tellMissing(level, at);
    return;
  }
  const Source source = elsewhere.empty() ? Source{&precedence.nearest(found)} : elsewhere.back();
  if (request.survey != nullptr) record(level, at, {source});
  store(level, at, source, valueIn(*level.description.rows[at], level.object));
}

void Reader::readList(Level& level, std::size_t at) {
  const Row& row = *level.description.rows[at];
  const Occurrences found = level.found(at);
  std::vector<Source> sources = sourcesElsewhere(level, at);
  if (sources.empty() && !found.empty()) {
    for (const Occurrence* occurrence : precedence.allNearest(found)) {
      sources.push_back({occurrence});
    }
  }
  record(level, at, sources);
  if (sources.empty()) {
    tellMissing(level, at);
    return;
  }
  const Source& last = sources[std::min<std::size_t>(row.most, sources.size() - 1)];
  tellCount(level, at, sources.size(), placeOf(last));
  if (level.object != nullptr) row.member.holder->clear(row.in(level.object));
  for (const Source& source : sources) {
    const auto fill = [&](void* element) {
      store(level, at, source, element);
      return nullptr;
    };
    Filling filling(fill);
    if (level.object != nullptr) {
      row.member.holder->append(row.in(level.object), filling);
    } else {
      fill(nullptr);
    }
  }
}

void Reader::store(Level& level, std::size_t at, const Source& source, void* value) {
  const Row& row = *level.description.rows[at];
  if (!level.places.empty()) level.places[at] = placeOf(source);
  if (level.given != nullptr) {
    const bool isFromFile = source.occurrence != nullptr;
    level.given->settings[row.name].push_back(
        {source.text(), placeOf(source).location, isFromFile});
  }
  const auto fault = parse(row.value, source.text(), value);
  if (!fault) return;
  std::string path = extended(level.path, row.name);
  if (const Occurrence* occurrence = source.occurrence) {
    path = extended(level.path, *occurrence->name, occurrence->index, occurrence->count);
  }
  findings.add(Severity::ERROR, fault->rule, path, fault->message, placeOf(source));
}

Place Reader::placeOf(const Source& source) const {
  if (source.occurrence != nullptr) return precedence.placeOf(*source.occurrence);
  return {{source.giver}};
}

void Reader::tellRenamed(const Level& level, std::size_t at) {
  const Row& row = *level.description.rows[at];
  const Occurrences found = level.found(at);
  for (const Occurrence& former : found) {
    if (!former.isFormer) continue;
    const bool isRepeated = std::any_of(found.begin(), found.end(), [&](const Occurrence& other) {
      return !other.isFormer && precedence.isInOneFile(former, other);
    });
    std::string message = "is called " + cppUtil::internal::quoted(row.name) + " now";
    if (isRepeated) message += ", which the same file has, too";
    findings.add(isRepeated ? Severity::ERROR : Severity::WARNING, "renamed-setting",
                 extended(level.path, *former.name), message, precedence.placeOf(former));
  }
}

void Reader::tellRepeated(const Level& level, std::size_t at) {
  for (const auto& [occurrence, first] : precedence.repeated(level.found(at))) {
    if (*occurrence->name != *first->name) continue;  // told as renamed
    findings.add(Severity::ERROR, "repeated-setting", extended(level.path, *occurrence->name),
                 alreadyThere(precedence.placeOf(*first)), precedence.placeOf(*occurrence));
  }
}

// Of a row that nothing is given for. Answers whether something is missing.
bool Reader::tellMissing(const Level& level, std::size_t at) {
  const Row& row = *level.description.rows[at];
  if (row.isRequired || &row == level.key) {
    findings.add(Severity::ERROR, "missing-setting", extended(level.path, row.name),
                 "required" + (row.text.empty() ? "" : ": " + row.text), level.place);
    return true;
  }
  const std::size_t errorsBefore = findings.errors();
  const bool hasDefault = row.member.holder != nullptr && level.object != nullptr;
  if (row.isSeveral()) {
    tellCount(level, at, hasDefault ? countOf(row, level.object) : row.defaultCount, level.place);
  }
  return findings.errors() > errorsBefore;
}

void Reader::tellCount(const Level& level, std::size_t at, std::size_t count, const Place& place) {
  const Row& row = *level.description.rows[at];
  if (count >= row.least && count <= row.most) return;
  findings.add(Severity::ERROR, "wrong-count", extended(level.path, row.name),
               "given " + std::to_string(count) + (count == 1 ? " time" : " times") + ", not " +
                   std::to_string(row.least) + " to " + std::to_string(row.most),
               count < row.least ? level.place : place);
}

}  // namespace service::util::config::bind::internal
