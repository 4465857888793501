// The check of a file set: follows includes as a load does, on a list of open files instead of the
// stack. What a file includes depends on its document and on the order in which directories are
// searched, so each document is read once, and followed once in each order.

#include "xml/fileSetCheck.hpp"

#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "cppUtil/fileName/getPath.hpp"
#include "load/Load.hpp"
#include "load/SearchedFirst.hpp"
#include "load/describeFile.hpp"
#include "xml/RepeatedSections.hpp"
#include "xml/documentCheck.hpp"
#include "xml/validation.hpp"

namespace service::util::config::xml {

namespace {

using internal::DocumentFindings;
using internal::Include;
using internal::NamedSection;
using internal::Part;
using internal::RepeatedSections;
using internal::SearchedFirst;
using locator::ConfigLocator;
using locator::Identity;

// How much of a list a message shows.
constexpr std::size_t mostListed = 8;

// The longest chain of includes that a problem has, and the deepest that loads on any stack.
constexpr std::size_t longestChain = 100;

// The texts 0 to count - 1, or the first and the last ones when there are many.
template <class TextAt>
std::string listOf(std::size_t count, const TextAt& textAt, const std::string& separator) {
  const std::size_t cut = count > mostListed ? count - mostListed : 0;
  std::string list;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) list += separator;
    if (cut > 0 && i == mostListed / 2) {
      list += "(" + std::to_string(cut) + " more)" + separator;
      i += cut;
    }
    list += textAt(i);
  }
  return list;
}

// A file whose includes are being followed.
struct OpenFile {
  Observer::File file;
  std::pair<Identity, Identity> identity;  // of the file and its directory
  std::size_t state = 0;                   // of the order of the directories
  std::optional<SearchedFirst> directory;
  Part* part = nullptr;  // null for one that was followed before
  const DocumentFindings* findings = nullptr;
  std::size_t next = 0;      // the include to follow
  std::size_t readings = 1;  // of this file and what it includes, up to one too many
};

class FileSetCheck {
 public:
  FileSetCheck(const SchemeList& schemes, bool validate, Observer& observer)
      : schemes(schemes), observer(observer) {
    if (validate)
      internal::loadGrammar(grammars.emplace(xercesc::XMLPlatformUtils::fgMemoryManager));
  }

  std::vector<Problem> run(const std::string& name) {
    const std::string path = name.empty() ? "" : ConfigLocator::find(name);
    observer.fileLookedUp(name, path);
    if (path.empty()) {
      tell(Severity::ERROR, "not-found",
           name.empty() ? "the name of the file is empty" : notFoundMessage(name), {name}, name);
      return std::move(problems);
    }
    enter(internal::describeFile(order, name, path, {}, nullptr), 0);
    while (!open.empty()) {
      OpenFile& file = open.back();
      // Each of the parts is read at least once by a load.
      const bool isBounded = parts.size() <= internal::maximumFiles;
      if (isBounded && file.part != nullptr && file.next < file.findings->includes.size()) {
        follow(file.findings->includes[file.next++]);
      } else {
        leave();
      }
    }
    return std::move(problems);
  }

 private:
  void follow(const Include& include) {
    const Location location = {open.back().file.path, include.position.line,
                               include.position.column};
    const std::string path = ConfigLocator::find(include.text);
    observer.fileLookedUp(include.text, path);
    if (path.empty()) {
      tell(Severity::ERROR, "missing-include", notFoundMessage(include.text), location,
           include.text);
      return;
    }
    enter(internal::describeFile(order, include.text, path, location, &open.back().file),
          include.parent);
  }

