// zuconfig path: the search path, and what of a name is found along it.
#include <algorithm>
#include <iostream>

#include "commands/Command.hpp"
#include "service/util/locator/ConfigLocator.hpp"
#include "shared/Loader.hpp"
#include "shared/missingFile.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::locator::ConfigLocator;

struct Path {
  static constexpr const char* name = "path";
  static constexpr const char* summary = "Print the search path, and where on it a file is found";

  void define(CLI::App& command) {
    load.defineDirectories(command);
    command.add_flag("-0,--null", isNull, "End each entry with a zero byte, not a line break");
    command.add_option("NAME", wanted, "A file as programs and includes name it");
  }

  ExitCode run() const {
    const Loader loader(load);
    if (wanted.empty()) {
      if (!ConfigLocator::tellsEntries()) {
        throw Failure(NO, "the platform library in use does not tell the search path");
      }
      for (const PathEntry& entry : loader.searchPath()) {
        const std::string reason = whyNoDirectory(entry.directory);
        print(entry.directory.empty() ? "." : entry.directory,
              entry.source + (reason.empty() ? "" : ", " + reason));
      }
      return FINE;
    }
    const auto matches = ConfigLocator::findAll(wanted);
    if (matches.empty()) throw Failure(NO, notFound(wanted));
    for (const auto& match : matches) {
      print(match.file,
            (&match == &matches.front() ? "found, " : "shadowed, ") + source(match, loader));
    }
    return FINE;
  }

 private:
  std::string source(const ConfigLocator::Match& match, const Loader& loader) const {
    if (wanted[0] == '/') return "by its absolute name";
    const auto entries = loader.searchPath();
    const auto entry = std::find_if(entries.begin(), entries.end(), [&](const PathEntry& e) {
      return e.directory == match.directory;
    });
    return entry == entries.end() ? "locator" : entry->source;
  }

  // With -0 the entries alone, for scripts.
  void print(const std::string& entry, const std::string& remark) const {
    if (isNull) {
      std::cout << entry << '\0';
    } else {
      std::cout << printable(entry) << "\t" << remark << "\n";
    }
  }

  LoadOptions load;
  bool isNull = false;
  std::string wanted;
};

}  // namespace

void addPath(CLI::App& app, Chosen& chosen) {
  addCommand<Path>(app, chosen);
}

}  // namespace zuconfig
