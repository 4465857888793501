#include "shared/options.hpp"

#include <CLI/CLI.hpp>

namespace zuconfig {

namespace {

void defineSchemas(CLI::App& command, std::vector<std::string>& schemas) {
  command
      .add_option("--schema", schemas,
                  "Validate elements of the namespace NS with the schema at LOCATION; repeatable")
      ->type_name("NS=LOCATION")
      ->allow_extra_args(false);
}

}  // namespace

void LoadOptions::defineDirectories(CLI::App& command) {
  command.add_option("-I", directories, "Look for files in DIR before the search path; repeatable")
      ->type_name("DIR")
      ->allow_extra_args(false);
}

void LoadOptions::define(CLI::App& command) {
  defineDirectories(command);
  command.add_flag("--validate", validate, "Check every file against the grammar");
  defineSchemas(command, schemas);
}

void LoadOptions::defineForChecks(CLI::App& command) {
  validate = true;
  defineDirectories(command);
  defineSchemas(command, schemas);
}

void ProgramOptions::define(CLI::App& command) {
  auto* option =
      command
          .add_option("--for", programs,
                      "Judge by the settings of PROGRAM, and show no secrets: a name, or "
                      "the file that describes them; several with commas")
          ->type_name("PROGRAM")
          ->delimiter(',')
          ->allow_extra_args(false);
  command.add_flag("--show-secrets", showSecrets, "Show them nevertheless")->needs(option);
}

void ProgramOptions::defineSet(CLI::App& command) {
  command
      .add_option("--set", assignments,
                  "Let a setting have a value, as from the program's command line; repeatable")
      ->type_name("PATH=VALUE")
      ->allow_extra_args(false)
      ->needs(command.get_option("--for"));
}

void defineFile(CLI::App& command, std::string& file) {
  command.add_option("FILE", file, "A configuration file; - is standard input")->required();
}

}  // namespace zuconfig
