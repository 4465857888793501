// Whole programs, from their start to their exit.

#include "process.hpp"

#include "registration.hpp"
#include "run.hpp"

namespace benchmarks {

void addProcesses(Inputs& inputs) {
  for (const auto& [who, program] : processes) {
    add("process, small file", who, [&inputs, program = program](benchmark::State& state) {
      const std::vector<std::string> words = processArguments(inputs);
      for (auto _ : state) {
        if (run(program, words) != 0) return state.SkipWithError("the program failed");
      }
    })->UseRealTime();
  }
}

}  // namespace benchmarks
