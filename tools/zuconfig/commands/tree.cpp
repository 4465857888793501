// zuconfig tree: the whole configuration for the eye.
#include <functional>
#include <iostream>
#include <utility>
#include <vector>

#include "commands/Command.hpp"
#include "service/util/config/visit.hpp"
#include "shared/Effective.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::getPropertyNames;
using service::util::config::getSectionNames;
using service::util::config::spellPath;
using service::util::config::Visited;
using service::util::config::Visitor;

// Tells where a value or a section stands.
using PlaceOf = std::function<std::string(const Visited&, bool isSection)>;

class TreePrinter : public Visitor {
 public:
  // placeOf: null when places are not asked for.
  TreePrinter(const IConfigPtr& config, PlaceOf placeOf) : placeOf(std::move(placeOf)) {
    descend(config);
  }

  void property(const Visited& visited, const std::string& value) override {
    const Level& level = levels.back();
    const bool isLast = !level.hasSections && isLastOf(visited, level.lastName);
    printName(visited, isLast);
    std::cout << " = " << colours.value << escaped(value) << colours.off;
    printPlace(visited, false);
  }

  bool enterSection(const Visited& visited, const IConfigPtr& section) override {
    const bool isLast = isLastOf(visited, levels.back().lastName);
    printName(visited, isLast);
    printPlace(visited, true);
    indents.push_back(indent.size());
    indent = deeper(indent, isLast);
    descend(section);
    return true;
  }

  void leaveSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) override {
    levels.pop_back();
    indent.resize(indents.back());
    indents.pop_back();
  }

 private:
  // A section that is being printed: which of its entries is the last one.
  struct Level {
    bool hasSections;
    std::string lastName;
  };

  void descend(const IConfigPtr& section) {
    auto names = getSectionNames(section);
    const bool hasSections = !names.empty();
    if (!hasSections) names = getPropertyNames(section);
    levels.push_back({hasSections, names.empty() ? "" : std::move(names.back())});
  }

  static bool isLastOf(const Visited& visited, const std::string& lastName) {
    return visited.index + 1 == visited.count && visited.name == lastName;
  }

  void printName(const Visited& visited, bool isLast) const {
    std::cout << colours.dim << indent << (isLast ? "└── " : "├── ") << colours.off << colours.name
              << spellPath("", visited.name, visited.index, visited.count) << colours.off;
  }

  void printPlace(const Visited& visited, bool isSection) const {
    const std::string place = placeOf == nullptr ? "" : placeOf(visited, isSection);
    if (!place.empty()) std::cout << "  " << colours.dim << "(" << place << ")" << colours.off;
    std::cout << "\n";
  }

  const PlaceOf placeOf;
  const Colours colours;
  std::vector<Level> levels;         // outermost first
  std::string indent;                // before each line of the innermost level
  std::vector<std::size_t> indents;  // what indent was as long as, outermost first
};

struct Tree {
  static constexpr const char* name = "tree";
  static constexpr const char* summary = "Print everything as a tree";

  void define(CLI::App& command) {
    load.define(command);
    programs.define(command);
    programs.defineSet(command);
    command.add_flag("--origins", withOrigins, "Print where each value and section stands");
    defineFile(command, file);
  }

  ExitCode run() const {
    Loader loader(load);
    programs.programs.empty() ? printLoaded(loader) : printInForce(loader);
    return FINE;
  }

 private:
  void printLoaded(Loader& loader) const {
    Origins origins;
    const IConfigPtr config = withOrigins ? loader.load(file, origins) : loader.load(file);
    print(config, [&](const Visited& visited, bool isSection) {
      return loader.getNames().shown(
          isSection ? origins.ofSection(visited.parent, visited.name, visited.index)
                    : origins.of(visited.parent, visited.name, visited.index));
    });
  }

  // What a program gets that reads by a description.
  void printInForce(Loader& loader) const {
    const Effective effective(loader, programs, file);
    print(effective.get(), [&](const Visited& visited, bool isSection) {
      return isSection ? effective.placesOf(visited.path)
                       : effective.placeOf(visited.parent, visited.name, visited.index);
    });
  }

  void print(const IConfigPtr& config, const PlaceOf& placeOf) const {
    std::cout << shownArgument(file) << "\n";
    TreePrinter printer(config, withOrigins ? placeOf : nullptr);
    service::util::config::visit(config, printer);
  }

  LoadOptions load;
  ProgramOptions programs;
  bool withOrigins = false;
  std::string file;
};

}  // namespace

void addTree(CLI::App& app, Chosen& chosen) {
  addCommand<Tree>(app, chosen);
}

}  // namespace zuconfig
