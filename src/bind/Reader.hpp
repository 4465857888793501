// Reads a configuration as a description says: judges every setting and, when the struct of the
// program is at hand, fills it; struct by struct from the outermost on.
//
// A struct is made up of parts: all sections of its name, which each file of a load may have. A
// setting is looked for in all parts.
#ifndef SRC_BIND_READER_HPP
#define SRC_BIND_READER_HPP

#include <string>
#include <vector>

#include "bind/Description.hpp"
#include "bind/Findings.hpp"
#include "bind/GivenTexts.hpp"
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
  Survey* survey = nullptr;      // takes what is in force; for what a Store has
  GivenTexts* given = nullptr;   // to fill as well; null when nobody asks
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

  // A struct that is being read. What is by row has one entry for each row of the description.
  struct Level {
    const Description& description;
    void* object;
    std::string path;
    std::vector<IConfigPtr> parts;  // in the order of the load
    Place place;                    // where it is told what is missing
    std::string variablePrefix;
    Assignments assignments;
    bool isOpen;
    const Row* key;                  // the setting that it is known by, if there is one
    GivenTexts* given = nullptr;     // to fill, if somebody asks
    std::string describedPath = {};  // path without former names; for a survey only
    std::size_t depth = 0;           // how many sections lead to it

    std::vector<config::internal::Contents> contents = {};  // of the parts
    std::vector<Occurrence> occurrences = {};               // by row, then as loaded
    std::vector<std::size_t> ends = {};                     // of each row's in that
    std::vector<Assignments> assigned = {};                 // by row, or empty
    std::vector<Place> places = {};                         // by row, or empty: for checks

    // What the parts hold for the row.
    Occurrences found(std::size_t at) const {
      const std::size_t start = at == 0 ? 0 : ends[at - 1];
      return {occurrences.data() + start, ends[at] - start};
    }
  };

  // The sections that make up each element.
  using Elements = std::vector<std::vector<Occurrence>>;

  // The text of a setting that is in force.
  struct Source {
    const std::string& text() const { return occurrence != nullptr ? *occurrence->value : given; }

    const Occurrence* occurrence;  // null when it is from no file
    std::string given = {};        // the text then
    std::string giver = {};        // and where it is from
  };

  void readLevel(Level& level);
  void readRow(Level& level, std::size_t at);
  void runChecks(const Level& level);

  // Finds what the parts hold, by row, and tells what has no row.
  void search(Level& level);
  template <class Map, class Found>
  void match(const std::vector<Description::Name>& known, const IConfigPtr& part, const Map& map,
             const Found& found);
  void tellUnknown(const Level& level, const Occurrence& unknown);

  void readSetting(Level& level, std::size_t at);
  void readList(Level& level, std::size_t at);
  std::vector<Source> assignedSources(const Level& level, std::size_t at) const;
  std::vector<Source> environmentSource(const Level& level, std::size_t at) const;
  std::vector<Source> sourcesElsewhere(const Level& level, std::size_t at) const;
  void store(Level& level, std::size_t at, const Source& source, void* value);
  Place placeOf(const Source& source) const;

  void readSection(Level& level, std::size_t at);
  void readSections(Level& level, std::size_t at);
  void readElement(const Level& level, std::size_t at, const Elements& elements, std::size_t index,
                   void* object);
  Elements elementsOf(const Level& level, std::size_t at);
  std::string keyOf(const Row& row, const Occurrence& section) const;
  Level below(const Level& level, const Row& row, Occurrences sections, std::string path) const;
  static GivenTexts* givenBelow(const Level& level, const Row& row);

  // Distributes the overrides of level to its rows, and tells those that fit none.
  void assign(Level& level);
  void tellUnfit(const Assignment& assignment, const std::string& reason);
  bool hasVariable(const Description& description, const std::string& prefix) const;
  void tellUnknownVariables(const Level& level);

  void record(const Level& level, std::size_t at, const std::vector<Source>& inForce) const;
  void record(const Level& level, std::size_t at, const std::string& path,
              Occurrences sections) const;
  Given given(const Source& source) const;

  void tellRenamed(const Level& level, std::size_t at);
  void tellRepeated(const Level& level, std::size_t at);
  bool tellMissing(const Level& level, std::size_t at);
  void tellCount(const Level& level, std::size_t at, std::size_t count, const Place& place);

  const Request& request;
  std::vector<std::pair<Path, std::string>> overrides;
  const Precedence& precedence;
  Findings& findings;
};

}  // namespace service::util::config::bind::internal

#endif
