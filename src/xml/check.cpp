// The check of a file set: follows includes as a load does, on a list of open files instead of the
// stack, and each circle and each part that was checked before only once.

#include "service/util/config/xml/check.hpp"

#include <algorithm>
#include <filesystem>
#include <list>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_set>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "cppUtil/err/guarded.hpp"
#include "cppUtil/fileName/getPath.hpp"
#include "load/SearchedFirst.hpp"
#include "load/describeFile.hpp"
#include "xml/XmlLibrary.hpp"
#include "xml/documentCheck.hpp"
#include "xml/validation.hpp"

namespace service::util::config::xml {

namespace {

using internal::Include;
using internal::SearchedFirst;
using locator::ConfigLocator;

std::string canonical(const std::string& path) {
  std::error_code error;
  const auto result = std::filesystem::canonical(path.empty() ? "." : path, error);
  return error ? path : result.string();
}

// The directories of the search path, each once, as a look-up sees them.
std::vector<std::string> searchedDirectories() {
  std::vector<std::string> directories;
  std::unordered_set<std::string> seen;
  for (const std::string& entry : ConfigLocator::getEntries()) {
    if (!seen.insert(entry).second) continue;
    const std::string directory = canonical(entry);
    if (std::find(directories.begin(), directories.end(), directory) == directories.end()) {
      directories.push_back(directory);
    }
  }
  return directories;
}

std::string listOf(const std::vector<std::string>& texts, const char* separator) {
  std::string list;
  for (const std::string& text : texts) list += (list.empty() ? "" : separator) + text;
  return list;
}

std::string notFoundMessage(const std::string& name) {
  if (name.front() == '/') return "there is no readable file \"" + name + "\"";
  std::string message =
      "no readable file \"" + name + "\" " +
      (ConfigLocator::tellsEntries() ? "in " + listOf(searchedDirectories(), ", ")
                                     : "on the search path, which the platform does not tell");
  const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\n'; };
  if (isSpace(name.front()) || isSpace(name.back())) {
    message += "; white space around the name is part of it";
  }
  return message;
}

// A file whose includes are being followed.
struct OpenFile {
  Observer::File file;
  std::string identity;  // the same for all spellings of its path
  std::optional<SearchedFirst> directory;
  std::vector<Include> includes;
  std::size_t next = 0;  // the include to follow
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
    if (path.empty()) {
      add(Severity::ERROR, "not-found",
          name.empty() ? "the name of the file is empty" : notFoundMessage(name), {name}, name);
      return std::move(problems);
    }
    enter(describe(name, path, {}));
    while (!open.empty()) {
      OpenFile& file = open.back();
      if (file.next < file.includes.size()) {
        follow(file.includes[file.next++]);
      } else {
        leave();
      }
    }
    return std::move(problems);
  }

 private:
  void follow(const Include& include) {
    const std::string path = ConfigLocator::find(include.text);
    if (path.empty()) {
      add(Severity::ERROR, "missing-include", notFoundMessage(include.text), include.location,
          include.text);
      return;
    }
    const std::string identity = canonical(path);
    const auto isSame = [&](const OpenFile& file) { return file.identity == identity; };
    const auto circle = std::find_if(open.begin(), open.end(), isSame);
    if (circle == open.end()) {
      enter(describe(include.text, path, include.location));
      return;
    }
    std::vector<std::string> files;
    for (auto file = circle; file != open.end(); ++file) files.push_back(file->file.path);
    files.push_back(path);
    add(Severity::ERROR, "include-cycle",
        "this include closes a circle, which a load follows until it fails: " +
            listOf(files, " -> "),
        include.location);
    const Observer::File file = describe(include.text, path, include.location);
    observer.fileEntered(file);
    observer.fileLeft(file);
  }

  void enter(const Observer::File& description) {
    tellShadowed(description);
    OpenFile& file = open.emplace_back();
    file.file = description;
    file.identity = canonical(description.path);
    observer.fileEntered(file.file);
    file.directory.emplace(cppUtil::fileName::getPath(description.path));
    // What a file includes depends on the search path.
    std::vector<std::string> state = searchedDirectories();
    state.push_back(file.identity);
    if (!checked.insert(std::move(state)).second) return;
    internal::DocumentFindings findings =
        internal::checkDocument(description.path, schemes, grammars ? &*grammars : nullptr);
    for (const Problem& problem : findings.problems) {
      add(problem.severity, problem.rule, problem.message, problem.location, problem.subject);
    }
    file.includes = std::move(findings.includes);
  }

  void leave() {
    open.back().directory->leave();
    observer.fileLeft(open.back().file);
    open.pop_back();
  }

  Observer::File describe(const std::string& name, const std::string& path,
                          const Location& include) const {
    return internal::describeFile(name, path, include, open.empty() ? nullptr : &open.back().file);
  }

  void tellShadowed(const Observer::File& file) {
    if (file.shadowed.empty()) return;
    std::vector<std::string> hidden;
    for (const ConfigLocator::Match& match : file.shadowed) hidden.push_back(match.file);
    add(Severity::WARNING, "shadowed-file", file.path + " hides " + listOf(hidden, ", "),
        file.includer == nullptr ? Location{file.path} : file.include);
  }

  // A file that is read again has the same problems.
  void add(Severity severity, const std::string& rule, const std::string& message,
           const Location& location, const std::string& subject = "") {
    if (!told.emplace(location.file, location.line, location.column, rule, message).second) return;
    std::vector<Location> includes;
    for (auto file = open.rbegin(); file != open.rend(); ++file) {
      if (file->file.includer != nullptr) includes.push_back(file->file.include);
    }
    problems.push_back({severity, rule, message, subject, location, std::move(includes)});
  }

  const SchemeList& schemes;
  Observer& observer;
  std::optional<xercesc::XMLGrammarPoolImpl> grammars;  // when validating
  std::list<OpenFile> open;                             // outermost first
  std::set<std::vector<std::string>> checked;           // files in states of the search path
  std::set<std::tuple<std::string, int, int, std::string, std::string>> told;
  std::vector<Problem> problems;
};

}  // namespace

std::vector<Problem> check(const std::string& file, const SchemeList& schemes, bool validate) {
  Observer nobody;
  return check(file, schemes, validate, nobody);
}

std::vector<Problem> check(const std::string& file, const SchemeList& schemes, bool validate,
                           Observer& observer) {
  return cppUtil::err::guarded(
      {"src/check",
       "std::vector<Problem> service::util::config::xml::check(const string&, const SchemeList&, "
       "bool, Observer&)",
       __LINE__},
      [&] {
        const internal::XmlLibrary library;
        return FileSetCheck(schemes, validate, observer).run(file);
      });
}

}  // namespace service::util::config::xml
