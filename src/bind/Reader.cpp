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
    : request(request), top(request.config), precedence(precedence), findings(findings) {
  for (const auto& [path, text] : request.overrides.get()) {
    overrides.emplace_back(parsePath(path), text);
  }
}

void Reader::read() {
  const Description& description = request.description;
  Level level = {
      description, {&top, 1}, description.variablePrefix, description.isOpen, request.object};
  for (const auto& override : overrides) level.assignments.push_back({&override, 0});
  readLevel(level);
}

void Reader::readLevel(Level& level) {
  const std::size_t errorsBefore = findings.errors();
  assign(level);
  search(level);
  const bool hasChecks = !level.description.checks.empty() && level.object != nullptr;
  if (hasChecks) level.places.assign(level.description.rows.size(), placeOf(level));
  for (std::size_t at = 0; at < level.description.rows.size(); ++at) readRow(level, at);
  tellUnknownVariables(level);
  if (hasChecks && findings.errors() == errorsBefore) runChecks(level);
}

void Reader::readRow(Level& level, std::size_t at) {
  const Row& row = *level.description.rows[at];
  const Occurrences found = level.found(at);
  for (const Occurrence& one : found) {
    if (one.isFormer) tellRenamed(level, row, one, found);
  }
  if (found.size() > 1 && !row.isSeveral()) tellRepeated(level, found);
  switch (row.form) {
    case Holder::SETTING:
      return readSetting(level, at, found);
    case Holder::LIST:
      return readList(level, at, found);
    case Holder::SECTION:
      return readSection(level, at, found);
    case Holder::SECTIONS:
      return readSections(level, at, found);
  }
}

void Reader::runChecks(const Level& level) {
  const std::string path = level.path();
  const Place place = placeOf(level);
  Reported reported = {level.description, path, place, level.places, findings};
  Report report(reported);
  for (const auto& check : level.description.checks) {
    check.run(check.check.get(), level.object, report);
  }
}

void Reader::search(Level& level) {
  const Description& description = level.description;
  if (contained.size() == level.depth) contained.emplace_back();
  level.held = &contained[level.depth];
  std::vector<Occurrence>& all = level.held->occurrences;
  std::vector<std::size_t>& ends = level.held->ends;
  all.clear();
  ends.assign(description.rows.size(), 0);
  level.held->contents.clear();
  level.held->contents.reserve(level.parts.size());
  for (const Occurrence& section : level.parts) {
    const IConfigPtr& part = *section.section;
    const auto& contents = level.held->contents.emplace_back(part);
    if (request.together != nullptr) request.together->enter(part, description, level.isOpen);
    match(level, description.settings, part, contents.properties());
    match(level, description.sections, part, contents.sections());
  }
  const auto isBefore = [](const auto& a, const auto& b) { return a.rank < b.rank; };
  if (!std::is_sorted(all.begin(), all.end(), isBefore)) {
    std::stable_sort(all.begin(), all.end(), isBefore);
  }
  for (const Occurrence& one : all) ++ends[one.rank];
  std::partial_sum(ends.begin(), ends.end(), ends.begin());
}

// Both the names in a section and those of its description are in byte order.
template <class Map>
void Reader::match(Level& level, const std::vector<Description::Name>& known,
                   const IConfigPtr& part, const Map& map) {
  std::vector<Occurrence>& all = level.held->occurrences;
  auto name = known.begin();
  for (const auto& [given, elements] : map) {
    int order = -1;
    while (name != known.end() && (order = name->name.compare(given)) < 0) ++name;
    for (std::uint32_t index = 0; index < elements.size(); ++index) {
      if (order != 0) {
        tellUnknown(level, {part, given, elements, index});
        continue;
      }
      Occurrence& found = all.emplace_back(part, given, elements, index);
      found.rank = level.description.ranks[name->row];
      found.isFormer = name->isFormer;
    }
  }
}

void Reader::tellUnknown(const Level& level, const Occurrence& unknown) {
  if (request.together == nullptr && level.isOpen) return;
  const std::string path = extended(level.path(), *unknown.name, unknown.index, unknown.count);
  const Place place = precedence.placeOf(unknown);
  if (request.together != nullptr) return request.together->add(unknown, path, place);
  findings.add(request.unknown, "unknown-setting", path,
               unknownMessage({&level.description}, unknown.value != nullptr, *unknown.name),
               place);
}

