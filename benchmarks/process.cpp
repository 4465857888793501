// Whole programs, from their start to their exit.

#include "registration.hpp"
#include "run.hpp"

namespace benchmarks {

void addProcesses(Inputs& inputs) {
  const std::pair<const char*, const char*> programs[] = {
      {ours, "zuProcess_config"},
      {"the same with pugixml", "zuProcess_pugixml"},
      {"the same with Poco", "zuProcess_poco"},
      {"empty main, linked to the XML library", "zuProcess_xmlLibrary"},
      {"empty main, linked to nothing", "zuProcess_nothing"}};
  for (const auto& [who, program] : programs) {
    add("process, small file", who, [&inputs, program = program](benchmark::State& state) {
      std::vector<std::string> words = parts(samples(smallShape, 1).front().path);
      words.insert(words.begin(), inputs.file(smallShape));
      for (auto _ : state) {
        if (run(program, words) != 0) return state.SkipWithError("the program failed");
      }
    })->UseRealTime();
  }
}

}  // namespace benchmarks
