// The settings of a program as a tree, for what is made from them.
#ifndef TOOLS_ZUCONFIG_SCHEMA_OUTLINE_HPP
#define TOOLS_ZUCONFIG_SCHEMA_OUTLINE_HPP

#include <map>
#include <string>
#include <vector>

#include "service/util/config/bind/internal/survey.hpp"

namespace zuconfig {

using service::util::config::bind::internal::Described;

// A setting, a list or sections, or the configuration itself.
struct Entry {
  const Described* described = nullptr;  // null for the configuration
  std::string name;                      // its own
  bool isOpen = false;
  std::vector<const Entry*> entries = {};  // in the order of the description
};

class Outline {
 public:
  // settings must live as long.
  explicit Outline(const service::util::config::bind::Settings& settings);

  Outline(const Outline&) = delete;
  Outline& operator=(const Outline&) = delete;

  // The section at path, as list prints it; of an empty path the configuration. Throws Failure when
  // there is none.
  const Entry& section(const std::string& path) const;

  // That whose entries are in a section: itself, unless it is described as one around it.
  const Entry& contentOf(const Entry& section) const;

 private:
  std::map<std::string, Entry> byPath;
};

}  // namespace zuconfig

#endif
