// Reads, building in memory, and a failed look-up.

#include <boost/property_tree/ptree.hpp>
#include <memory>

#include "Readers.hpp"
#include "Recorder.hpp"
#include "cppUtil/err/Exception.hpp"
#include "registration.hpp"
#include "service/util/config/internal/Config.hpp"

namespace benchmarks {

namespace {

using service::util::config::internal::Config;

constexpr const char* poco = "Poco getString";
constexpr const char* boostTree = "Boost.PropertyTree get<std::string>";
constexpr const char* libconfigLookup = "libconfig lookupValue";
constexpr const char* pugixmlXPath = "pugixml XPath, compiled once";

constexpr std::size_t sampleSize = 64;  // a power of two

// What a figure reads from: the configuration of a shape, and properties that it may hold.
struct Content {
  Inputs& inputs;
  Shape shape;
  std::vector<Sample> samples;
};

// A reader that answers wrongly would be timed for something else.
template <class Reader>
bool answersRightly(const Reader& reader, const Content& content) {
  for (std::size_t i = 0; i < sampleSize; ++i) {
    std::string value;
    if (!reader.read(i, value) || value != content.samples[i].value) return false;
  }
  return true;
}

// Times reads of properties that exist.
template <class Reader>
void addRead(const std::string& figure, const std::string& who, const Content& content) {
  add(figure, who, [content](benchmark::State& state) {
    const Reader reader(content.inputs, content.shape, pathsOf(content.samples));
    if (!answersRightly(reader, content)) return state.SkipWithError("wrong value");
    std::string value;
    std::size_t i = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(reader.read(i, value));
      benchmark::DoNotOptimize(value);
      i = (i + 1) % sampleSize;
    }
  });
}

// Times reads of properties that do not exist in a section that does.
template <class Reader>
void addMissing(const std::string& who, const Content& content) {
  add("read a missing property", who, [content](benchmark::State& state) {
    Paths paths = pathsOf(content.samples);
    for (std::string& path : paths) path = path.substr(0, path.rfind('.')) + ".missing";
    const Reader reader(content.inputs, content.shape, paths);
    std::string value;
    std::size_t i = 0;
    bool found = false;
    for (auto _ : state) {
      found |= reader.readOptional(i, value);
      i = (i + 1) % sampleSize;
    }
    if (found) state.SkipWithError("found what does not exist");
  });
}

boost::property_tree::ptree buildBoost(const Recorder& content) {
  using boost::property_tree::ptree;
  ptree root;
  content.replay(
      &root,
      [](ptree* node, const std::string& name) {
        return &node->push_back({name, ptree()})->second;
      },
      [](ptree* node, const std::string& name, const std::string& value) {
        node->push_back({name, ptree(value)});
      });
  return root;
}

pugi::xml_document buildPugixml(const Recorder& content) {
  pugi::xml_document document;
  content.replay(
      document.append_child("config"),
      [](pugi::xml_node node, const std::string& name) { return node.append_child(name.c_str()); },
      [](pugi::xml_node node, const std::string& name, const std::string& value) {
        node.append_child(name.c_str()).text().set(value.c_str());
      });
  return document;
}

// Runs act that many frames further down.
template <class Act>
[[gnu::noinline]] void atDepth(int depth, const Act& act) {
  if (depth == 0) {
    act();
  } else {
    atDepth(depth - 1, act);
  }
  asm volatile("");  // keeps the call above from becoming a jump
}

// Times act(), which throws a Failure, down the stack.
template <class Failure, class Act>
void addThrow(int depth, const char* who, const Act& act) {
  add("thrown and caught at depth " + std::to_string(depth), who,
      [depth, act](benchmark::State& state) {
        atDepth(depth, [&] {
          for (auto _ : state) {
            try {
              act();
            } catch (const Failure& failure) {
              benchmark::DoNotOptimize(&failure);
            }
          }
        });
      });
}

}  // namespace

void addReads(Inputs& inputs, const Extent& extent) {
  const Shape shape = extent.smallOnly ? smallShape : mediumShape;
  const Content content = {inputs, shape, samples(shape, sampleSize)};

  const std::string atHand = "read from a section at hand";
  addRead<SectionAtHand>(atHand, ours, content);
  addRead<BoostAtHand>(atHand, boostTree, content);
  addRead<PocoAtHand>(atHand, poco, content);
  addRead<LibconfigAtHand>(atHand, libconfigLookup, content);
  addRead<PugixmlAtHand>(atHand, pugixmlXPath, content);

  const std::string byPath = "read by path";
  addRead<ByNameAndIndex>(byPath, "ours, names and indices", content);
  addRead<SelectOnce>(byPath, "ours, Select built once", content);
  addRead<SelectEachTime>(byPath, "ours, Select built each time", content);
  addRead<BoostReader>(byPath, boostTree, content);
  addRead<PocoReader>(byPath, poco, content);
  addRead<LibconfigReader>(byPath, libconfigLookup, content);
  addRead<PugixmlReader>(byPath, pugixmlXPath, content);

  addMissing<SelectOnce>(ours, content);
  addMissing<BoostReader>("Boost.PropertyTree get_optional<std::string>", content);
  addMissing<PocoReader>("Poco getString with a default", content);
  addMissing<LibconfigReader>(libconfigLookup, content);
  addMissing<PugixmlReader>(pugixmlXPath, content);
}

void addBuilding(const Extent& extent) {
  const Shape shape = extent.smallOnly ? smallShape : mediumShape;
  const auto addOne = [&](const char* who, auto build) {
    add("build in memory, per property", who, [shape, build](benchmark::State& state) {
      Recorder content;
      generate(shape, 1, content);
      timeMaking(state, 1, [&] { return build(content); });
      setUnits(state, shape.propertyCount());
    });
  };
  addOne(ours, buildConfig);
  addOne("Boost.PropertyTree", buildBoost);
  addOne("pugixml", buildPugixml);
}

void addDestruction(const Extent& extent) {
  const Shape shape = extent.smallOnly ? smallShape : largeShape;
  const char* figure = "destroy a large configuration";
  add(figure, ours, [shape](benchmark::State& state) {
    Recorder content;
    generate(shape, 1, content);
    for (auto _ : state) {
      state.PauseTiming();
      ::malloc_trim(0);
      auto config = buildConfig(content);
      state.ResumeTiming();
      config.reset();
    }
  });
  add(figure, "build it", [shape](benchmark::State& state) {
    Recorder content;
    generate(shape, 1, content);
    timeMaking(state, 1, [&] { return buildConfig(content); });
  });
}

void addExceptions() {
  for (const int depth : {10, 100}) {
    addThrow<cppUtil::err::Exception>(depth, ours,
                                      [config = Config()] { config.getSection("missing", 0); });
    addThrow<boost::property_tree::ptree_error>(
        depth, "Boost.PropertyTree", [tree = boost::property_tree::ptree()] {
          benchmark::DoNotOptimize(tree.get_child("missing").data());
        });
  }
}

}  // namespace benchmarks
