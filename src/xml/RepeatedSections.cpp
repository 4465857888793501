#include "xml/RepeatedSections.hpp"

#include <unordered_set>

namespace service::util::config::xml::internal {

namespace {

// Parts that come again are looked at that often. Those that include each other over and over would
// otherwise take time without end.
constexpr std::size_t mostLooks = 1000000;

}  // namespace

// Sections in a section below the root element are a place of their own.
std::shared_ptr<RepeatedSections::Written> RepeatedSections::writtenIn(std::size_t parent) {
  if (open.empty()) return std::make_shared<Written>();
  Open& last = open.back();
  if (parent == 0) return last.root;
  if (last.parent != parent) {
    last.parent = parent;
    last.inner = std::make_shared<Written>();
    for (const NamedSection& section : (*last.part->parents)[parent]) {
      (*last.inner)[section.name].push_back({open.size() - 1, &section});
    }
  }
  return last.inner;
}

void RepeatedSections::find(std::vector<Repeat>& repeats, const Part& part,
                            const Written& written) {
  for (const NamedSection& section : part.parents->front()) {
    const auto found = written.find(section.name);
    if (found == written.end() || found->second.empty()) continue;
    const Own& own = found->second.back();
    repeats.push_back(
        {own.depth, own.section, {part.path, section.position.line, section.position.column}});
  }
}

std::vector<RepeatedSections::Repeat> RepeatedSections::enter(const Part& part,
                                                              std::size_t parent) {
  const std::shared_ptr<Written> written = writtenIn(parent);
  std::vector<Repeat> repeats;
  find(repeats, part, *written);
  for (const NamedSection& section : part.parents->front()) {
    (*written)[section.name].push_back({open.size(), &section});
  }
  open.push_back({&part, written, 0, nullptr});
  return repeats;
}

void RepeatedSections::leave() {
  const Open& last = open.back();
  for (const NamedSection& section : last.part->parents->front()) {
    const auto found = last.root->find(section.name);
    found->second.pop_back();
    if (found->second.empty()) last.root->erase(found);
  }
  open.pop_back();
}

std::vector<RepeatedSections::Repeat> RepeatedSections::again(const Part& part,
                                                              std::size_t parent) {
  const std::shared_ptr<Written> written = writtenIn(parent);
  std::vector<Repeat> repeats;
  if (written->empty()) return repeats;
  std::vector<const Part*> parts = {&part};
  std::unordered_set<const Part*> seen = {&part};
  while (!parts.empty() && ++looks < mostLooks) {
    const Part& next = *parts.back();
    parts.pop_back();
    find(repeats, next, *written);
    for (const Part* include : next.includes) {
      if (seen.insert(include).second) parts.push_back(include);
    }
  }
  return repeats;
}

}  // namespace service::util::config::xml::internal
