// What is counted, not timed. Prints lines of JSON: figure, who, unit and value. Option: --small.

#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>

#include "Folder.hpp"
#include "Readers.hpp"
#include "countedMalloc.hpp"
#include "process.hpp"
#include "run.hpp"
#include "service/util/config/xml/Session.hpp"

namespace benchmarks {

namespace {

constexpr const char* ours = "ours";

void print(const std::string& figure, const std::string& who, const char* unit, double value) {
  std::cout << "{\"figure\": \"" << figure << "\", \"who\": \"" << who << "\", \"unit\": \"" << unit
            << "\", \"value\": " << value << "}\n";
}

struct Footprint {
  double kept;       // bytes for each property, once the file is loaded
  double peak;       // the most during the load, per property
  double megabytes;  // the same in all
};

template <class Load>
Footprint footprint(Inputs& inputs, const Shape& shape, const Load& load) {
  load(inputs.file(smallShape));  // what is made once for the process stays out of the count
  const std::string file = inputs.file(shape);
  const std::size_t before = allocations().bytes;
  restartPeak();
  const auto result = load(file);
  const Allocations after = allocations();
  const auto perProperty = [&](std::size_t bytes) {
    return static_cast<double>(bytes - before) / static_cast<double>(shape.propertyCount());
  };
  return {perProperty(after.bytes), perProperty(after.peak),
          static_cast<double>(after.peak - before) * 1e-6};
}

service::util::config::IConfigPtr loadPlain(const std::string& file) {
  return loadConfig(file, false);
}

void printLoads(Inputs& inputs, const Shape& shape) {
  const auto printOne = [&](const std::string& who, const auto& load) {
    const Footprint memory = footprint(inputs, shape, load);
    print("memory kept per property", who, "bytes", memory.kept);
    print("memory at the peak of the load, per property", who, "bytes", memory.peak);
    print("memory at the peak of the large load", who, "MB", memory.megabytes);
  };
  printOne(ours, loadPlain);
  printOne("Boost.PropertyTree", loadBoost);
  printOne("Poco", loadPoco);
  printOne("pugixml, document kept", loadPugixmlDocument);
  printOne("pugixml, walked into a tree", loadPugixml);
}

void printGrowth(Inputs& inputs, Shape shape) {
  const std::size_t groups = shape.groups;
  for (const std::size_t factor : {1, 4, 16}) {
    shape.groups = groups * factor;
    const Footprint memory = footprint(inputs, shape, loadPlain);
    const std::string who = (factor == 1 ? "" : "ours, ") + std::to_string(factor) + "x";
    print("growth: memory kept per property", who, "bytes", memory.kept);
    print("growth: memory at the peak, per property", who, "bytes", memory.peak);
  }
}

template <class Reader>
void printAllocations(const std::string& who, Inputs& inputs, const Shape& shape,
                      const Paths& paths) {
  const Reader reader(inputs, shape, paths);
  std::string value(1000, ' ');  // has room for every value
  reader.read(0, value);
  const std::size_t before = allocations().count;
  for (std::size_t i = 0; i < paths.size(); ++i) reader.read(i, value);
  const std::size_t count = allocations().count - before;
  print("allocations per read", who, "",
        static_cast<double>(count) / static_cast<double>(paths.size()));
}

// The objects that it initialises, as the dynamic loader tells: the C library and itself, too.
std::size_t sharedObjectsOf(const char* program, const std::vector<std::string>& words) {
  const Folder folder;
  ::setenv("LD_DEBUG", "files", 1);
  ::setenv("LD_DEBUG_OUTPUT", (folder.path / "told").c_str(), 1);
  const int status = run(program, words);
  ::unsetenv("LD_DEBUG");
  ::unsetenv("LD_DEBUG_OUTPUT");
  if (status != 0) throw std::runtime_error(std::string(program) + " failed");
  std::size_t count = 0;
  std::ifstream told(std::filesystem::directory_iterator(folder.path)->path());
  for (std::string line; std::getline(told, line);) {
    if (line.find("calling init: ") != line.npos) ++count;
  }
  return count;
}

void printAll(bool smallOnly) {
  Inputs inputs;
  printLoads(inputs, smallOnly ? smallShape : largeShape);
  printGrowth(inputs, smallOnly ? smallShape : largeShape);
  for (const auto& [who, program] : processes) {
    const auto count = static_cast<double>(sharedObjectsOf(program, processArguments(inputs)));
    print("shared objects of the process", who, "", count);
  }

  const Shape shape = smallOnly ? smallShape : mediumShape;
  const Paths paths = pathsOf(samples(shape, 64));
  printAllocations<SelectOnce>("ours, Select built once", inputs, shape, paths);
  printAllocations<SelectEachTime>("ours, Select built each time", inputs, shape, paths);
  printAllocations<BoostReader>("Boost.PropertyTree get<std::string>", inputs, shape, paths);
  printAllocations<PocoReader>("Poco getString", inputs, shape, paths);
  printAllocations<LibconfigReader>("libconfig lookupValue", inputs, shape, paths);
  printAllocations<PugixmlReader>("pugixml XPath, compiled once", inputs, shape, paths);
}

}  // namespace

}  // namespace benchmarks

int main(int argc, char** argv) {
  try {
    using service::util::config::xml::Session;
    const Session session(Session::NOW);
    benchmarks::printAll(argc == 2 && std::strcmp(argv[1], "--small") == 0);
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "zuBenchmarkMemory: " << failure.what() << '\n';
    return 1;
  }
}
