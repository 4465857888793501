// zuconfig: looks into configurations from the command line. One file of this directory for each
// sub-command; here are the process-wide settings and the one place where failures are printed.
#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <iostream>

#include "commands/Command.hpp"
#include "cppUtil/err/describe.hpp"
#include "shared/text.hpp"

namespace {

using namespace zuconfig;

// A file that is opened later must not stand in for a closed standard stream. Opened the wrong way
// round, the stream still fails where it is used.
void openStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const bool isClosed = ::fcntl(stream, F_GETFD) < 0;
    if (isClosed) ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

// The library gives text in the encoding of the locale. In any but UTF-8 something could be lost.
void useUtf8() {
  std::setlocale(LC_CTYPE, "");
  if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) std::setlocale(LC_CTYPE, "C.UTF-8");
}

void define(CLI::App& app, Chosen& chosen) {
  app.name("zuconfig");
  app.description(
      "Looks into configurations: values and where they come from, what is wrong, what differs.");
  app.footer(
      "Exit codes: 0 fine, 1 not found, different or errors found, 2 wrong usage or malformed\n"
      "selector, 3 a file cannot be loaded. zuconfig(1) tells the rest.");
  app.set_version_flag("--version", "zuconfig " ZUCONFIG_VERSION, "Print the version and exit");
  app.require_subcommand(1);
  for (const auto add : {addGet, addList, addExplain, addTree, addDump, addCheck, addDiff,
                         addIncludes, addPage, addWatch, addPath, addSchema, addErrors}) {
    add(app, chosen);
  }
  app.set_help_all_flag("--help-all", "Print the help of all sub-commands and exit");
}

// Why word, which follows the name of command, is nothing that it takes.
std::string describeUnexpected(const CLI::App& command, const std::string& word) {
  const bool isTop = command.get_parent() == nullptr;
  std::vector<std::string> names;
  if (word.size() > 1 && word[0] == '-') {
    for (const CLI::Option* option : command.get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return "no option " + printable(word) + (isTop ? " in front of a sub-command" : "") +
           didYouMean(nearest(word, names));
  }
  if (!isTop) return "one argument too many: " + printable(word);
  for (const CLI::App* known : command.get_subcommands(nullptr)) names.push_back(known->get_name());
  return "no sub-command " + printable(word) + didYouMean(nearest(word, names));
}

// What is wrong with the command line, in the words of this command.
std::string describe(const CLI::App& app, const CLI::ParseError& error) {
  const auto commands = app.get_subcommands();
  const CLI::App& command = commands.empty() || app.remaining_size() > 0 ? app : *commands[0];
  const auto unexpected = command.remaining();
  const std::string text =
      unexpected.empty() ? error.what() : describeUnexpected(command, unexpected.front());
  return text + "\nzuconfig " + (commands.empty() ? "" : commands[0]->get_name() + " ") +
         "--help tells how it is used";
}

ExitCode parseAndRun(int argc, char** argv) {
  CLI::App app;
  Chosen chosen;
  define(app, chosen);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() != 0) throw Failure(USAGE, describe(app, e));
    app.exit(e, std::cout, std::cerr);
    return FINE;
  }
  return chosen();
}

ExitCode run(int argc, char** argv) {
  try {
    const ExitCode code = parseAndRun(argc, argv);
    std::cout.flush();
    return code;
  } catch (const Failure& e) {
    std::cout.flush();
    if (*e.what() != '\0') std::cerr << "zuconfig: " << printableLines(e.what()) << "\n";
    return e.code;
  } catch (const std::ios_base::failure&) {
    throw;
  } catch (const cppUtil::err::Exception& e) {
    std::cerr << "zuconfig: " << cppUtil::err::describe(e) << "\n";
  } catch (const std::exception& e) {
    std::cerr << "zuconfig: " << printableLines(e.what()) << "\n";
  }
  return NOT_LOADED;
}

}  // namespace

int main(int argc, char** argv) {
  openStandardStreams();
  std::signal(SIGPIPE, SIG_DFL);  // a reader that went away ends the command without a word
  useUtf8();
  std::ios::sync_with_stdio(false);
  std::cout.exceptions(std::ios::badbit);
  try {
    return run(argc, argv);
  } catch (const std::ios_base::failure&) {
    const int reason = errno;
    std::cout.exceptions(std::ios::goodbit);  // it is flushed again, by cerr and at the end
    std::cerr << "zuconfig: cannot write the output: " << std::strerror(reason) << "\n";
    return NOT_LOADED;
  }
}
