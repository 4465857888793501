// zuconfig check: all that is wrong with configuration files and what they include, at once.
#include <algorithm>
#include <iostream>
#include <set>
#include <tuple>

#include "commands/Command.hpp"
#include "shared/Loader.hpp"
#include "shared/Programs.hpp"
#include "shared/Secrets.hpp"
#include "shared/problems.hpp"

namespace zuconfig {

namespace {

struct Check {
  static constexpr const char* name = "check";
  static constexpr const char* summary = "Print all that is wrong with configuration files";

  void define(CLI::App& command) {
    load.defineForChecks(command);
    command.add_flag("--validate,!--no-validate", load.validate,
                     "Check against the grammar, which is the default, or leave that out");
    command.add_option("--format", format, "text (the default), json or sarif")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json", "sarif"}));
    programs.define(command);
    programs.defineSet(command);
    command.add_flag("--strict", isStrict, "Let warnings fail as errors do");
    command.add_option("--ignore", ignored, "Leave out the warnings of RULE; repeatable")
        ->type_name("RULE")
        ->allow_extra_args(false)
        ->check(CLI::IsMember({"deep-includes", "entity-element", "not-on-path", "padded-value",
                               "renamed-setting", "repeated-section", "shadowed-file",
                               "unknown-element", "unreachable-name", "unread-end", "xml"}));
    command.add_option("FILE", files, "Configuration files; - is standard input")->required();
  }

  ExitCode run() const {
    Loader loader(load);
    SourceText& source = loader.getSources();
    const FileNames& names = loader.getNames();
    const Programs judges(programs);
    Secrets secrets(judges, source);
    std::vector<Finding> findings;
    std::set<Key> known;
    for (const std::string& file : files) {
      std::vector<Problem> problems;
      const std::string resolved = loader.resolve(file);
      if (loader.isOffPath(file)) problems.push_back(offPath(file, resolved));
      for (Problem& problem : loader.check(resolved)) problems.push_back(std::move(problem));
      for (const Problem& problem : problems) {
        if (isWanted(problem, known)) findings.push_back(describe(problem, names, source));
      }
      if (judges.isEmpty()) continue;
      if (hasError(problems)) {
        secrets.close();
        continue;
      }
      for (const Problem& problem : judged(resolved, loader, judges, secrets)) {
        if (isWanted(problem, known)) findings.push_back(asTold(problem));
      }
    }
    if (format == "json") {
      printJson(findings, names, source);
    } else if (format == "sarif") {
      printSarif(findings, names, source);
    } else {
      printText(std::cout, Colours(), findings, names, source);
    }
    if (const std::string left = judges.leftToThem(); !left.empty()) {
      std::cout.flush();
      std::cerr << "zuconfig: note: " << printable(left) << "\n";
    }
    return codeFor(findings);
  }

 private:
  using Key = std::tuple<std::string, int, int, std::string>;

  static Problem offPath(const std::string& file, const std::string& resolved) {
    return {
        Severity::WARNING,
        "not-on-path",
        "this is not on the search path: a program that asks for \"" + file + "\" does not find it",
        file,
        {resolved},
        {}};
  }

  static bool hasError(const std::vector<Problem>& problems) {
    return std::any_of(problems.begin(), problems.end(),
                       [](const Problem& problem) { return problem.severity == Severity::ERROR; });
  }

  // What the programs find in a file that loads.
  static std::vector<Problem> judged(const std::string& resolved, Loader& loader,
                                     const Programs& judges, Secrets& secrets) {
    Origins origins;
    const IConfigPtr config = loader.load(resolved, origins);
    Judgement judgement = judges.judge(config, origins);
    secrets.add(judgement, config, origins);
    return std::move(judgement.problems);
  }

  // What several of the files include is not told of again.
  bool isWanted(const Problem& problem, std::set<Key>& known) const {
    const Location& at = problem.location;
    if (isOfSelectors(problem) && !programs.programs.empty()) return false;
    return std::find(ignored.begin(), ignored.end(), problem.rule) == ignored.end() &&
           known.insert({at.file, at.line, at.column, problem.message}).second;
  }

  ExitCode codeFor(const std::vector<Finding>& findings) const {
    ExitCode code = FINE;
    for (const Finding& finding : findings) {
      if (finding.problem.rule == "not-found") return NOT_LOADED;
      if (isStrict || finding.problem.severity == Severity::ERROR) code = NO;
    }
    return code;
  }

  LoadOptions load;
  ProgramOptions programs;
  std::string format = "text";
  bool isStrict = false;
  std::vector<std::string> ignored;
  std::vector<std::string> files;
};

}  // namespace

void addCheck(CLI::App& app, Chosen& chosen) {
  addCommand<Check>(app, chosen);
}

}  // namespace zuconfig
