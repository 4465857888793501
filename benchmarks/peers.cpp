// Loads of the same content from any format: what users would pick instead.

#include "FormatLoaders.hpp"
#include "Loaders.hpp"
#include "registration.hpp"

namespace benchmarks {

namespace {

void addPeers(Inputs& inputs, const std::string& figure, const Shape& shape, std::size_t batch) {
  const auto addOne = [&](const char* who, Format format, auto load) {
    add(figure, who, [&inputs, shape, batch, format, load](benchmark::State& state) {
      const std::string file = inputs.file(shape, format);
      timeMaking(state, batch, [&] { return load(file); });
    });
  };
  addOne(ours, Format::CONFIG, [](const std::string& file) { return loadConfig(file, false); });
  addOne("pugixml and walk, XML", Format::ELEMENTS, walkPugixmlElements);
  addOne("nlohmann-json, JSON", Format::JSON, loadNlohmann);
  addOne("toml++, TOML", Format::TOML, loadToml);
  addOne("yaml-cpp, YAML", Format::YAML, loadYaml);
  addOne("libconfig, its own", Format::LIBCONFIG_LISTS, loadLibconfig);
  addOne("Boost.PropertyTree, INFO", Format::INFO, loadInfo);
  addOne("Poco, XML", Format::ELEMENTS, loadPoco);
  addOne("RapidJSON and walk, JSON", Format::JSON, walkRapidJson);
  addOne("RapidJSON in place, JSON", Format::JSON, loadRapidJson);
  addOne("simdjson and walk, JSON", Format::JSON, walkSimdjson);
  addOne("simdjson in place, JSON", Format::JSON, loadSimdjson);
}

}  // namespace

void addPeers(Inputs& inputs, const Extent& extent) {
  addPeers(inputs, "load small, any format", smallShape, 16);
  if (!extent.smallOnly) addPeers(inputs, "load large, any format", largeShape, 1);
}

}  // namespace benchmarks
