// zuconfig explain: all about one value or section: where it stands, how the load came there, what
// stood in its way; or why it is not there.
#include <algorithm>
#include <iostream>

#include "commands/Command.hpp"
#include "cppUtil/fileName/getPath.hpp"
#include "service/util/config/visit.hpp"
#include "shared/Effective.hpp"
#include "shared/description.hpp"
#include "shared/missing.hpp"
#include "shared/problems.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::Visited;
using service::util::config::Visitor;
using service::util::config::bind::internal::Given;
using File = Origins::File;

// Finds where else a name is used.
class NameFinder : public Visitor {
 public:
  explicit NameFinder(const std::string& name) : name(name) {}

  void property(const Visited& visited, const std::string& value) override {
    if (visited.name == name) found.push_back(visited.path + " = " + escaped(value));
  }

  bool enterSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) override {
    return found.size() <= most;
  }

  static constexpr std::size_t most = 10;
  std::vector<std::string> found;

 private:
  const std::string& name;
};

class Explanation {
 public:
  Explanation(Loader& loader, const Origins& origins)
      : loader(loader), names(loader.getNames()), origins(origins), source(loader.getSources()) {}

  void found(const Match& match, const std::vector<Match>& sections) {
    std::cout << colours.bold << match.path << colours.off;
    if (match.section == nullptr) {
      std::cout << " = " << colours.value << escaped(match.value()) << colours.off << "\n";
    } else {
      std::cout << "  (section)\n";
    }
    const Origins::Origin origin = originOf(match);
    heading("set at");
    printPlace(origin);
    heading("read from");
    printFiles(origin.file);
    printSections(sections);
    printIndices(match);
  }

  void missing(const std::string& selector, const Pattern& pattern, const IConfigPtr& config) {
    std::cout << colours.bold << printable(selector) << colours.off << ": " << colours.bad
              << whyMissing(config, pattern, pattern.wanted) << colours.off << "\n";
    printSections(sectionsOnTheWay(config, pattern));
    NameFinder finder(pattern.parts.back().name);
    service::util::config::visit(config, finder);
    if (finder.found.empty()) return;
    heading("values of that name elsewhere");
    for (std::size_t i = 0; i < std::min(finder.found.size(), NameFinder::most); ++i) {
      std::cout << "  " << finder.found[i] << "\n";
    }
    if (finder.found.size() > NameFinder::most) std::cout << "  and more\n";
  }

  // What is described at path, which pattern names, and what programs get of it.
  void inForce(const std::string& path, const Pattern& pattern, const Effective& effective) {
    const auto value = matchSingle(effective.get(), pattern, Wanted::PROPERTIES);
    const auto& entries = effective.at(path);
    const Surveyed& surveyed = *entries.front().surveyed;
    std::cout << colours.bold << path << colours.off;
    if (!surveyed.described->isSetting()) {
      std::cout << (surveyed.inForce.empty() ? "  (no section)\n" : "  (section)\n");
    } else if (value) {
      std::cout << " = " << colours.value << escaped(value->value()) << colours.off << "\n";
    } else {
      std::cout << "  (not set)\n";
    }
    for (const Effective::Entry& entry : entries) printDescription(entry);
    printProblems(path, surveyed, effective.getProblems());
    printGiven(surveyed, pattern.parts.back().index);
    printLost(surveyed, effective);
  }

 private:
  void printDescription(const Effective::Entry& entry) const {
    const Described& described = *entry.surveyed->described;
    heading(printable(entry.program->name) +
            (described.text.empty() ? "" : ": " + printable(described.text)));
    for (const std::string& line : linesOf(described)) std::cout << "  " << line << "\n";
  }

  // Those of a former name are known by their place.
  void printProblems(const std::string& path, const Surveyed& surveyed,
                     const std::vector<Problem>& problems) const {
    bool isFirst = true;
    for (const Problem& problem : problems) {
      const auto isThere = [&](const Given& given) {
        const Location& a = given.location;
        const Location& b = problem.location;
        return a.line > 0 && a.file == b.file && a.line == b.line && a.column == b.column;
      };
      const auto& given = surveyed.inForce;
      const bool isOfValue =
          surveyed.described->isSetting() && std::any_of(given.begin(), given.end(), isThere);
      if (!isOfValue && problem.message.rfind(path + ": ", 0) != 0) continue;
      if (isFirst) heading("wrong with it");
      isFirst = false;
      std::cout << "  " << names.shown(problem.location) << ": " << colours.bad
                << printable(problem.message) << colours.off << "\n";
    }
  }

