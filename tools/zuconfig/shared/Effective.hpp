// What the programs of --for get of a configuration: the values in force, and the defaults of what
// is not set. What none of them reads is not there.
#ifndef TOOLS_ZUCONFIG_SHARED_EFFECTIVE_HPP
#define TOOLS_ZUCONFIG_SHARED_EFFECTIVE_HPP

#include <map>
#include <string>
#include <vector>

#include "shared/Loader.hpp"
#include "shared/Pattern.hpp"
#include "shared/Programs.hpp"
#include "shared/Secrets.hpp"

namespace zuconfig {

class Effective {
 public:
  // What one program makes of a setting, list or section.
  struct Entry {
    const Program* program;
    const Surveyed* surveyed;
  };

  // Loads file. Throws Failure, also when a setting of the options is wrong; warns on standard
  // error when the programs would refuse the configuration.
  Effective(Loader& loader, const ProgramOptions& options, const std::string& file);
  Effective(const Effective&) = delete;
  Effective& operator=(const Effective&) = delete;

  // Secrets are marked.
  const IConfigPtr& get() const { return root; }
  const Programs& getPrograms() const { return programs; }
  const Origins& getOrigins() const { return origins; }
  const std::vector<Problem>& getProblems() const { return judgement.problems; }

  // All that is described and may occur in this configuration, by its path and in the order of the
  // descriptions.
  const std::vector<std::string>& getPaths() const { return paths; }
  const std::vector<Entry>& at(const std::string& path) const;
  // What pattern, a single one, names among them, whether it is set or not; empty when it is none.
  std::string pathOf(const Pattern& pattern) const;
  // Why that is empty.
  std::string whyUnread(const Pattern& pattern) const;

  // "file:line:column" of a value of get(), or what it is from instead.
  std::string placeOf(const IConfigPtr& config, const std::string& name, std::uint32_t index) const;
  // All places of a section in it.
  std::string placesOf(const std::string& path) const;

  // The text of a value that is, or was not, taken.
  std::string shown(const Surveyed& surveyed,
                    const service::util::config::bind::internal::Given& given) const;

 private:
  void add(const Entry& entry);
  IConfigPtr sectionFor(const std::vector<Part>& parts, std::size_t count) const;
  void addValues(const Surveyed& surveyed);
  void warn(const std::string& file) const;

  const FileNames& names;
  const Programs programs;
  Origins origins;
  Secrets secrets;
  IConfigPtr config;
  Judgement judgement;
  IConfigPtr root;
  std::vector<std::string> paths;
  std::map<std::string, std::vector<Entry>> entries;
  std::map<std::pair<const service::util::config::IConfig*, std::string>, const Surveyed*> values;
};

}  // namespace zuconfig

#endif