  // parent: where in the file that is open the include stands.
  void enter(Observer::File file, std::size_t parent) {
    const std::string directory = cppUtil::fileName::getPath(file.path);
    order.push(directory);
    const auto identity =
        std::make_pair(locator::identityOf(file.path), locator::identityOf(directory));
    std::vector<std::size_t>& same = openNumbers[identity];
    if (!same.empty() && isCircle(file, directory, same.back())) {
      order.pop();
      return closeCircle(file, same.back());
    }
    tellShadowed(file);
    const bool isBeside =
        !open.empty() && cppUtil::fileName::getPath(open.back().file.path) == directory;
    OpenFile& entered = open.emplace_back();
    entered.file = std::move(file);
    entered.identity = identity;
    entered.state = order.getState();
    same.push_back(open.size() - 1);
    observer.fileEntered(entered.file);
    if (!isBeside) entered.directory.emplace(directory);
    if (open.size() > longestChain) tellDepth();
    const auto [part, isNew] = parts.try_emplace(std::make_pair(identity, entered.state));
    if (open.size() > 1 && parent == 0) {
      open[open.size() - 2].part->includes.push_back(&part->second);
    }
    if (!isNew) {
      entered.readings = part->second.readings;
      return tellRepeated(repeated.again(part->second, parent));
    }
    entered.part = &part->second;
    entered.findings = &findingsIn(entered.file.path, identity);
    part->second.path = entered.file.path;
    part->second.parents = &entered.findings->parents;
    tellRepeated(repeated.enter(part->second, parent));
  }

  void leave() {
    OpenFile& file = open.back();
    if (file.part != nullptr) {
      repeated.leave();
      file.part->readings = file.readings;
    }
    countReadings(file.readings);
    if (file.directory) file.directory->leave();
    order.pop();
    observer.fileLeft(file.file);
    openNumbers[file.identity].pop_back();
    open.pop_back();
  }

  // Of the file that leaves, for the one that includes it.
  void countReadings(std::size_t readings) {
    if (open.size() > 1) {
      std::size_t& sum = open[open.size() - 2].readings;
      sum = std::min(sum + readings, internal::maximumFiles + 1);
    } else if (readings > internal::maximumFiles || parts.size() > internal::maximumFiles) {
      tell(Severity::ERROR, "unloadable",
           "too many files: a load reads each as often as it is included, and " +
               std::to_string(internal::maximumFiles) + " times at most",
           {open.back().file.path});
    }
  }

  // What a document refers to is named relative to its directory.
  const DocumentFindings& findingsIn(const std::string& path,
                                     const std::pair<Identity, Identity>& identity) {
    const auto [found, isNew] = documents.try_emplace(identity);
    if (!isNew) return found->second;
    found->second = internal::checkDocument(path, schemes, grammars ? &*grammars : nullptr);
    for (Problem& problem : found->second.problems) {
      tell(problem.severity, problem.rule, problem.message, problem.location, problem.subject);
    }
    found->second.problems = {};
    return found->second;
  }

  // Whether the way from an open file, whose number is first, to the same file again is one that a
  // load goes over and over: in the same order of directories, or finding the same in the new one.
  bool isCircle(const Observer::File& file, const std::string& directory, std::size_t first) const {
    if (open[first].state == order.getState()) return true;
    if (open.size() - first > longestChain) return false;  // it will be in the next round
    const auto isSame = [](const std::string& path, const OpenFile& entry) {
      return !path.empty() && locator::identityOf(path) == entry.identity.first &&
             locator::identityOf(cppUtil::fileName::getPath(path)) == entry.identity.second;
    };
    std::deque<SearchedFirst> searched;
    searched.emplace_back(directory);
    for (std::size_t i = first + 1; i < open.size(); ++i) {
      const std::string path = ConfigLocator::find(open[i].file.name);
      if (!isSame(path, open[i])) return false;
      searched.emplace_back(cppUtil::fileName::getPath(path));
    }
    return isSame(ConfigLocator::find(file.name), open[first]);
  }

  // first: the number of the open file that is the same.
  void closeCircle(const Observer::File& file, std::size_t first) {
    const auto pathAt = [&](std::size_t i) {
      return first + i < open.size() ? open[first + i].file.path : file.path;
    };
    tell(Severity::ERROR, "include-cycle",
         "this include closes a circle, which a load follows until it fails: " +
             listOf(open.size() - first + 1, pathAt, " -> "),
         file.include);
    observer.fileEntered(file);
    observer.fileLeft(file);
  }

