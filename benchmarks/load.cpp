// Loads of files, with the floors and peers; loads with includes; growth.

#include <malloc.h>
#include <sys/resource.h>

#include <memory>
#include <xercesc/util/PlatformUtils.hpp>

#include "Loaders.hpp"
#include "registration.hpp"
#include "service/util/config/xml/Origins.hpp"
#include "service/util/config/xml/Session.hpp"

namespace benchmarks {

namespace {

using xercesc::XMLPlatformUtils;

constexpr const char* oursValidated = "ours, validated";
constexpr const char* tagged = "F1: xerces::Parser";
constexpr const char* taggedValidating = "xerces::Parser, validating";
constexpr const char* bare = "bare XercesDOMParser";

struct Input {
  const char* name;
  Shape shape;
  std::size_t batch;
};

// The largest load takes as long as all the rest of a round.
constexpr int growthRounds = 5;

constexpr Input smallInput = {"small", smallShape, 16};

struct Kept {};  // of a parse, nothing is kept

Kept parse(const std::string& file, bool validate) {
  parseWithTags(file, validate);
  return {};
}

void addLoads(Inputs& inputs, const Input& input) {
  const auto addOne = [&inputs, input](const std::string& figure, const char* who, auto load) {
    add(figure, who, [&inputs, input, load](benchmark::State& state) {
      const std::string file = inputs.file(input.shape);
      timeMaking(state, input.batch, [&] { return load(file); });
    });
  };
  const std::string figure = std::string("load ") + input.name;
  addOne(figure, ours, [](const std::string& file) { return loadConfig(file, false); });
  addOne(figure, oursValidated, [](const std::string& file) { return loadConfig(file, true); });
  addOne(figure, tagged, [](const std::string& file) { return parse(file, false); });
  addOne(figure, taggedValidating, [](const std::string& file) { return parse(file, true); });
  addOne(figure, bare, [](const std::string& file) {
    parseBare(file);
    return Kept();
  });
  addOne(figure, "Poco XMLConfiguration", loadPoco);
  addOne(figure, "Boost.PropertyTree read_xml", loadBoost);
  addOne(figure, "pugixml and walk", loadPugixml);
  addOne(figure, "tinyxml2 and walk", loadTinyxml2);
}

// Undoes the session that the program holds, while it lives.
class WithoutXmlLibrary {
 public:
  WithoutXmlLibrary() { XMLPlatformUtils::Terminate(); }
  ~WithoutXmlLibrary() { XMLPlatformUtils::Initialize(); }
  WithoutXmlLibrary(const WithoutXmlLibrary&) = delete;
  WithoutXmlLibrary& operator=(const WithoutXmlLibrary&) = delete;
};

// What a load costs when it has to start the XML library first.
void addColdLoad(Inputs& inputs) {
  const std::string figure = "load small, XML library started for it";
  add(figure, ours, [&inputs](benchmark::State& state) {
    const std::string file = inputs.file(smallShape);
    const WithoutXmlLibrary cold;
    timeMaking(state, smallInput.batch, [&] { return loadConfig(file, false); });
  });
  add(figure, "the program holds a Session", [&inputs](benchmark::State& state) {
    const std::string file = inputs.file(smallShape);
    timeMaking(state, smallInput.batch, [&] { return loadConfig(file, false); });
  });
  add(figure, "a Session alone", [](benchmark::State& state) {
    const WithoutXmlLibrary cold;
    timeMaking(state, smallInput.batch, [] {
      const service::util::config::xml::Session session;
      return Kept();
    });
  });
}

// What it costs to learn where everything comes from.
void addObservedLoad(Inputs& inputs, const Shape& shape) {
  const std::string figure = "load with origins";
  add(figure, ours, [&inputs, shape](benchmark::State& state) {
    const std::string file = inputs.file(shape);
    timeMaking(state, 1, [&] {
      auto origins = std::make_unique<service::util::config::xml::Origins>();
      service::util::config::xml::create(file, {}, false, *origins);
      return origins;
    });
  });
  add(figure, "load without an observer", [&inputs, shape](benchmark::State& state) {
    const std::string file = inputs.file(shape);
    timeMaking(state, 1, [&] { return loadConfig(file, false); });
  });
}

// files() makes the files when they are first needed.
template <class Files>
void addIncludes(const std::string& figure, const Files& files) {
  for (const bool validate : {false, true}) {
    add(figure, validate ? oursValidated : ours, [files, validate](benchmark::State& state) {
      const std::string first = files().front();
      timeMaking(state, 1, [&] { return loadConfig(first, validate); });
    });
  }
  add(figure, "sum of F1", [files](benchmark::State& state) {
    const std::vector<std::string> all = files();
    timeMaking(state, 1, [&] {
      for (const std::string& file : all) parseWithTags(file, false);
      return Kept();
    });
  });
}

}  // namespace

void addLoads(Inputs& inputs, const Extent& extent) {
  addLoads(inputs, smallInput);
  if (!extent.smallOnly) {
    addLoads(inputs, {"medium", mediumShape, 1});
    addLoads(inputs, {"large", largeShape, 1});
  }
  addColdLoad(inputs);
  addObservedLoad(inputs, extent.smallOnly ? smallShape : largeShape);
}

void addIncludes(Inputs& inputs, const Extent& extent) {
  const std::size_t chained = extent.smallOnly ? 3 : 100;
  const std::size_t included = extent.smallOnly ? 10 : 1000;
  addIncludes("load a chain of " + std::to_string(chained) + " includes",
              [&inputs, chained] { return inputs.chain(chained); });
  addIncludes("load " + std::to_string(included) + " files side by side",
              [&inputs, included] { return inputs.sideBySide(included); });
}

// Times the program's own instructions. The kernel's part, which is to give each page of fresh
// memory, depends on the host: the first use of memory by a virtual machine takes several times as
// long. How many pages there are is told by the figures for memory.
void addGrowth(Inputs& inputs, const Extent& extent) {
  const auto userSeconds = [] {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec) * 1e-6;
  };
  for (const std::size_t factor : {1, 4, 16}) {
    Shape shape = extent.smallOnly ? smallShape : largeShape;
    shape.groups *= factor;
    const std::string who = (factor == 1 ? "" : "ours, ") + std::to_string(factor) + "x";
    add("growth: load, per property", who,
        [&inputs, shape, userSeconds](benchmark::State& state) {
          const std::string file = inputs.file(shape);
          for (auto _ : state) {
            const double start = userSeconds();
            auto config = loadConfig(file, false);
            state.SetIterationTime(userSeconds() - start);
            config.reset();
            ::malloc_trim(0);
          }
          setUnits(state, shape.propertyCount());
        })
        ->Repetitions(growthRounds)
        ->UseManualTime();
  }
}

}  // namespace benchmarks
