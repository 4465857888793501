// zuconfig get: prints one value, or all that a selector matches.
#include <iostream>
#include <optional>

#include "commands/Command.hpp"
#include "shared/Loader.hpp"
#include "shared/Pattern.hpp"
#include "shared/missing.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

struct Get {
  static constexpr const char* name = "get";
  static constexpr const char* summary = "Print the value that a selector names";

  void define(CLI::App& command) {
    load.define(command);
    command.add_flag("--all", all, "Print the values of every index");
    command.add_option("--default", byDefault, "Print VALUE when there is none")
        ->type_name("VALUE");
    command.add_flag("--origin", withOrigin, "Print file, line and column before each value");
    command.add_flag("-0,--null", isNull, "End each value with a zero byte, not a line break");
    defineFile(command, file);
    command.add_option("SELECTOR", selector, "Such as network.interface[1].address")->required();
  }

  ExitCode run() const {
    Pattern pattern(selector, Wanted::PROPERTIES);
    if (all) {
      if (pattern.parts.back().hasIndex) {
        throw Failure(USAGE, "--all and an index of the property exclude each other");
      }
      pattern.parts.back().isEveryIndex = true;
    }
    Loader loader(load);
    Origins origins;
    const IConfigPtr config = withOrigin ? loader.load(file, origins) : loader.load(file);
    bool isFound = false;
    match(config, pattern, Wanted::PROPERTIES, [&](const Match& match) {
      isFound = true;
      const auto origin = origins.of(match.parent, match.name, match.index);
      print(withOrigin ? loader.getNames().shown(origin) : "", match.value());
    });
    return isFound ? FINE : printDefault(config, pattern);
  }

 private:
  void print(const std::string& origin, const std::string& value) const {
    if (withOrigin) std::cout << origin << (isNull ? '\0' : '\t');
    std::cout << value << (isNull ? '\0' : '\n');
  }

  ExitCode printDefault(const IConfigPtr& config, const Pattern& pattern) const {
    if (!byDefault) {
      throw Failure(NO,
                    printable(selector) + ": " + whyMissing(config, pattern, Wanted::PROPERTIES));
    }
    print("default", *byDefault);
    return FINE;
  }

  LoadOptions load;
  bool all = false;
  std::optional<std::string> byDefault;
  bool withOrigin = false;
  bool isNull = false;
  std::string file;
  std::string selector;
};

}  // namespace

void addGet(CLI::App& app, Chosen& chosen) {
  addCommand<Get>(app, chosen);
}

}  // namespace zuconfig
