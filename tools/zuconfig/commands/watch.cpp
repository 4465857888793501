// zuconfig watch: what changes in a configuration, as it changes, and why files are refused.
#include <poll.h>
#include <spawn.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands/Command.hpp"
#include "service/util/config/Live.hpp"
#include "shared/Loader.hpp"
#include "shared/Secrets.hpp"
#include "shared/SideWriter.hpp"
#include "shared/problems.hpp"

namespace zuconfig {

namespace {

using Live = service::util::config::Live<service::util::config::IConfig>;
using json = nlohmann::ordered_json;

// The signals that end the command, to be waited for beside other things.
class EndSignals {
 public:
  EndSignals() {
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGINT);
    ::sigaddset(&signals, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &signals, &before);
    descriptor = ::signalfd(-1, &signals, SFD_CLOEXEC);
    if (descriptor < 0) throw Failure(NOT_LOADED, std::string("signalfd: ") + std::strerror(errno));
  }
  ~EndSignals() { ::close(descriptor); }
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  int fd() const { return descriptor; }
  // What other programs are to start with.
  const sigset_t& maskBefore() const { return before; }

 private:
  sigset_t signals{};
  sigset_t before{};
  int descriptor;
};

// Runs the command in a shell, and waits for its end.
void execute(const std::string& command, const sigset_t& mask) {
  posix_spawnattr_t attributes;
  ::posix_spawnattr_init(&attributes);
  ::posix_spawnattr_setsigmask(&attributes, &mask);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  std::string text = command;
  std::string shell = "sh";
  std::string option = "-c";
  char* const arguments[] = {shell.data(), option.data(), text.data(), nullptr};
  pid_t child = 0;
  const int error = ::posix_spawn(&child, "/bin/sh", nullptr, &attributes, arguments, environ);
  ::posix_spawnattr_destroy(&attributes);
  if (error != 0) throw Failure(NOT_LOADED, std::string("/bin/sh: ") + std::strerror(error));
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (status == 0) return;
  std::cerr << "zuconfig: warning: the command ended with "
            << (WIFEXITED(status) ? "code " + std::to_string(WEXITSTATUS(status))
                                  : "signal " + std::to_string(WTERMSIG(status)))
            << "\n";
}

struct Watch {
  static constexpr const char* name = "watch";
  static constexpr const char* summary = "Print what changes in a configuration, as it changes";

  void define(CLI::App& command) {
    load.define(command);
    programs.define(command);
    writer.define(command);
    command.add_option("--format", format, "text (the default) or json, an object for each line")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json"}));
    command.add_option("--exec", program, "Run COMMAND in a shell after each change")
        ->type_name("COMMAND");
    command.add_flag("--once", isOnce, "End after the first change");
    command.add_option("FILE", file, "A configuration file")->required();
  }

  ExitCode run() const {
    if (file == "-") throw Failure(USAGE, "standard input cannot be followed");
    if (writer.isNull && format != "text") throw Failure(USAGE, "-0 goes with --format text only");
    const EndSignals end;
    Loader loader(load);
    const Programs judges(programs);
    const Secrets secrets(judges, loader.getSources());
    loader.load(file);  // prints what is wrong
    Live live(loader.resolve(file), loader.getSchemes(), loader.isValidating());
    while (!isEnd(end, live)) {
      const bool wasRefused = !live.problems().empty();
      const Live::Result result = live.poll();
      print(asToldBy(judges, secrets, live, result), wasRefused && live.problems().empty(),
            loader.getNames());
      if (result.outcome != Live::CHANGED) continue;
      if (!program.empty()) execute(program, end.maskBefore());
      if (isOnce) break;
    }
    return FINE;
  }

 private:
  // Waits for either.
  static bool isEnd(const EndSignals& end, const Live& live) {
    pollfd waited[] = {{end.fd(), POLLIN, 0}, {live.fd(), POLLIN, 0}};
    while (::poll(waited, 2, -1) < 0 && errno == EINTR) {
    }
    return waited[0].revents != 0;
  }

