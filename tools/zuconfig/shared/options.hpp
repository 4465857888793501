// The options that several sub-commands have.
#ifndef TOOLS_ZUCONFIG_SHARED_OPTIONS_HPP
#define TOOLS_ZUCONFIG_SHARED_OPTIONS_HPP

#include <string>
#include <vector>

namespace CLI {
class App;  // its header takes seconds to compile
}

namespace zuconfig {

// How files are found and loaded.
struct LoadOptions {
  void define(CLI::App& command);
  // For those that tell all that is wrong: they validate.
  void defineForChecks(CLI::App& command);
  void defineDirectories(CLI::App& command);

  std::vector<std::string> directories;  // put before the search path, the first one foremost
  bool validate = false;
  std::vector<std::string> schemas;  // NAMESPACE=LOCATION, each; any switches on validation
};

// Which programs judge.
struct ProgramOptions {
  void define(CLI::App& command);
  // For what a program would take from its command line.
  void defineSet(CLI::App& command);

  std::vector<std::string> programs;  // names, or paths of files
  std::vector<std::string> assignments;
  bool showSecrets = false;
};

// Declares the argument FILE, a name for Loader::load.
void defineFile(CLI::App& command, std::string& file);

}  // namespace zuconfig

#endif
