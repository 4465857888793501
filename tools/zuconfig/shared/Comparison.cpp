#include "shared/Comparison.hpp"

#include <algorithm>
#include <iterator>
#include <vector>

#include "service/util/config/visit.hpp"

namespace zuconfig {

namespace {

using service::util::config::getPropertyNames;
using service::util::config::getSectionNames;
using service::util::config::spellPath;

class Comparison {
 public:
  explicit Comparison(ComparisonVisitor& visitor) : visitor(visitor) {}

  void run(const IConfigPtr& a, const IConfigPtr& b) {
    enter({a, b});
    while (!levels.empty()) {
      Level& level = levels.back();
      if (level.name < level.names.size()) {
        compareSections(level);
        continue;
      }
      levels.pop_back();
      if (!levels.empty()) visitor.leaveSection();
    }
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
      visitor.value({i < inA ? pair.a : nullptr, i < inB ? pair.b : nullptr, name, i, count,
                     spellPath(path, name, i, count)},
                    valueA, valueB);
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
    visitor.enterSection({index < inA ? pair.a : nullptr, index < inB ? pair.b : nullptr, name,
                          index, count, selector});
    const Pair below = {index < inA ? pair.a->getSection(name, index) : nullptr,
                        index < inB ? pair.b->getSection(name, index) : nullptr};
    if (++level.index == count) {
      level.index = 0;
      ++level.name;
    }
    enter(below, selector);
  }

  ComparisonVisitor& visitor;
  std::vector<Level> levels;  // outermost first
};

}  // namespace

void compare(const IConfigPtr& a, const IConfigPtr& b, ComparisonVisitor& visitor) {
  Comparison(visitor).run(a, b);
}

}  // namespace zuconfig
