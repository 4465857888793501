// The part of Reader that goes down into sections.

#include <cutil/cutil.h>

#include <algorithm>
#include <map>
#include <utility>

#include "bind/Reader.hpp"
#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/stackLeft.hpp"
#include "cppUtil/internal/text.hpp"

namespace service::util::config::bind::internal {

namespace {

using xml::Severity;

// What must be left of the stack to go into one more section: a description may hold itself.
constexpr std::size_t neededStack = 64UL * 1024;
constexpr std::size_t unaskedDepth = 4;  // to ask takes a system call

std::string pathOf(const std::string& around, const Occurrence& section) {
  return extended(around, *section.name, section.index, section.count);
}

}  // namespace

Reader::Level Reader::below(const Level& level, const Row& row, Occurrences sections) const {
  const Description& description = row.below();
  Level below = {description, sections, prefixBelow(description, level.variablePrefix, row.name),
                 row.isOpen || description.isOpen};
  below.around = &level;
  below.row = &row;
  below.name = &row.name;
  below.depth = level.depth + 1;
  return below;
}

void Reader::readSection(Level& level, std::size_t at, Occurrences found) {
  const Row& row = *level.description.rows[at];
  Level below = this->below(level, row, found);
  if (found.size() == 1) below.name = found.front().name;
  if (request.survey != nullptr) record(below, found);
  if (!level.assigned.empty()) below.assignments = level.assigned[at];
  for (Assignment& assignment : below.assignments) ++assignment.depth;
  if (found.empty() && below.assignments.empty() &&
      !hasVariable(below.description, below.variablePrefix)) {
    if (tellMissing(level, row) || row.isOptional) return;
  }
  below.object = valueIn(row, level.object);
  if (!level.places.empty()) level.places[at] = placeOf(below);
  readLevel(below);
}

void Reader::readSections(Level& level, std::size_t at, Occurrences found) {
  const Row& row = *level.description.rows[at];
  Groups groups;
  if (row.isKeyed) groups = groupsOf(level, row, found);
  Elements elements(groups.begin(), groups.end());
  for (std::size_t i = 0; i < found.size() && !row.isKeyed; ++i) {
    elements.emplace_back(found.begin() + i, 1);
  }
  if (!level.assigned.empty()) {
    for (const Assignment& assignment : level.assigned[at]) {
      const auto& part = assignment.override->first[assignment.depth];
      if (part.index.value_or(0) >= elements.size())
        tellUnfit(assignment, "there is no such section");
    }
  }
  if (elements.empty()) {
    if (request.survey != nullptr) record(below(level, row, {}), {});
    tellMissing(level, row);
    return;
  }
  if (!level.places.empty()) level.places[at] = precedence.placeOf(elements.front().front());
  const auto& last = elements[std::min<std::size_t>(row.most, elements.size() - 1)];
  tellCount(level, row, elements.size(), &last.front());
  if (level.object != nullptr) row.member.holder->clear(row.in(level.object));
  for (std::size_t index = 0; index < elements.size(); ++index) {
    const auto fill = [&](void* object) {
      readElement(level, at, elements, index, object);
      return row.isKeyed && object != nullptr ? row.key().in(object) : nullptr;
    };
    if (level.object == nullptr) {
      fill(nullptr);
      continue;
    }
    Filling filling(fill);
    if (row.member.holder->append(row.in(level.object), filling)) continue;
    const Occurrence& section = elements[index].front();
    findings.add(Severity::ERROR, "duplicate-key", pathOf(level.path(), section),
                 "its " + row.key().name + " is that of another section, too",
                 precedence.placeOf(section));
  }
}

void Reader::readElement(const Level& level, std::size_t at, const Elements& elements,
                         std::size_t index, void* object) {
  if (level.depth >= unaskedDepth && cppUtil::internal::stackLeft() < neededStack) {
    throw cppUtil::err::Exception(CU_INVALID_ARGUMENT, 0, "src/bind",
                                  "void service::util::config::bind::internal::Reader::read()",
                                  __LINE__, "sections nested too deeply for the stack");
  }
  const Row& row = *level.description.rows[at];
  Level below = this->below(level, row, elements[index]);
  below.index = static_cast<std::uint32_t>(index);
  below.count = static_cast<std::uint32_t>(elements.size());
  below.object = object;
  Survey* const survey = request.survey;
  const std::size_t entry = survey == nullptr ? 0 : survey->entries.size();
  if (survey != nullptr) record(below, elements[index]);
  below.variablePrefix.clear();
  if (row.isKeyed) below.key = &row.key();
  if (!level.assigned.empty()) {
    for (Assignment assignment : level.assigned[at]) {
      const auto& part = assignment.override->first[assignment.depth++];
      if (part.index.value_or(0) == index) below.assignments.push_back(assignment);
    }
  }
  readLevel(below);
  if (row.isKeyed && survey != nullptr && object != nullptr) {
    survey->entries[entry].key = print(row.key().value, row.key().in(object));
  }
}

// Sections of one key are one element, unless they stand in the same file.
Reader::Groups Reader::groupsOf(const Level& level, const Row& row, Occurrences found) {
  Groups groups;
  std::map<std::string, std::size_t> known;  // the group of each key
  for (const Occurrence& section : found) {
    const std::string key = keyOf(row, section);
    const auto [same, isNew] = known.emplace(key, groups.size());
    if (key.empty() || isNew) {
      groups.push_back({section});
      continue;
    }
    std::vector<Occurrence>& group = groups[same->second];
    const auto twin = std::find_if(group.begin(), group.end(), [&](const Occurrence& other) {
      return precedence.isInOneFile(section, other);
    });
    if (twin == group.end()) {
      group.push_back(section);
      continue;
    }
    const int line = precedence.placeOf(*twin).location.line;
    findings.add(
        Severity::ERROR, "duplicate-key", pathOf(level.path(), section),
        "its " + row.key().name + " " + cppUtil::internal::quoted(key) + " is that of " +
            (line > 0 ? "the section in line " + std::to_string(line) : "another section") +
            ", too",
        precedence.placeOf(section));
  }
  return groups;
}

std::string Reader::keyOf(const Row& row, const Occurrence& section) const {
  const Row& key = row.key();
  const config::internal::Contents contents(*section.section);
  std::vector<Occurrence> found;
  findIn(*section.section, contents.properties(), key.name, found);
  for (const std::string& former : key.formerNames) {
    findIn(*section.section, contents.properties(), former, found);
  }
  return found.empty() ? "" : canonical(key.value, *precedence.nearest(found).value);
}

}  // namespace service::util::config::bind::internal
