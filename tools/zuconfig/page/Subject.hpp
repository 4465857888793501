// A configuration as a page shows it: what loads, what is wrong, which files take part, and what
// the programs of --for say of all this.
#ifndef TOOLS_ZUCONFIG_PAGE_SUBJECT_HPP
#define TOOLS_ZUCONFIG_PAGE_SUBJECT_HPP

#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "service/util/config/visit.hpp"
#include "shared/IncludeGraph.hpp"
#include "shared/Loader.hpp"
#include "shared/Secrets.hpp"
#include "shared/problems.hpp"

namespace zuconfig {

class Subject {
 public:
  // Loads and checks file. Throws Failure when it is wrongly used, not when it does not load.
  Subject(Loader& loader, const Programs& programs, Secrets& secrets, const std::string& file,
          const char* suffix = "");

  bool hasErrors() const;

  // Where a value or section stands.
  Origins::Origin originOf(const service::util::config::Visited& visited, bool isSection) const;

  // The numbers of the findings about what stands at origin.
  const std::vector<std::size_t>& findingsAt(const Origins::Origin& origin) const;

  // A value as it may be shown.
  std::string shown(const IConfigPtr& section, const std::string& property,
                    const std::string& value) const {
    return secrets.shown(section, property, value);
  }

  // What programs say of a value or a list; null when they do not know it.
  const Described* describedAt(const IConfigPtr& section, const std::string& property) const;

  // The number of a file of this path in files.
  std::size_t numberOf(const std::string& path) const { return numbers.at(path); }

  const std::string name;    // for the eye
  const std::string suffix;  // of ids, where a page has two subjects
  Loader& loader;
  IConfigPtr config;  // null when it does not load
  Origins origins;
  IncludeGraph graph;
  std::vector<ListedFile> files;
  std::vector<Finding> findings;
  std::vector<std::string> elements;   // the ids of what the findings are about; may be empty
  std::vector<const Surveyed*> unset;  // what programs know and the configuration has not
  std::size_t values = 0;
  std::size_t sections = 0;

 private:
  using Place = std::tuple<std::string, int, int>;
  using Property = std::pair<const service::util::config::IConfig*, std::string>;

  std::vector<Problem> findProblems(const std::string& resolved, const Programs& programs);
  void judge(const Programs& programs);
  void add(const Problem& problem, Finding finding);

  Secrets& secrets;
  Judgement judgement;
  std::map<Property, const Described*> described;
  std::unordered_map<std::string, std::size_t> numbers;
  std::map<Place, std::vector<std::size_t>> places;  // of findings
};

}  // namespace zuconfig

#endif
