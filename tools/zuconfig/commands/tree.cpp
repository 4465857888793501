// zuconfig tree: the whole configuration for the eye.
#include <iostream>
#include <vector>

#include "commands/Command.hpp"
#include "service/util/config/visit.hpp"
#include "shared/Loader.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::getPropertyNames;
using service::util::config::getSectionNames;
using service::util::config::spellPath;
using service::util::config::Visited;
using service::util::config::Visitor;

class TreePrinter : public Visitor {
 public:
  // origins: null when they are not asked for.
  TreePrinter(const IConfigPtr& config, const FileNames& names, const Origins* origins)
      : names(names), origins(origins) {
    descend(config);
  }

  void property(const Visited& visited, const std::string& value) override {
    const Level& level = levels.back();
    const bool isLast = !level.hasSections && isLastOf(visited, level.lastName);
    printName(visited, isLast);
    std::cout << " = " << colours.value << escaped(value) << colours.off;
    if (origins != nullptr) {
      printOrigin(origins->of(visited.parent, visited.name, visited.index));
    }
    std::cout << "\n";
  }

  bool enterSection(const Visited& visited, const IConfigPtr& section) override {
    const bool isLast = isLastOf(visited, levels.back().lastName);
    printName(visited, isLast);
    if (origins != nullptr) {
      printOrigin(origins->ofSection(visited.parent, visited.name, visited.index));
    }
    std::cout << "\n";
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

  void printOrigin(const Origins::Origin& origin) const {
    std::cout << "  " << colours.dim << "(" << names.shown(origin) << ")" << colours.off;
  }

  const FileNames& names;
  const Origins* origins;
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
    command.add_flag("--origins", withOrigins, "Print where each value and section stands");
    defineFile(command, file);
  }

  ExitCode run() const {
    Loader loader(load);
    Origins origins;
    const IConfigPtr config = withOrigins ? loader.load(file, origins) : loader.load(file);
    std::cout << shownArgument(file) << "\n";
    TreePrinter printer(config, loader.getNames(), withOrigins ? &origins : nullptr);
    service::util::config::visit(config, printer);
    return FINE;
  }

 private:
  LoadOptions load;
  bool withOrigins = false;
  std::string file;
};

}  // namespace

void addTree(CLI::App& app, Chosen& chosen) {
  addCommand<Tree>(app, chosen);
}

}  // namespace zuconfig
