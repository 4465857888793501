// What counts when a setting is there several times: a file overrides what it includes, and of
// files equally far from the top-level one the later counts. Without origins all is one file.
#ifndef SRC_BIND_PRECEDENCE_HPP
#define SRC_BIND_PRECEDENCE_HPP

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "service/util/config/IConfig.hpp"
#include "service/util/config/xml/Origins.hpp"

namespace service::util::config::bind::internal {

// A place in a file, or another source of settings.
struct Place {
  xml::Location location;
  const xml::Observer::File* file = nullptr;  // null for other sources and when nothing is known
};

// A value or a section in a configuration, or a value from another source. Lives no longer than
// what it points to.
struct Occurrence {
  Occurrence(const IConfigPtr& part, const std::string& name,
             const std::vector<std::string>& values, std::uint32_t index)
      : part(&part),
        name(&name),
        value(&values[index]),
        index(index),
        count(static_cast<std::uint32_t>(values.size())) {}
  Occurrence(const IConfigPtr& part, const std::string& name,
             const std::vector<IConfigPtr>& sections, std::uint32_t index)
      : part(&part),
        name(&name),
        section(&sections[index]),
        index(index),
        count(static_cast<std::uint32_t>(sections.size())) {}
  Occurrence(const std::string& source, const std::string& value) : name(&source), value(&value) {}
  explicit Occurrence(const IConfigPtr& configuration) : section(&configuration) {}

  const IConfigPtr* part = nullptr;     // that holds it
  const std::string* name = nullptr;    // there; without a part the source, "environment NAME"
  const std::string* value = nullptr;   // null for a section
  const IConfigPtr* section = nullptr;  // null for a value
  std::uint32_t index = 0;
  std::uint32_t count = 1;  // of that name in part
  std::uint32_t rank = 0;   // of its row in a description
  bool isFormer = false;    // by a name that it had before
};

// Appends what part, of whose contents map is one half, has under name.
template <class Map>
void findIn(const IConfigPtr& part, const Map& map, const std::string& name,
            std::vector<Occurrence>& found) {
  const auto entry = map.find(name);
  if (entry == map.end()) return;
  for (std::uint32_t index = 0; index < entry->second.size(); ++index) {
    found.emplace_back(part, entry->first, entry->second, index);
  }
}

// Some of them, in the order of the load. A view.
class Occurrences {
 public:
  Occurrences() = default;
  Occurrences(const Occurrence* first, std::size_t count) : first(first), count(count) {}
  Occurrences(const std::vector<Occurrence>& all) : Occurrences(all.data(), all.size()) {}

  const Occurrence* begin() const { return first; }
  const Occurrence* end() const { return first + count; }
  const Occurrence& front() const { return *first; }
  std::size_t size() const { return count; }
  bool empty() const { return count == 0; }

 private:
  const Occurrence* first = nullptr;
  std::size_t count = 0;
};

class Precedence {
 public:
  explicit Precedence(const xml::Origins* origins) : origins(origins) {}

  Place placeOf(const Occurrence& occurrence) const;
  bool isInOneFile(const Occurrence& a, const Occurrence& b) const;

  // Neither takes an empty list. The one that counts; in a file the first.
  const Occurrence& nearest(const Occurrences& occurrences) const {
    return occurrences.size() == 1 ? occurrences.front() : nearestOf(occurrences);
  }
  // All in the nearest files that have any.
  std::vector<const Occurrence*> allNearest(const Occurrences& occurrences) const;

  // Each that is not the first in its file, with that first one.
  std::vector<std::pair<const Occurrence*, const Occurrence*>> repeated(
      const Occurrences& occurrences) const;

  // The place of file in the order of the load; 0 when it is not known.
  std::size_t order(const xml::Observer::File* file) const;

 private:
  const Occurrence& nearestOf(const Occurrences& occurrences) const;
  const xml::Observer::File* fileOf(const Occurrence& occurrence) const;

  const xml::Origins* origins;
  mutable std::unordered_map<const xml::Observer::File*, std::size_t> orders;  // on first use
};

}  // namespace service::util::config::bind::internal

#endif
