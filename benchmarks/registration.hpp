// How the timings are put in: a benchmark is called "figure/who", where who is "ours", "ours, " and
// a variant, or a peer or floor that those stand beside. table.py reads the names back.
#ifndef BENCHMARKS_REGISTRATION_HPP
#define BENCHMARKS_REGISTRATION_HPP

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstddef>
#include <string>
#include <vector>

#include "Inputs.hpp"

namespace benchmarks {

constexpr const char* ours = "ours";

// What to measure: everything, or each figure on small inputs only.
struct Extent {
  bool smallOnly;
};

void addLoads(Inputs& inputs, const Extent& extent);
void addPeers(Inputs& inputs, const Extent& extent);
void addIncludes(Inputs& inputs, const Extent& extent);
void addGrowth(Inputs& inputs, const Extent& extent);
void addReads(Inputs& inputs, const Extent& extent);
void addBuilding(const Extent& extent);
void addDestruction(const Extent& extent);
void addBindings();
void addLive(const Extent& extent);
void addExceptions();
void addChecks(const Extent& extent);
void addProcesses(Inputs& inputs);
void addCommands(Inputs& inputs, const Extent& extent);

template <class Run>
benchmark::internal::Benchmark* add(const std::string& figure, const std::string& who,
                                    const Run& run) {
  return benchmark::RegisterBenchmark((figure + "/" + who).c_str(), run);
}

// The time of one iteration stands for that many units; the figure is the time of one unit.
inline void setUnits(benchmark::State& state, std::size_t units) {
  state.counters["units"] = static_cast<double>(units);
}

// Times calls of make(), which returns what a program would keep; its destruction is not timed.
// batch: how many to make between two looks at the clock, so that the clock does not count. What is
// large enough to be made alone starts each time from a heap without freed memory, as it would in a
// program that makes it once.
template <class Make>
void timeMaking(benchmark::State& state, std::size_t batch, const Make& make) {
  std::vector<decltype(make())> results;
  results.reserve(batch);
  for (auto _ : state) {
    for (std::size_t i = 0; i < batch; ++i) results.push_back(make());
    state.PauseTiming();
    results.clear();
    if (batch == 1) ::malloc_trim(0);
    state.ResumeTiming();
  }
  setUnits(state, batch);
}

}  // namespace benchmarks

#endif
