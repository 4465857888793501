// Reads a configuration as a description says: judges every setting and, when the struct of the
// program is at hand, fills it; struct by struct from the outermost on.
//
// A struct is made up of parts: all sections of its name, which each file of a load may have. A
// setting is looked for in all parts.
#ifndef SRC_BIND_READER_HPP
#define SRC_BIND_READER_HPP

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "bind/Description.hpp"
#include "bind/Findings.hpp"
#include "bind/Path.hpp"
#include "bind/Precedence.hpp"
#include "bind/Together.hpp"
#include "bind/elements.hpp"
#include "model/Contents.hpp"
#include "service/util/config/IConfig.hpp"
#include "service/util/config/bind/Overrides.hpp"
#include "service/util/config/bind/internal/survey.hpp"

namespace service::util::config::bind::internal {

// The value of the member that row fills in object: of an optional its content, made if need be.
// Null when object is.
void* valueIn(const Row& row, void* object);

// What to read, and how.
struct Request {
  const Description& description;
  void* object;  // to fill; null to judge only
  const IConfigPtr& config;
  const xml::Origins* origins;  // null when not known
  const Overrides& overrides;
  xml::Severity unknown = xml::Severity::WARNING;  // of what the description does not name
  bool takesEnvironment = true;
  Together* together = nullptr;  // takes what the description does not name, instead of findings
  Survey* survey = nullptr;      // takes what is in force
};

class Reader {
 public:
  Reader(const Request& request, const Precedence& precedence, Findings& findings);

  // Adds what is wrong to findings.
  void read();

 private:
  // An override, and how many parts of its path lead to the struct that is being read.
  struct Assignment {
    const std::pair<Path, std::string>* override;
    std::size_t depth;
  };
  using Assignments = std::vector<Assignment>;

  // What the parts of a struct hold.
  struct Contained {
    std::vector<config::internal::Contents> contents;  // of each
    std::vector<Occurrence> occurrences;               // by rank, then as loaded
    std::vector<std::size_t> ends;                     // of each rank's in that
  };

  // A struct that is being read. What is by row has one entry for each row of the description.
  struct Level {
    const Description& description;
    Occurrences parts;  // the sections that it is made up of, in the order of the load
    std::string variablePrefix;
    bool isOpen;
    void* object = nullptr;
    const Level* around = nullptr;  // null for the outermost; otherwise:
    const Row* row = nullptr;       // of that
    const std::string* name = nullptr;
    std::uint32_t index = 0;
    std::uint32_t count = 1;
    std::size_t depth = 0;  // how many sections lead to it

    Assignments assignments = {};
    const Row* key = nullptr;  // the setting that it is known by, if there is one

    Contained* held = nullptr;
    std::vector<Assignments> assigned = {};  // by row, or empty
    std::vector<Place> places = {};          // by row, or empty: for checks

    // What the parts hold for the row.
    Occurrences found(std::size_t at) const {
      const std::size_t rank = description.ranks[at];
      const std::size_t start = rank == 0 ? 0 : held->ends[rank - 1];
      return {held->occurrences.data() + start, held->ends[rank] - start};
    }

    // Put together when something is told: mostly nothing is.
    std::string path() const {
      return around == nullptr ? "" : extended(around->path(), *name, index, count);
    }
    std::string describedPath() const {  // without former names
      return around == nullptr ? "" : extended(around->describedPath(), row->name, index, count);
    }
  };

  // The sections that make up each element.
  using Elements = std::vector<Occurrences>;
  using Groups = std::vector<std::vector<Occurrence>>;  // where they are no neighbours

  void readLevel(Level& level);
  void readRow(Level& level, std::size_t at);
  void runChecks(const Level& level);

  // Finds what the parts hold, by row, and tells what has no row.
  void search(Level& level);
  template <class Map>
  void match(Level& level, const std::vector<Description::Name>& known, const IConfigPtr& part,
             const Map& map);
  void tellUnknown(const Level& level, const Occurrence& unknown);

  void readSetting(Level& level, std::size_t at, Occurrences found);
  void readList(Level& level, std::size_t at, Occurrences found);
  // What the environment says, at most one value, then the command line: the last one counts.
  std::vector<Occurrence> elsewhere(const Level& level, std::size_t at) {
    const bool mayBe = !level.assigned.empty() || !level.variablePrefix.empty() ||
                       !level.description.rows[at]->variable.empty();
    return mayBe ? findElsewhere(level, at) : std::vector<Occurrence>();
  }
  std::vector<Occurrence> findElsewhere(const Level& level, std::size_t at);
  void store(Level& level, std::size_t at, const Occurrence& source, void* value);
  void tellFault(const Level& level, const Row& row, const Occurrence& source, const Fault& fault);
  Place placeOf(const Level& level) const;

  void readSection(Level& level, std::size_t at, Occurrences found);
  void readSections(Level& level, std::size_t at, Occurrences found);
  void readElement(const Level& level, std::size_t at, const Elements& elements, std::size_t index,
                   void* object);
  Groups groupsOf(const Level& level, const Row& row, Occurrences found);
  std::string keyOf(const Row& row, const Occurrence& section) const;
  Level below(const Level& level, const Row& row, Occurrences sections) const;

  // Distributes the overrides of level to its rows, and tells those that fit none.
  void assign(Level& level);
  void tellUnfit(const Assignment& assignment, const std::string& reason);
  bool hasVariable(const Description& description, const std::string& prefix) const;
  void tellUnknownVariables(const Level& level);

  void record(const Level& level, std::size_t at, Occurrences inForce);
  void record(const Level& below, Occurrences sections) const;
  Given given(const Occurrence& source) const;

  void tellRenamed(const Level& level, const Row& row, const Occurrence& former, Occurrences found);
  void tellRepeated(const Level& level, Occurrences found);
  bool tellMissing(const Level& level, const Row& row);
  bool tellCount(const Level& level, const Row& row, std::size_t count, const Occurrence* last);

  const Request& request;
  const Occurrence top;  // the configuration
  std::vector<std::pair<Path, std::string>> overrides;
  std::map<std::string, std::string> variables;  // of the environment that were read, by source
  std::deque<Contained> contained;               // by depth: structs beside each other use the same
  const Precedence& precedence;
  Findings& findings;
};

}  // namespace service::util::config::bind::internal

#endif
