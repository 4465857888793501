// Loads of files, with the floors and peers; loads with includes; growth.

#include <malloc.h>
#include <stdlib.h>  // setenv
#include <sys/resource.h>

#include <memory>
#include <xercesc/util/PlatformUtils.hpp>

#include "FormatLoaders.hpp"
#include "Loaders.hpp"
#include "Recorder.hpp"
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

// Files that go through the XML library: the reader of plain files gives one up at its start, the
// other at its end.
void addNotPlainLoads(Inputs& inputs, const Input& input) {
  const auto addOne = [&inputs, input](const std::string& figure, const char* who, Format format,
                                       auto load) {
    add(figure, who, [&inputs, input, format, load](benchmark::State& state) {
      const std::string file = inputs.file(input.shape, format);
      timeMaking(state, input.batch, [&] { return load(file); });
    });
  };
  const auto loadOurs = [](const std::string& file) { return loadConfig(file, false); };
  const std::string figure = std::string("load ") + input.name + ", not plain";
  addOne(figure, ours, Format::DOCUMENT_TYPE, loadOurs);
  addOne(figure, tagged, Format::DOCUMENT_TYPE,
         [](const std::string& file) { return parse(file, false); });
  addOne(figure, "pugixml and walk", Format::DOCUMENT_TYPE, loadPugixml);
  const std::string givenUp = std::string("load ") + input.name + ", given up at the last element";
  addOne(givenUp, ours, Format::PREFIX_LAST, loadOurs);
  addOne(givenUp, "with ZU_CONFIG_PLAIN=off", Format::PREFIX_LAST, [](const std::string& file) {
    ::setenv("ZU_CONFIG_PLAIN", "off", 1);
    auto config = loadConfig(file, false);
    ::unsetenv("ZU_CONFIG_PLAIN");
    return config;
  });
}

// The least that any loader into this tree must do.
void addReadAndBuild(Inputs& inputs, const Input& input) {
  add(std::string("load ") + input.name, "read the file and build the tree from a vector",
      [&inputs, input](benchmark::State& state) {
        const std::string file = inputs.file(input.shape);
        Recorder content;
        tell(input.shape, content);
        timeMaking(state, input.batch, [&] {
          benchmark::DoNotOptimize(textOf(file));
          return buildConfig(content);
        });
      });
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
      using service::util::config::xml::Session;
      const Session session(Session::NOW);
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

// files() makes the files when they are first needed; alone() files of the same content that
// include none.
template <class Files, class Alone>
void addIncludes(const std::string& figure, const Files& files, const Alone& alone) {
  for (const bool validate : {false, true}) {
    add(figure, validate ? oursValidated : ours, [files, validate](benchmark::State& state) {
      const std::string first = files().front();
      timeMaking(state, 1, [&] { return loadConfig(first, validate); });
    });
  }
  add(figure, "sum of its files loaded alone", [alone](benchmark::State& state) {
    const std::vector<std::string> all = alone();
    timeMaking(state, 1, [&] {
      std::vector<service::util::config::IConfigPtr> configs;
      for (const std::string& file : all) configs.push_back(loadConfig(file, false));
      return configs;
    });
  });
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
  std::vector<Input> all = {smallInput};
  if (!extent.smallOnly) {
    all.push_back({"medium", mediumShape, 1});
    all.push_back({"large", largeShape, 1});
  }
  for (const Input& input : all) {
    addLoads(inputs, input);
    addReadAndBuild(inputs, input);
  }
  for (const Input& input : all) addNotPlainLoads(inputs, input);
  addColdLoad(inputs);
  addObservedLoad(inputs, extent.smallOnly ? smallShape : largeShape);
}

void addIncludes(Inputs& inputs, const Extent& extent) {
  const std::size_t chained = extent.smallOnly ? 3 : 100;
  const std::size_t included = extent.smallOnly ? 10 : 1000;
  // The files that the first one includes stand alone.
  const auto alone = [&inputs](std::size_t count) {
    std::vector<std::string> files = inputs.sideBySide(count);
    files.erase(files.begin());
    return files;
  };
  addIncludes(
      "load a chain of " + std::to_string(chained) + " includes",
      [&inputs, chained] { return inputs.chain(chained); },
      [alone, chained] { return alone(chained); });
  addIncludes(
      "load " + std::to_string(included) + " files side by side",
      [&inputs, included] { return inputs.sideBySide(included); },
      [alone, included] { return alone(included); });
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
