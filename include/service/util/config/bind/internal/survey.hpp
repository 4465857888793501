// Descriptions and configurations side by side, for the command: what is described, what of it is
// in force in a configuration, what that overrides, and what is not set. Not installed: these types
// change with the library, which the command is built with.
#ifndef SERVICE_UTIL_CONFIG_BIND_INTERNAL_SURVEY_HPP
#define SERVICE_UTIL_CONFIG_BIND_INTERNAL_SURVEY_HPP

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "service/util/config/bind/Settings.hpp"

namespace service::util::config::bind::internal {

// A text that is written in quotes where it is none that a file can hold.
struct Text : std::string {
  using std::string::string;
  Text(std::string text) : std::string(std::move(text)) {}
};

// A unit in seconds: numerator / denominator, both positive.
struct Ratio {
  std::int64_t numerator = 1;
  std::int64_t denominator = 1;
};

// What is said of a setting, list or section, in the program and in the exported file alike.
struct Said {
  bool isSetting() const { return form == Holder::SETTING || form == Holder::LIST; }
  bool isSeveral() const { return form == Holder::LIST || form == Holder::SECTIONS; }

  Holder::Form form = Holder::SETTING;
  Text text;  // what it is about
  std::vector<Text> formerNames;
  bool isRequired = false;
  bool isForStart = false;  // a change needs a restart
  bool isOptional = false;  // absent, it is nothing; without a default and not required
  bool isOpen = false;      // of a section: what is not described is left alone
  std::uint32_t least = 0;  // of a list or sections: how many
  std::uint32_t most = UINT32_MAX;
  Text sample;    // a value to show
  Text variable;  // of the environment; in the file with its prefix
};

// One of them as the exported file has it.
struct Described : Said {
  std::string path;                // "broker.port"; sections that repeat are without an index
  std::uint32_t defaultCount = 0;  // where it is not that of defaults

  // Of settings and lists.
  std::optional<Kind> type;
  std::uint32_t bits = 0;  // of numbers
  bool isSigned = false;
  bool isFloating = false;  // the number of a duration, too
  Ratio resolution;         // of a duration: what 1 counts
  std::string bareUnit;     // "1ms", or empty when texts need their unit
  std::string lowest;       // of a range, as texts; both or none
  std::string highest;
  std::vector<Text> names;             // of an enumeration
  std::vector<std::uint32_t> numbers;  // its values, as the position of their first name; or none
  std::vector<Text> defaults;          // of a setting at most one; none of a secret

  // Of sections.
  bool hasChecks = false;  // across fields, which only the program can run
  Text key;                // the name of the setting below by which they are told apart
  Text variablePrefix;     // where it begins
  std::string like;        // the path of one around it, whose content it has; otherwise empty
};

// What holds for all of a program's settings.
struct Exported {
  std::uint32_t format = 1;
  bool isOpen = false;
  bool hasChecks = false;
  Text variablePrefix;
  std::vector<Described> settings;  // each section before what is in it
};

// Everything that settings describe.
ZU_EXPORT const Exported& describedBy(const Settings& settings);

// The names on the way to one, its own last.
ZU_EXPORT std::vector<std::string> wayTo(const Described& described);

// The texts of units that one may have, the smallest first; none for other types.
ZU_EXPORT std::vector<std::string> unitsOf(const Described& described);

// The least and the greatest value that an integer, a duration or a size may have, as texts: of its
// range, or of its type.
ZU_EXPORT std::pair<std::string, std::string> boundsOf(const Described& described);

// A value or a section that a configuration has, or another source of settings.
struct Given {
  std::string text;        // of a value
  IConfigPtr part;         // that holds it; null for other sources
  std::string name;        // that it has there
  std::uint32_t index;     // among those of the name there
  xml::Location location;  // with "environment NAME" or "command line" for other sources
};

// What there is of a setting, list or section in one section of a configuration.
struct Surveyed {
  const Described* described;  // null in the program itself
  std::string path;            // as the program counts, "pump[1].speed"; sections one by one
  bool isSetting;
  std::vector<Given> inForce = {};  // nothing: the default holds
  std::vector<Given> lost = {};     // against those in force
  std::string key = {};             // in the program itself, of a keyed section: as print has it
};

struct Survey {
  // In the order of the description, each section before what is in it. Lives as long as the
  // settings. An optional section that is absent is there, what it may hold is not.
  std::vector<Surveyed> entries;
  // The properties that hold a secret, by the section they are in and their name.
  std::set<std::pair<const IConfig*, std::string>> secrets;
};

// Judges config as Settings::check does, for several programs at once: what one of them reads the
// others need not know, and where several of them look, open ones do not count as open. A problem
// that several find is told once. surveys: of each of the programs, in their order.
ZU_EXPORT bool judge(const std::vector<Settings>& programs, const IConfigPtr& config,
                     const xml::Origins& origins, const Overrides& overrides,
                     const Settings::Options& options, std::vector<xml::Problem>& problems,
                     std::vector<Survey>& surveys);

}  // namespace service::util::config::bind::internal

#endif
