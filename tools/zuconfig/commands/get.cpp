// zuconfig get: prints one value, or all that a selector matches.
#include <iostream>
#include <optional>
#include <set>

#include "commands/Command.hpp"
#include "shared/Effective.hpp"
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
    programs.define(command);
    programs.defineSet(command);
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
    return programs.programs.empty() ? printLoaded(loader, pattern) : printInForce(loader, pattern);
  }

 private:
  using PlaceOf = std::function<std::string(const Match&)>;

  ExitCode printLoaded(Loader& loader, const Pattern& pattern) const {
    Origins origins;
    const bool isNested = pattern.parts.size() > 1;
    const IConfigPtr config =
        withOrigin || isNested ? loader.load(file, origins) : loader.load(file);
    noteSeveralFiles(sectionsOnTheWay(config, pattern), pattern, origins, loader.getNames());
    return printAll(config, pattern, [&](const Match& match) {
      return loader.getNames().shown(origins.of(match.parent, match.name, match.index));
    });
  }

  // What a program gets that reads by a description.
  ExitCode printInForce(Loader& loader, const Pattern& pattern) const {
    const Effective effective(loader, programs, file);
    return printAll(effective.get(), pattern, [&](const Match& match) {
      return effective.placeOf(match.parent, match.name, match.index);
    });
  }

  ExitCode printAll(const IConfigPtr& config, const Pattern& pattern,
                    const PlaceOf& placeOf) const {
    bool isFound = false;
    match(config, pattern, Wanted::PROPERTIES, [&](const Match& match) {
      isFound = true;
      print(withOrigin ? placeOf(match) : "", match.value());
    });
    return isFound ? FINE : printDefault(config, pattern);
  }

  // A selector takes the first section of a name, which is that of an include.
  static void noteSeveralFiles(const std::vector<Match>& sections, const Pattern& pattern,
                               const Origins& origins, const FileNames& names) {
    for (std::size_t i = 0; i < sections.size(); ++i) {
      const Match& section = sections[i];
      std::set<std::string> files;
      const std::uint32_t count = section.parent->getSectionCount(section.name);
      for (std::uint32_t index = 0; index < count && !pattern.parts[i].hasIndex; ++index) {
        const auto origin = origins.ofSection(section.parent, section.name, index);
        if (origin.file != nullptr) files.insert(names.shown(origin.file->path));
      }
      if (files.size() < 2) continue;
      std::cerr << "zuconfig: note: " << section.path << " is the first of " << count
                << " sections, from " << files.size()
                << " files; --for PROGRAM tells what a program gets that merges them\n";
    }
  }

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
  ProgramOptions programs;
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
