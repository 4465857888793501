// What must not be shown of a configuration, by the programs of --for: settings that are secrets,
// and those which nothing reads whose names resemble that of one.
#ifndef TOOLS_ZUCONFIG_SHARED_SECRETS_HPP
#define TOOLS_ZUCONFIG_SHARED_SECRETS_HPP

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "report/SourceText.hpp"
#include "shared/Loader.hpp"
#include "shared/Programs.hpp"

namespace zuconfig {

using service::util::config::report::SourceText;

// What stands for a secret.
constexpr const char* secretMark = "(secret)";

class Secrets {
 public:
  // source, which is of no use without this from now on, shows no line until there is a
  // configuration: any could hold a secret.
  Secrets(const Programs& programs, SourceText& source);
  Secrets(const Secrets&) = delete;
  Secrets& operator=(const Secrets&) = delete;

  // Learns those of config. Lines with one of them are not shown.
  void add(const Judgement& judgement, const IConfigPtr& config, const Origins& origins);

  // No line is shown from now on: one configuration cannot be loaded.
  void close() { isClosed = true; }

  // Whether a name is that of one, or so near that one may be meant.
  bool resembles(const std::string& name) const;

  // Whether a property of config is one.
  bool hides(const IConfigPtr& config, const std::string& name) const {
    return hidden.count({config.get(), name}) > 0;
  }
  std::string shown(const IConfigPtr& config, const std::string& name,
                    const std::string& value) const {
    return hides(config, name) ? secretMark : value;
  }

  // config with the mark in their place.
  IConfigPtr masked(const IConfigPtr& config) const;

 private:
  using Property = std::pair<const service::util::config::IConfig*, std::string>;
  using Lines = std::vector<std::pair<int, int>>;  // first and last

  void findIn(const IConfigPtr& config, const Judgement& judgement);
  bool isQuotable(const service::util::config::xml::Location& location) const;

  const std::vector<std::string>& names;
  std::set<Property> hidden;
  std::map<std::string, Lines> lines;  // with one of them, by file
  bool isEmpty = true;                 // nothing was added
  bool isClosed = false;
};

// Loads file, with the mark in place of what is secret to programs.
IConfigPtr loadMasked(Loader& loader, const ProgramOptions& programs, const std::string& file);

}  // namespace zuconfig

#endif
