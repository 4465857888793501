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

#include "Command.hpp"
#include "cppUtil/err/Exception.hpp"
#include "text.hpp"

namespace {

using namespace zuconfig;

// A file that is opened later must not stand in for a closed standard stream. Opened the wrong way
// round, the stream still fails where it is used.
void openStandardStreams() {
  for (const int mode : {O_WRONLY, O_RDONLY, O_RDONLY}) {
    const int lowest = ::open("/dev/null", mode);
    if (lowest > STDERR_FILENO) {
      ::close(lowest);
      return;
    }
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
                         addIncludes, addPath, addSchema, addErrors}) {
    add(app, chosen);
  }
  app.set_help_all_flag("--help-all", "Print the help of all sub-commands and exit");
}

// What is wrong with the command line, in the words of this command.
std::string describe(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  const auto commands = app.get_subcommands();
  const std::string help = "\nzuconfig " + (commands.empty() ? "" : commands[0]->get_name() + " ") +
                           "--help tells how it is used";
  if (!commands.empty() || argc < 2 || argv[1][0] == '-') return error.what() + help;
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands(nullptr)) names.push_back(command->get_name());
  return "no sub-command " + printable(argv[1]) + didYouMean(nearest(argv[1], names)) + help;
}

ExitCode parseAndRun(int argc, char** argv) {
  CLI::App app;
  Chosen chosen;
  define(app, chosen);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() != 0) throw Failure(USAGE, describe(app, e, argc, argv));
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
    std::cerr << "zuconfig: " << e.what() << "\n";
    return e.code;
  } catch (const std::ios_base::failure&) {
    throw;
  } catch (const cppUtil::err::Exception& e) {
    std::cerr << "zuconfig: " << e.what() << ": " << e.getMessage() << "\n";
  } catch (const std::exception& e) {
    std::cerr << "zuconfig: " << e.what() << "\n";
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