void Reader::readSetting(Level& level, std::size_t at, Occurrences found) {
  const Row& row = *level.description.rows[at];
  const std::vector<Occurrence> others = elsewhere(level, at);
  const Occurrence* source = others.empty() ? nullptr : &others.back();
  if (source == nullptr && !found.empty()) source = &precedence.nearest(found);
  if (request.survey != nullptr) record(level, at, {source, source == nullptr ? 0U : 1U});
  if (source == nullptr) {
    tellMissing(level, row);
  } else {
    store(level, at, *source, valueIn(row, level.object));
  }
}

void Reader::readList(Level& level, std::size_t at, Occurrences found) {
  const Row& row = *level.description.rows[at];
  std::vector<Occurrence> sources;
  const std::vector<Occurrence> others = elsewhere(level, at);
  for (const Occurrence& other : others) {
    if (other.name == others.back().name) sources.push_back(other);
  }
  if (others.empty() && !found.empty()) {
    for (const Occurrence* occurrence : precedence.allNearest(found)) {
      sources.push_back(*occurrence);
    }
  }
  if (request.survey != nullptr) record(level, at, sources);
  if (sources.empty()) {
    tellMissing(level, row);
    return;
  }
  tellCount(level, row, sources.size(),
            &sources[std::min<std::size_t>(row.most, sources.size() - 1)]);
  if (level.object != nullptr) row.member.holder->clear(row.in(level.object));
  for (const Occurrence& source : sources) {
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

void Reader::store(Level& level, std::size_t at, const Occurrence& source, void* value) {
  const Row& row = *level.description.rows[at];
  if (!level.places.empty()) level.places[at] = precedence.placeOf(source);
  if (const auto fault = parse(row.value, *source.value, value)) {
    tellFault(level, row, source, *fault);
  }
}

void Reader::tellFault(const Level& level, const Row& row, const Occurrence& source,
                       const Fault& fault) {
  const std::string& name = source.part != nullptr ? *source.name : row.name;
  findings.add(Severity::ERROR, fault.rule,
               extended(level.path(), name, source.index, source.count), fault.message,
               precedence.placeOf(source));
}

// Where it is told what is missing.
Place Reader::placeOf(const Level& level) const {
  if (level.around == nullptr) return rootOf(request.origins);
  if (level.parts.empty()) return placeOf(*level.around);
  return precedence.placeOf(precedence.nearest(level.parts));
}

void Reader::tellRenamed(const Level& level, const Row& row, const Occurrence& former,
                         Occurrences found) {
  const bool isRepeated = std::any_of(found.begin(), found.end(), [&](const Occurrence& other) {
    return !other.isFormer && precedence.isInOneFile(former, other);
  });
  std::string message = "is called " + cppUtil::internal::quoted(row.name) + " now";
  if (isRepeated) message += ", which the same file has, too";
  findings.add(isRepeated ? Severity::ERROR : Severity::WARNING, "renamed-setting",
               extended(level.path(), *former.name), message, precedence.placeOf(former));
}

void Reader::tellRepeated(const Level& level, Occurrences found) {
  for (const auto& [occurrence, first] : precedence.repeated(found)) {
    if (*occurrence->name != *first->name) continue;  // told as renamed
    findings.add(Severity::ERROR, "repeated-setting", extended(level.path(), *occurrence->name),
                 alreadyThere(precedence.placeOf(*first)), precedence.placeOf(*occurrence));
  }
}

// Of a row that nothing is given for. Answers whether something is missing.
bool Reader::tellMissing(const Level& level, const Row& row) {
  if (row.isRequired || &row == level.key) {
    findings.add(Severity::ERROR, "missing-setting", extended(level.path(), row.name),
                 "required" + (row.text.empty() ? "" : ": " + row.text), placeOf(level));
    return true;
  }
  if (!row.isSeveral()) return false;
  const bool hasDefault = row.member.holder != nullptr && level.object != nullptr;
  return tellCount(level, row, hasDefault ? countOf(row, level.object) : row.defaultCount, nullptr);
}

// last: the first that is too many; null for defaults. Answers whether there is something to tell.
bool Reader::tellCount(const Level& level, const Row& row, std::size_t count,
                       const Occurrence* last) {
  if (count >= row.least && count <= row.most) return false;
  const bool isAtLast = count > row.most && last != nullptr;
  findings.add(Severity::ERROR, "wrong-count", extended(level.path(), row.name),
               "given " + std::to_string(count) + (count == 1 ? " time" : " times") + ", not " +
                   std::to_string(row.least) + " to " + std::to_string(row.most),
               isAtLast ? precedence.placeOf(*last) : placeOf(level));
  return true;
}

}  // namespace service::util::config::bind::internal
