// zuconfig diff: what two effective configurations do not have in common, by selector. Walks both
// at once; what occurs under the same name and index on both sides is compared, whatever files it
// came from.
#include <algorithm>
#include <iostream>
#include <iterator>

#include "commands/Command.hpp"
#include "service/util/config/visit.hpp"
#include "shared/Loader.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::getPropertyNames;
using service::util::config::getSectionNames;
using service::util::config::spellPath;

struct Side {
  std::string file;
  IConfigPtr config;
  Origins origins;
};

class Comparison {
 public:
  Comparison(const FileNames& files, const Side& a, const Side& b, bool isNull)
      : files(files), a(a), b(b), isNull(isNull) {}

  // Whether something differs.
  bool run() {
    enter({a.config, b.config});
    while (!levels.empty()) {
      Level& level = levels.back();
      if (level.name == level.names.size()) {
        levels.pop_back();
      } else {
        compareSections(level);
      }
    }
    return isDifferent;
  }

 private:
  // The section on both sides; null where there is none.
  struct Pair {
    IConfigPtr a;
    IConfigPtr b;
  };

  // A pair that is being compared, and the sections below that come next.
  struct Level {
    Pair pair;
    std::string path;
    std::vector<std::string> names;
    std::size_t name = 0;
    std::uint32_t index = 0;
  };

  using GetNames = std::vector<std::string> (*)(const IConfigPtr&);

  static std::vector<std::string> names(const Pair& pair, GetNames getNames) {
    const auto of = [&](const IConfigPtr& config) {
      return config == nullptr ? std::vector<std::string>() : getNames(config);
    };
    const auto first = of(pair.a);
    const auto second = of(pair.b);
    std::vector<std::string> all;
    std::set_union(first.begin(), first.end(), second.begin(), second.end(),
                   std::back_inserter(all));
    return all;
  }

  void enter(const Pair& pair, const std::string& path = "") {
    for (const std::string& name : names(pair, getPropertyNames)) {
      compareValues(pair, path, name);
    }
    levels.push_back({pair, path, names(pair, getSectionNames)});
  }

  void compareValues(const Pair& pair, const std::string& path, const std::string& name) {
    const std::uint32_t inA = pair.a == nullptr ? 0 : pair.a->getPropertyCount(name);
    const std::uint32_t inB = pair.b == nullptr ? 0 : pair.b->getPropertyCount(name);
    const std::uint32_t count = std::max(inA, inB);
    std::string valueA;
    std::string valueB;
    for (std::uint32_t i = 0; i < count; ++i) {
      if (i < inA) pair.a->getProperty(name, valueA, i);
      if (i < inB) pair.b->getProperty(name, valueB, i);
      if (i < inA && i < inB && valueA == valueB) continue;
      const std::string selector = spellPath(path, name, i, count);
      start(selector);
      if (i < inA) print('-', selector, valueA, a.origins.of(pair.a, name, i));
      if (i < inB) print('+', selector, valueB, b.origins.of(pair.b, name, i));
    }
  }

  void compareSections(Level& level) {
    const std::string name = level.names[level.name];
    const Pair& pair = level.pair;
    const std::uint32_t index = level.index;
    const std::uint32_t inA = pair.a == nullptr ? 0 : pair.a->getSectionCount(name);
    const std::uint32_t inB = pair.b == nullptr ? 0 : pair.b->getSectionCount(name);
    const std::uint32_t count = std::max(inA, inB);
    const std::string selector = spellPath(level.path, name, index, count);
    if (index >= inA || index >= inB) {
      start(selector + ".");
      if (index < inA) print('-', selector + ".", "", a.origins.ofSection(pair.a, name, index));
      if (index < inB) print('+', selector + ".", "", b.origins.ofSection(pair.b, name, index));
    }
    const Pair below = {index < inA ? pair.a->getSection(name, index) : nullptr,
                        index < inB ? pair.b->getSection(name, index) : nullptr};
    if (++level.index == count) {
      level.index = 0;
      ++level.name;
    }
    enter(below, selector);
  }

  void start(const std::string& selector) {
    if (!isDifferent && !isNull) {
      std::cout << colours.bold << "--- " << a.file << "\n+++ " << b.file << colours.off << "\n";
    }
    isDifferent = true;
    if (!isNull) std::cout << selector << "\n";
  }

  // A section has no value.
  void print(char sign, const std::string& selector, const std::string& value,
             const Origins::Origin& origin) const {
    if (isNull) {
      std::cout << sign << selector << '\n' << value << '\0';
      return;
    }
    std::cout << (sign == '-' ? colours.bad : colours.good) << sign << " "
              << (value.empty() ? "section" : escaped(value)) << colours.off << "  " << colours.dim
              << "(" << files.shown(origin) << ")" << colours.off << "\n";
  }

  const FileNames& files;
  const Side& a;
  const Side& b;
  const bool isNull;
  const Colours colours;
  bool isDifferent = false;
  std::vector<Level> levels;  // outermost first
};

struct Diff {
  static constexpr const char* name = "diff";
  static constexpr const char* summary = "Print what differs between two configurations";

  void define(CLI::App& command) {
    load.define(command);
    command.add_flag("-0,--null", isNull,
                     "Print records for scripts: sign, selector, line break, value, zero byte");
    command.add_option("A", fileA, "A configuration file; - is standard input")->required();
    command.add_option("B", fileB, "Another one")->required();
  }

  ExitCode run() const {
    Loader loader(load);
    Side a;
    Side b;
    read(loader, fileA, a);
    read(loader, fileB, b);
    return Comparison(loader.getNames(), a, b, isNull).run() ? NO : FINE;
  }

 private:
  static void read(Loader& loader, const std::string& file, Side& side) {
    side.file = shownArgument(file);
    side.config = loader.load(file, side.origins);
  }

  LoadOptions load;
  bool isNull = false;
  std::string fileA;
  std::string fileB;
};

}  // namespace

void addDiff(CLI::App& app, Chosen& chosen) {
  addCommand<Diff>(app, chosen);
}

}  // namespace zuconfig