  void tellShadowed(const Observer::File& file) {
    if (file.shadowed.empty()) return;
    const auto hiddenAt = [&](std::size_t i) { return file.shadowed[i].file; };
    tell(Severity::WARNING, "shadowed-file",
         file.path + " hides " + listOf(file.shadowed.size(), hiddenAt, ", "),
         file.includer == nullptr ? Location{file.path} : file.include);
  }

  void tellDepth() {
    if (isDepthTold) return;
    isDepthTold = true;
    const Location include = open.back().file.include;
    tell(Severity::WARNING, "deep-includes",
         "this file is included through " + std::to_string(longestChain) +
             " others: a load needs stack for each, and fails where that ends",
         include, "", open.size() - 1);
  }

  void tellRepeated(const std::vector<RepeatedSections::Repeat>& repeats) {
    for (const auto& [depth, own, included] : repeats) {
      tell(Severity::WARNING, "repeated-section",
           "this is not the first section \"" + own->name + "\" here: that of " + included.file +
               ", line " + std::to_string(included.line) +
               ", is included, and a selector without an index takes it",
           {open[depth].file.path, own->position.line, own->position.column}, own->name, depth + 1);
    }
  }

  std::string notFoundMessage(const std::string& name) const {
    if (name.front() == '/') return "there is no readable file \"" + name + "\"";
    std::string message = "no readable file \"" + name + "\" " + searchedPlaces();
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\n'; };
    if (isSpace(name.front()) || isSpace(name.back())) {
      message += "; white space around the name is part of it";
    }
    return message;
  }

  std::string searchedPlaces() const {
    if (!ConfigLocator::tellsEntries())
      return "on the search path, which the platform does not tell";
    std::size_t count = 0;
    const std::vector<std::string> directories = order.list(mostListed, count);
    const std::size_t cut = count - directories.size();
    const auto directoryAt = [&](std::size_t i) { return directories[i]; };
    return "in " + listOf(directories.size(), directoryAt, ", ") +
           (cut > 0 ? ", and " + std::to_string(cut) + " more" : "");
  }

  // Once, however often the file is read.
  void tell(Severity severity, const std::string& rule, const std::string& message,
            const Location& location, const std::string& subject = "") {
    tell(severity, rule, message, location, subject, open.size());
  }

  // depth: how many of the open files lead to location.
  void tell(Severity severity, const std::string& rule, const std::string& message,
            const Location& location, const std::string& subject, std::size_t depth) {
    // What these say besides differs from one order of directories to the next.
    const bool isByName = rule == "missing-include" || rule == "repeated-section";
    const std::string& key = isByName ? subject : message;
    if (!told.emplace(location.file, location.line, location.column, rule, key).second) return;
    std::vector<Location> includes;
    for (std::size_t i = depth; i > 1; --i) {
      if (includes.size() == longestChain - 1) i = 2;  // the outermost one is the last
      includes.push_back(open[i - 1].file.include);
    }
    problems.push_back({severity, rule, message, subject, location, std::move(includes)});
  }

  const SchemeList& schemes;
  Observer& observer;
  std::optional<xercesc::XMLGrammarPoolImpl> grammars;  // when validating
  locator::SearchOrder order;
  std::deque<OpenFile> open;                                                      // outermost first
  std::map<std::pair<Identity, Identity>, std::vector<std::size_t>> openNumbers;  // in open
  std::map<std::pair<std::pair<Identity, Identity>, std::size_t>, Part> parts;    // by order, too
  std::map<std::pair<Identity, Identity>, DocumentFindings> documents;  // files in directories
  RepeatedSections repeated;
  bool isDepthTold = false;
  std::set<std::tuple<std::string, int, int, std::string, std::string>> told;
  std::vector<Problem> problems;
};

}  // namespace

std::vector<Problem> internal::checkFileSet(const std::string& file, const SchemeList& schemes,
                                            bool validate, Observer& observer) {
  return FileSetCheck(schemes, validate, observer).run(file);
}

}  // namespace service::util::config::xml
