// zuconfig list: the names in one section, or everything that a selector with wildcards matches.
#include <iostream>

#include "commands/Command.hpp"
#include "service/util/config/visit.hpp"
#include "shared/Loader.hpp"
#include "shared/Pattern.hpp"
#include "shared/missing.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

struct List {
  static constexpr const char* name = "list";
  static constexpr const char* summary = "Print the names in a section, or all that matches";

  void define(CLI::App& command) {
    load.define(command);
    command.add_flag("-0,--null", isNull, "End each entry with a zero byte, not a line break");
    defineFile(command, file);
    command.add_option("SELECTOR", selector,
                       "A section, such as network.interface[1]; or a pattern, such as "
                       "network.interface[*].addr*");
  }

  ExitCode run() const {
    if (selector.empty()) {
      printNames(Loader(load).load(file));
      return FINE;
    }
    const Pattern pattern(selector, Wanted::BOTH);
    const IConfigPtr config = Loader(load).load(file);
    if (pattern.isSingle()) {
      if (const auto section = matchSingle(config, pattern, Wanted::SECTIONS)) {
        printNames(section->section);
        return FINE;
      }
    }
    return printMatches(config, pattern);
  }

 private:
  ExitCode printMatches(const IConfigPtr& config, const Pattern& pattern) const {
    bool isFound = false;
    match(config, pattern, pattern.wanted, [&](const Match& match) {
      isFound = true;
      if (match.section != nullptr) {
        print(match.path + ".");
      } else {
        print(match.path + (isNull ? "\n" + match.value() : "=" + escaped(match.value())));
      }
    });
    if (isFound) return FINE;
    throw Failure(NO, printable(selector) + ": " + whyMissing(config, pattern, Wanted::SECTIONS));
  }

  void printNames(const IConfigPtr& section) const {
    for (const std::string& name : service::util::config::getPropertyNames(section)) {
      printIndices(name, section->getPropertyCount(name), "");
    }
    for (const std::string& name : service::util::config::getSectionNames(section)) {
      printIndices(name, section->getSectionCount(name), ".");
    }
  }

  void printIndices(const std::string& name, std::uint32_t count, const char* end) const {
    for (std::uint32_t index = 0; index < count; ++index) {
      print(service::util::config::spellPath("", name, index, count) + end);
    }
  }

  void print(const std::string& entry) const { std::cout << entry << (isNull ? '\0' : '\n'); }

  LoadOptions load;
  bool isNull = false;
  std::string file;
  std::string selector;
};

}  // namespace

void addList(CLI::App& app, Chosen& chosen) {
  addCommand<List>(app, chosen);
}

}  // namespace zuconfig
