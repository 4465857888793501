// The timings. Options: those of Google Benchmark, then --small (each figure on small inputs only).

#include <cstring>
#include <exception>
#include <iostream>

#include "registration.hpp"
#include "service/util/config/xml/Session.hpp"

int main(int argc, char** argv) {
  using namespace benchmarks;
  benchmark::Initialize(&argc, argv);
  const Extent extent = {argc == 2 && std::strcmp(argv[1], "--small") == 0};
  if (!extent.smallOnly && benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  try {
    using service::util::config::xml::Session;
    const Session session(Session::NOW);
    Inputs inputs;
    addLoads(inputs, extent);
    addPeers(inputs, extent);
    addIncludes(inputs, extent);
    addGrowth(inputs, extent);
    addReads(inputs, extent);
    addBuilding(extent);
    addDestruction(extent);
    addBindings();
    addLive(extent);
    addExceptions();
    addChecks(extent);
    addProcesses(inputs);
    addCommands(inputs, extent);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "zuBenchmark: " << failure.what() << '\n';
    return 1;
  }
}
