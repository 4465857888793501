// The command on inputs ten times as large: each part of them must not cost more.

#include "registration.hpp"
#include "run.hpp"

namespace benchmarks {

namespace {

Shape shapeOf(std::size_t groups) {
  return {groups, largeShape.children, largeShape.properties};
}

struct Growth {
  const char* what;
  std::size_t count;  // in the smaller of the two
  std::size_t units;  // of which the time is told, in each of the count
  std::vector<std::string> words;
  std::string (*input)(Inputs&, std::size_t count);
};

std::string wide(Inputs& inputs, std::size_t groups) {
  return inputs.file(shapeOf(groups));
}

const std::size_t properties = shapeOf(1).propertyCount();

const Growth growths[] = {
    {"zuconfig check, per property", 100, properties, {"check"}, wide},
    {"zuconfig dump, per property", 100, properties, {"dump"}, wide},
    {"zuconfig includes, per file side by side",
     100,
     1,
     {"includes"},
     [](Inputs& inputs, std::size_t count) { return inputs.sideBySide(count).front(); }},
    {"zuconfig includes --format json, per file of a chain",
     100,
     1,
     {"includes", "--format", "json"},
     [](Inputs& inputs, std::size_t count) { return inputs.chain(count).front(); }},
    {"zuconfig dump --format json, per section in sections",
     500,
     1,
     {"dump", "--format", "json"},
     [](Inputs& inputs, std::size_t count) { return inputs.deep(count); }},
};

}  // namespace

void addCommands(Inputs& inputs, const Extent& extent) {
  for (const Growth& growth : growths) {
    for (const std::size_t factor : {1, 10}) {
      const std::size_t count = growth.count * factor / (extent.smallOnly ? 50 : 1);
      add(std::string("growth: ") + growth.what, factor == 1 ? "1x" : "ours, 10x",
          [&inputs, &growth, count](benchmark::State& state) {
            std::vector<std::string> words = growth.words;
            words.push_back(growth.input(inputs, count));
            for (auto _ : state) {
              if (run("../tools/zuconfig/zuconfig", words) != 0) {
                return state.SkipWithError("the command failed");
              }
            }
            setUnits(state, count * growth.units);
          })
          ->UseRealTime();
    }
  }
}

}  // namespace benchmarks