  // The result without secrets, and with what the programs would refuse of what is new.
  static Live::Result asToldBy(const Programs& judges, const Secrets& secrets, const Live& live,
                               Live::Result result) {
    if (judges.isEmpty()) return result;
    for (Live::Change& change : result.changes) {
      if (!secrets.resembles(lastName(change.path))) continue;
      for (auto* value : {&change.before, &change.after}) {
        if (*value && !(*value)->empty()) *value = secretMark;
      }
    }
    if (result.outcome == Live::CHANGED) {
      result.problems = judges.judge(live.get(), live.origins()).problems;
    }
    return result;
  }

  void print(const Live::Result& result, bool isMended, const FileNames& names) const {
    if (result.outcome == Live::UNCHANGED && !isMended) return;
    if (format == "json") {
      printJson(result, names);
    } else {
      const Colours& colours = writer.colours;
      if (isMended && !writer.isNull) {
        std::cout << colours.dim << "the files can be used again" << colours.off << "\n";
      }
      for (const Live::Change& change : result.changes) print(change, names);
      printProblems(result, names);
    }
    std::cout.flush();
  }

  // In words as check has them; where records go out, to standard error.
  void printProblems(const Live::Result& result, const FileNames& names) const {
    SourceText source;
    if (!programs.programs.empty() && !programs.showSecrets) {
      source.quoteOnly([](const Location&) { return false; });  // any line may hold one
    }
    std::vector<Finding> findings;
    for (const Problem& problem : result.problems) {
      const bool isOfPrograms = result.outcome == Live::CHANGED;
      findings.push_back(isOfPrograms ? asTold(problem) : describe(problem, names, source));
    }
    printText(writer.isNull ? std::cerr : std::cout,
              writer.isNull ? Colours(STDERR_FILENO) : writer.colours, findings, names, source);
  }

  static std::string selectorOf(const Live::Change& change) {
    return change.path + (change.before.value_or(change.after.value_or("")).empty() ? "." : "");
  }

  void print(const Live::Change& change, const FileNames& names) const {
    const std::string selector = selectorOf(change);
    writer.start(selector);
    if (change.before) {
      writer.write('-', selector, *change.before, names.shown(change.beforeLocation));
    }
    if (change.after) writer.write('+', selector, *change.after, names.shown(change.afterLocation));
  }

  static void printJson(const Live::Result& result, const FileNames& names) {
    const auto place = [&](const Location& at) {
      return json{
          {"file", validUtf8(names.nameOf(at.file))}, {"line", at.line}, {"column", at.column}};
    };
    const auto side = [&](const std::optional<std::string>& value, const Location& at) {
      if (!value) return json();
      json entry = place(at);
      if (!value->empty()) entry["value"] = validUtf8(*value);
      return entry;
    };
    const char* outcomes[] = {"unchanged", "changed", "refused"};
    json line = {{"outcome", outcomes[result.outcome]},
                 {"changes", json::array()},
                 {"problems", json::array()}};
    for (const Live::Change& change : result.changes) {
      line["changes"].push_back({{"selector", validUtf8(selectorOf(change))},
                                 {"before", side(change.before, change.beforeLocation)},
                                 {"after", side(change.after, change.afterLocation)}});
    }
    for (const Problem& problem : result.problems) {
      json entry = place(problem.location);
      entry["severity"] = problem.severity == Severity::ERROR ? "error" : "warning";
      entry["rule"] = problem.rule;
      entry["message"] = validUtf8(problem.message);
      line["problems"].push_back(std::move(entry));
    }
    std::cout << printableJson(line.dump()) << "\n";
  }

  LoadOptions load;
  ProgramOptions programs;
  SideWriter writer;
  std::string format = "text";
  std::string program;
  bool isOnce = false;
  std::string file;
};

}  // namespace

void addWatch(CLI::App& app, Chosen& chosen) {
  addCommand<Watch>(app, chosen);
}

}  // namespace zuconfig