  // Where a value, or the parts of a section, stand.
  void printGiven(const Surveyed& surveyed, std::uint32_t index) {
    if (surveyed.inForce.empty()) return;
    heading("set at");
    const bool isSetting = surveyed.described->isSetting();
    for (const Given& given : surveyed.inForce) {
      const auto at = static_cast<std::size_t>(&given - surveyed.inForce.data());
      if (isSetting && at != index) continue;
      if (given.part == nullptr) {
        std::cout << "  " << names.shown(given.location) << "\n";
        continue;
      }
      const auto origin = isSetting ? origins.of(given.part, given.name, given.index)
                                    : origins.ofSection(given.part, given.name, given.index);
      printPlace(origin);
      if (!isSetting) continue;
      heading("read from");
      printFiles(origin.file);
    }
  }

  void printLost(const Surveyed& surveyed, const Effective& effective) const {
    std::vector<Row> rows;
    const auto& defaults = surveyed.described->defaults;
    for (const Given& given : surveyed.lost) {
      rows.push_back(
          {"  ", escaped(effective.shown(surveyed, given)), names.shown(given.location)});
    }
    for (std::size_t i = 0; i < defaults.size() && !surveyed.inForce.empty(); ++i) {
      rows.push_back({"  ", escaped(defaults[i]), "default"});
    }
    if (rows.empty()) return;
    heading("goes before");
    print(rows);
  }

  void heading(const std::string& text) const {
    std::cout << "\n" << colours.dim << text << colours.off << "\n";
  }

  Origins::Origin originOf(const Match& match) const {
    return match.section == nullptr ? origins.of(match.parent, match.name, match.index)
                                    : origins.ofSection(match.parent, match.name, match.index);
  }

  void printPlace(const Origins::Origin& origin) {
    std::cout << "  " << names.shown(origin);
    if (origin.line == 0) std::cout << ", in an empty tag: its line is not known";
    std::cout << "\n";
    if (origin.file == nullptr) return;
    const auto tag = source.rangeOf({origin.file->path, origin.line, origin.column});
    const std::string line = source.excerpt(tag.start()).text();
    const std::size_t start = line.find_first_not_of(" \t");
    if (start != line.npos) std::cout << "    " << line.substr(start) << "\n";
  }

  // The include chain, outermost first.
  void printFiles(const File* file) const {
    std::vector<const File*> chain;
    for (; file != nullptr; file = file->includer) chain.push_back(file);
    std::for_each(chain.rbegin(), chain.rend(), [&](const File* entry) { printFile(*entry); });
  }

  void printFile(const File& file) const {
    std::cout << "  " << names.shown(file.path) << "\n";
    if (file.includer != nullptr) {
      std::cout << "    included as " << quoted(file.name) << " at " << names.shown(file.include)
                << "\n";
    }
    if (file.name[0] == '/') {
      std::cout << "    named with its directory, not searched for\n";
    } else {
      std::cout << "    found in " << directoryOf(file) << "\n";
    }
    for (const auto& match : file.shadowed) {
      std::cout << "    shadows " << names.shown(match.file) << "\n";
    }
  }

  // Where file was found: beside one of the files around it, or on the search path.
  std::string directoryOf(const File& file) const {
    for (const File* around = file.includer; around != nullptr; around = around->includer) {
      if (cppUtil::fileName::getPath(around->path) == file.directory) {
        return names.shown(file.directory) + ", beside " + names.shown(around->path);
      }
    }
    for (const PathEntry& entry : loader.searchPath()) {
      if (entry.directory == file.directory) {
        return shownDirectory(entry.directory) + " (" + entry.source + ")";
      }
    }
    return shownDirectory(file.directory);
  }

  // The sections on the way, each among the others of its name.
  void printSections(const std::vector<Match>& sections) const {
    if (sections.empty()) return;
    heading("sections on the way");
    std::vector<Row> rows;
    for (const Match& section : sections) addRows(rows, section);
    print(rows);
  }

  // All indices of a name that repeats.
  void printIndices(const Match& match) const {
    std::vector<Row> rows;
    addRows(rows, match);
    if (rows.size() < 2) return;
    heading(match.section == nullptr ? "all values of that name" : "all sections of that name");
    print(rows);
  }

