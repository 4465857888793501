// What the command line takes for a selector: the library's selectors and somewhat more.
//
//   network.interface[1].address[2]   parts with dots between them, as the library has them
//   hostname                          one part alone: a property at the top
//   network."log-level"               a name in quotes, as in JSON, may hold any character
//   network.interface[*].addr*        every index, and names that match
//   network.                          a section, as list and diff print it
//
// A name with a "*" means every index unless one is given; all other names without an index mean
// index 0.
#ifndef TOOLS_ZUCONFIG_SHARED_PATTERN_HPP
#define TOOLS_ZUCONFIG_SHARED_PATTERN_HPP

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "service/util/config/IConfig.hpp"

namespace zuconfig {

using service::util::config::IConfigPtr;

struct Part {
  std::string name;
  bool isGlob = false;  // "*" in name stands for any characters
  bool isEveryIndex = false;
  bool hasIndex = false;  // one was written
  std::uint32_t index = 0;

  // Whether it means one name with one index.
  bool isSingle() const { return !isGlob && !isEveryIndex; }
  bool matches(const std::string& other) const;
  // The indices below count that are meant, from first up to but without last.
  std::uint32_t first() const { return isEveryIndex ? 0 : index; }
  std::uint32_t last(std::uint32_t count) const;
};

enum class Wanted { PROPERTIES, SECTIONS, BOTH };

struct Pattern {
  // Throws Failure with a caret under the fault. A dot at the end is one when no section is wanted.
  Pattern(const std::string& text, Wanted wanted);

  // Whether it names one place at most.
  bool isSingle() const;

  Wanted wanted;  // SECTIONS when text ends in a dot
  std::vector<Part> parts;
};

// Something that a pattern matches.
struct Match {
  IConfigPtr parent;
  std::string name;
  std::uint32_t index;
  std::string path;    // the way there, as a selector
  IConfigPtr section;  // null for a property

  std::string value() const;
};

// Calls found for everything that the pattern matches, in the order of a visit.
void match(const IConfigPtr& config, const Pattern& pattern, Wanted wanted,
           const std::function<void(const Match&)>& found);

// The only one, for single patterns and one kind.
std::optional<Match> matchSingle(const IConfigPtr& config, const Pattern& pattern, Wanted wanted);

}  // namespace zuconfig

#endif
