#include "Readers.hpp"

#include <algorithm>

namespace benchmarks {

namespace {

using service::util::config::IConfigPtr;
using service::util::config::Select;

IConfigPtr config(Inputs& inputs, const Shape& shape) {
  return loadConfig(inputs.file(shape), false);
}

std::string elements(Inputs& inputs, const Shape& shape) {
  return inputs.file(shape, Format::ELEMENTS);
}

std::pair<std::string, std::string> cutAtLastDot(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  return {path.substr(0, dot), path.substr(dot + 1)};
}

std::string xpath(std::string path) {
  std::replace(path.begin(), path.end(), '.', '/');
  return "/config/" + path;
}

}  // namespace

Paths pathsOf(const std::vector<Sample>& samples) {
  Paths paths;
  for (const Sample& sample : samples) paths.push_back(sample.path);
  return paths;
}

ByNameAndIndex::ByNameAndIndex(Inputs& inputs, const Shape& shape, const Paths& paths)
    : config(benchmarks::config(inputs, shape)) {
  for (const std::string& path : paths) {
    const auto name = parts(path);
    names.push_back({name.at(0), name.at(1), name.at(2)});
  }
}

SelectOnce::SelectOnce(Inputs& inputs, const Shape& shape, const Paths& paths)
    : config(benchmarks::config(inputs, shape)), selects(paths.begin(), paths.end()) {}

SelectEachTime::SelectEachTime(Inputs& inputs, const Shape& shape, const Paths& paths)
    : config(benchmarks::config(inputs, shape)), paths(paths) {}

BoostReader::BoostReader(Inputs& inputs, const Shape& shape, const Paths& paths)
    : tree(loadBoost(elements(inputs, shape))), root(&tree.get_child("config")), paths(paths) {}

PocoReader::PocoReader(Inputs& inputs, const Shape& shape, const Paths& paths)
    : config(loadPoco(elements(inputs, shape))), paths(paths) {}

LibconfigReader::LibconfigReader(Inputs& inputs, const Shape& shape, const Paths& paths)
    : paths(paths) {
  config.readFile(inputs.file(shape, Format::LIBCONFIG).c_str());
}

PugixmlReader::PugixmlReader(Inputs& inputs, const Shape& shape, const Paths& paths)
    : document(loadPugixmlDocument(elements(inputs, shape))) {
  for (const std::string& path : paths) queries.emplace_back(xpath(path).c_str());
}

SectionAtHand::SectionAtHand(Inputs& inputs, const Shape& shape, const Paths& paths) {
  const IConfigPtr root = config(inputs, shape);
  for (const std::string& path : paths) {
    const auto name = parts(path);
    sections.emplace_back(root->getSection(name.at(0), 0)->getSection(name.at(1), 0), name.at(2));
  }
}

BoostAtHand::BoostAtHand(Inputs& inputs, const Shape& shape, const Paths& paths)
    : tree(loadBoost(elements(inputs, shape))) {
  for (const std::string& path : paths) {
    const auto [section, name] = cutAtLastDot(path);
    sections.emplace_back(&tree.get_child("config." + section), name);
  }
}

PocoAtHand::PocoAtHand(Inputs& inputs, const Shape& shape, const Paths& paths)
    : config(loadPoco(elements(inputs, shape))) {
  for (const std::string& path : paths) {
    const auto [section, name] = cutAtLastDot(path);
    sections.emplace_back(config->createView(section), name);
  }
}

LibconfigAtHand::LibconfigAtHand(Inputs& inputs, const Shape& shape, const Paths& paths) {
  config.readFile(inputs.file(shape, Format::LIBCONFIG).c_str());
  for (const std::string& path : paths) {
    const auto [section, name] = cutAtLastDot(path);
    sections.emplace_back(&config.lookup(section), name);
  }
}

PugixmlAtHand::PugixmlAtHand(Inputs& inputs, const Shape& shape, const Paths& paths)
    : document(loadPugixmlDocument(elements(inputs, shape))) {
  for (const std::string& path : paths) {
    const auto [section, name] = cutAtLastDot(path);
    sections.emplace_back(document.select_node(xpath(section).c_str()).node(), name.c_str());
  }
}

}  // namespace benchmarks