  static constexpr std::uint32_t mostIndices = 20;

  // A line of a table: a mark, what it is about, and a remark on that.
  struct Row {
    const char* mark;
    std::string text;
    std::string remark;
  };

  // A row for each index of the name of match, the first ones when there are many, and a mark at
  // match itself.
  void addRows(std::vector<Row>& rows, const Match& match) const {
    const bool isSection = match.section != nullptr;
    const std::uint32_t count = isSection ? match.parent->getSectionCount(match.name)
                                          : match.parent->getPropertyCount(match.name);
    const auto add = [&](const Match& entry) {
      const bool isMarked = count > 1 && entry.index == match.index;
      const bool isDefault = count > 1 && entry.index == 0;
      rows.push_back(
          {isMarked ? "* " : "  ",
           isSection ? entry.path : entry.path + " = " + escaped(entry.value()),
           names.shown(originOf(entry)) + (isDefault ? ", taken without an index" : "")});
    };
    if (count == 1) return add(match);
    const std::string path = match.path.substr(0, match.path.rfind('['));
    const std::uint32_t first = std::min(count, mostIndices);
    for (std::uint32_t i = 0; i < first; ++i) {
      add({match.parent, match.name, i, path + "[" + std::to_string(i) + "]",
           isSection ? match.parent->getSection(match.name, i) : nullptr});
    }
    if (match.index >= first) add(match);
    const std::uint32_t left = count - first - (match.index >= first ? 1 : 0);
    if (left > 0) rows.push_back({"  ", "and " + std::to_string(left) + " more", ""});
  }

  void print(const std::vector<Row>& rows) const {
    std::size_t widest = 0;
    for (const Row& row : rows) widest = std::max(widest, width(row.text));
    for (const Row& row : rows) {
      std::cout << row.mark << row.text;
      if (!row.remark.empty()) {
        std::cout << std::string(widest - width(row.text) + 2, ' ') << colours.dim << row.remark
                  << colours.off;
      }
      std::cout << "\n";
    }
  }

  const Loader& loader;
  const FileNames& names;
  const Origins& origins;
  const Colours colours;
  SourceText& source;
};

struct Explain {
  static constexpr const char* name = "explain";
  static constexpr const char* summary = "Tell where a value comes from, or why there is none";

  void define(CLI::App& command) {
    load.define(command);
    programs.define(command);
    programs.defineSet(command);
    defineFile(command, file);
    command.add_option("SELECTOR", selector, "Such as network.interface[1].address")->required();
  }

  ExitCode run() const {
    const Pattern pattern(selector, Wanted::BOTH);
    if (!pattern.isSingle()) {
      throw Failure(USAGE,
                    "explain takes one selector without wildcards; \"zuconfig list\" shows "
                    "what a pattern matches");
    }
    Loader loader(load);
    if (!programs.programs.empty()) return explainInForce(loader, pattern);
    Origins origins;
    const IConfigPtr config = loader.load(file, origins);
    Explanation explanation(loader, origins);
    std::optional<Match> match;
    if (pattern.wanted == Wanted::BOTH) match = matchSingle(config, pattern, Wanted::PROPERTIES);
    if (!match) match = matchSingle(config, pattern, Wanted::SECTIONS);
    if (!match) {
      explanation.missing(selector, pattern, config);
      return NO;
    }
    explanation.found(*match, sectionsOnTheWay(config, pattern));
    return FINE;
  }

 private:
  ExitCode explainInForce(Loader& loader, const Pattern& pattern) const {
    const Effective effective(loader, programs, file);
    const std::string path = effective.pathOf(pattern);
    if (path.empty()) {
      throw Failure(NO, printable(selector) + ": " + effective.whyUnread(pattern));
    }
    Explanation(loader, effective.getOrigins()).inForce(path, pattern, effective);
    const bool isThere = matchSingle(effective.get(), pattern, Wanted::PROPERTIES) ||
                         matchSingle(effective.get(), pattern, Wanted::SECTIONS);
    return isThere ? FINE : NO;
  }

  LoadOptions load;
  ProgramOptions programs;
  std::string file;
  std::string selector;
};

}  // namespace

void addExplain(CLI::App& app, Chosen& chosen) {
  addCommand<Explain>(app, chosen);
}

}  // namespace zuconfig
