// All settings of a snapshot as texts, with their places: what changes are found from, and told by.
#ifndef SRC_LIVE_SETTINGS_HPP
#define SRC_LIVE_SETTINGS_HPP

#include <string>
#include <vector>

#include "bind/Description.hpp"
#include "service/util/config/bind/internal/survey.hpp"
#include "service/util/config/live/Engine.hpp"

namespace service::util::config::live {

struct Setting {
  std::string key;      // the same in another snapshot for the same setting
  std::string path;     // for people
  std::string value;    // the same for equal values, however they are written
  std::string text;     // as it is written, or three asterisks
  xml::Location place;  // without a file for a default
  std::size_t field;    // the row of the outermost description that it belongs to
};

using Settings = std::vector<Setting>;

// Of a struct, and what was found when it was read.
Settings settingsOf(const bind::internal::Description& description, const void* object,
                    const bind::internal::Survey& survey);

// Of a configuration, whose properties are its settings.
Settings settingsOf(const IConfigPtr& config, const xml::Origins& origins);

// What an element of keyed sections is known by.
std::string keyOf(const bind::internal::Row& row, const void* element);

// A setting before and after; one of the two may be null.
struct Difference {
  const Setting* before;
  const Setting* after;

  const Setting& any() const { return after != nullptr ? *after : *before; }
  Change change(bool needsRestart) const;
};

// In the order of after, then what is gone. The settings are kept by reference.
std::vector<Difference> differences(const Settings& before, const Settings& after);

// Gives what needs a restart in next the value that it has in now.
void keepForStart(const bind::internal::Description& description, const void* now, void* next);

}  // namespace service::util::config::live

#endif
