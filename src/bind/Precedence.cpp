#include "bind/Precedence.hpp"

namespace service::util::config::bind::internal {

namespace {

using File = xml::Observer::File;

xml::Origins::Origin originOf(const xml::Origins* origins, const Occurrence& occurrence) {
  if (origins == nullptr) return {};
  return occurrence.value != nullptr
             ? origins->of(*occurrence.part, *occurrence.name, occurrence.index)
             : origins->ofSection(*occurrence.part, *occurrence.name, occurrence.index);
}

// How many includes lead to file.
int distanceOf(const File* file) {
  int distance = 0;
  for (; file != nullptr && file->includer != nullptr; file = file->includer) ++distance;
  return distance;
}

}  // namespace

const File* Precedence::fileOf(const Occurrence& occurrence) const {
  return originOf(origins, occurrence).file;
}

Place Precedence::placeOf(const Occurrence& occurrence) const {
  if (occurrence.part == nullptr) return {{*occurrence.name}};
  const auto origin = originOf(origins, occurrence);
  if (origin.file == nullptr) return {};
  return {{origin.file->path, origin.line, origin.column}, origin.file};
}

bool Precedence::isInOneFile(const Occurrence& a, const Occurrence& b) const {
  return fileOf(a) == fileOf(b);
}

const Occurrence& Precedence::nearestOf(const Occurrences& occurrences) const {
  const Occurrence* best = &occurrences.front();
  const auto rank = [&](const Occurrence& occurrence) {
    const File* file = fileOf(occurrence);
    return std::make_pair(-distanceOf(file), order(file));
  };
  for (const Occurrence& occurrence : occurrences) {
    if (rank(*best) < rank(occurrence)) best = &occurrence;
  }
  return *best;
}

std::vector<const Occurrence*> Precedence::allNearest(const Occurrences& occurrences) const {
  if (occurrences.size() == 1) return {&occurrences.front()};
  const int least = distanceOf(fileOf(nearest(occurrences)));
  std::vector<const Occurrence*> all;
  for (const Occurrence& occurrence : occurrences) {
    if (distanceOf(fileOf(occurrence)) == least) all.push_back(&occurrence);
  }
  return all;
}

std::vector<std::pair<const Occurrence*, const Occurrence*>> Precedence::repeated(
    const Occurrences& occurrences) const {
  std::vector<std::pair<const Occurrence*, const Occurrence*>> pairs;
  if (occurrences.size() < 2) return pairs;
  std::unordered_map<const File*, const Occurrence*> first;
  for (const Occurrence& occurrence : occurrences) {
    const auto [known, isNew] = first.emplace(fileOf(occurrence), &occurrence);
    if (!isNew) pairs.emplace_back(&occurrence, known->second);
  }
  return pairs;
}

std::size_t Precedence::order(const File* file) const {
  if (origins == nullptr || file == nullptr) return 0;
  if (orders.empty()) {
    for (const File& known : origins->getFiles()) orders.emplace(&known, orders.size());
  }
  const auto found = orders.find(file);
  return found == orders.end() ? 0 : found->second;
}

}  // namespace service::util::config::bind::internal
