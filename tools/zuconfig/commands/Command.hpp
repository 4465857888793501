// The frame of the sub-commands: how each is declared to the command line, and how it ends.
//
// A sub-command is a type with its name, its summary, define(), which declares its options, and
// run(), which answers the exit code. Everything in this directory runs on one thread.
#ifndef TOOLS_ZUCONFIG_COMMANDS_COMMAND_HPP
#define TOOLS_ZUCONFIG_COMMANDS_COMMAND_HPP

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>

#include "shared/Failure.hpp"

namespace zuconfig {

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
void addPage(CLI::App& app, Chosen& chosen);
void addWatch(CLI::App& app, Chosen& chosen);
void addPath(CLI::App& app, Chosen& chosen);
void addSchema(CLI::App& app, Chosen& chosen);
void addErrors(CLI::App& app, Chosen& chosen);

}  // namespace zuconfig

#endif
