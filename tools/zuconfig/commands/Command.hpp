// The frame of the sub-commands: how each is declared to the command line, and how it ends.
//
// A sub-command is a type with its name, its summary, define(), which declares its options, and
// run(), which answers the exit code. Everything in this directory runs on one thread.
#ifndef TOOLS_ZUCONFIG_COMMANDS_COMMAND_HPP
#define TOOLS_ZUCONFIG_COMMANDS_COMMAND_HPP

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace zuconfig {

// What the process ends with; scripts rely on the numbers.
enum ExitCode : int {
  FINE = 0,
  NO = 1,          // not found, different, or errors were found
  USAGE = 2,       // wrong usage or a malformed selector
  NOT_LOADED = 3,  // a file cannot be loaded, or the output cannot be written
};

// Ends the command: the text goes to standard error, the code to the caller.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code(code) {}

  const ExitCode code;
};

// The run of the sub-command that the command line chose.
using Chosen = std::function<ExitCode()>;

template <class Type>
void addCommand(CLI::App& app, Chosen& chosen) {
  const auto command = std::make_shared<Type>();
  CLI::App* subcommand = app.add_subcommand(Type::name, Type::summary);
  command->define(*subcommand);
  subcommand->callback([command, &chosen] { chosen = [command] { return command->run(); }; });
}

void addGet(CLI::App& app, Chosen& chosen);
void addList(CLI::App& app, Chosen& chosen);
void addExplain(CLI::App& app, Chosen& chosen);
void addTree(CLI::App& app, Chosen& chosen);
void addDump(CLI::App& app, Chosen& chosen);
void addCheck(CLI::App& app, Chosen& chosen);
void addDiff(CLI::App& app, Chosen& chosen);
void addIncludes(CLI::App& app, Chosen& chosen);
void addPath(CLI::App& app, Chosen& chosen);
void addSchema(CLI::App& app, Chosen& chosen);
void addErrors(CLI::App& app, Chosen& chosen);

}  // namespace zuconfig

#endif
