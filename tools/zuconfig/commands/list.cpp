// zuconfig list: the names in one section, or everything that a selector with wildcards matches.
#include <iostream>

#include "commands/Command.hpp"
#include "service/util/config/visit.hpp"
#include "shared/Effective.hpp"
#include "shared/Pattern.hpp"
#include "shared/missing.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::bind::internal::Holder;

struct List {
  static constexpr const char* name = "list";
  static constexpr const char* summary = "Print the names in a section, or all that matches";

  void define(CLI::App& command) {
    load.define(command);
    programs.define(command);
    command.add_flag("-0,--null", isNull, "End each entry with a zero byte, not a line break");
    defineFile(command, file);
    command.add_option("SELECTOR", selector,
                       "A section, such as network.interface[1]; or a pattern, such as "
                       "network.interface[*].addr*");
  }

  ExitCode run() const {
    if (!programs.programs.empty()) return printUnset();
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
  // What may be set in a section, and is not.
  ExitCode printUnset() const {
    Loader loader(load);
    const Effective effective(loader, programs, file);
    std::string around;
    if (!selector.empty()) {
      const Pattern pattern(selector, Wanted::SECTIONS);
      around = effective.pathOf(pattern) + ".";
      if (around == ".") {
        throw Failure(NO, printable(selector) + ": " +
                              whyMissing(effective.get(), pattern, Wanted::SECTIONS));
      }
    }
    for (const std::string& path : effective.getPaths()) {
      const auto& entry = effective.at(path).front();
      const bool isInside = startsWith(path, around.c_str());
      if (isInside && entry.surveyed->inForce.empty()) printUnset(path, *entry.surveyed->described);
    }
    return FINE;
  }

  void printUnset(const std::string& path, const Described& described) const {
    if (described.form == Holder::SECTION && !described.isOptional)
      return;  // what is in it is told
    const std::string end = described.isSetting() ? "" : ".";
    if (isNull) return print(path + end);
    std::string text = path + end;
    for (const std::string& value : described.defaults) {
      text += (&value == &described.defaults.front() ? "=" : ", ") + escaped(value);
    }
    std::string about = described.isRequired ? "required" : "";
    if (!described.text.empty()) about += (about.empty() ? "" : ": ") + printable(described.text);
    print(about.empty() ? text : text + "\t" + about);
  }

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
  ProgramOptions programs;
  bool isNull = false;
  std::string file;
  std::string selector;
};

}  // namespace

void addList(CLI::App& app, Chosen& chosen) {
  addCommand<List>(app, chosen);
}

}  // namespace zuconfig
