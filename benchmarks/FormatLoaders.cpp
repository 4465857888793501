#include "FormatLoaders.hpp"

#include <boost/property_tree/info_parser.hpp>
#include <fstream>
#include <pugixml.hpp>
#include <stdexcept>
#include <string_view>

namespace benchmarks {

namespace {

// The interfaces of both JSON libraries, as far as the walk needs them.
bool isText(const rapidjson::Value& value) {
  return value.IsString();
}

std::string_view textOf(const rapidjson::Value& value) {
  return {value.GetString(), value.GetStringLength()};
}

template <class Step>
void forEachMember(const rapidjson::Value& object, const Step& step) {
  for (const auto& member : object.GetObject()) step(textOf(member.name), member.value);
}

auto elementsOf(const rapidjson::Value& list) {
  return list.GetArray();
}

bool isText(const simdjson::dom::element& value) {
  return value.is_string();
}

std::string_view textOf(const simdjson::dom::element& value) {
  return value.get_string();
}

template <class Step>
void forEachMember(const simdjson::dom::element& object, const Step& step) {
  for (const auto& member : object.get_object()) step(member.key, member.value);
}

simdjson::dom::array elementsOf(const simdjson::dom::element& list) {
  return list.get_array();
}

template <class Value>
void walk(const Value& object, Tree& tree) {
  forEachMember(object, [&tree](std::string_view key, const Value& value) {
    const std::string name(key);
    if (isText(value)) {
      tree.properties[name].emplace_back(textOf(value));
      return;
    }
    for (const Value& element : elementsOf(value)) {
      if (isText(element)) {
        tree.properties[name].emplace_back(textOf(element));
      } else {
        walk(element, tree.sections[name].emplace_back());
      }
    }
  });
}

void walk(const pugi::xml_node& element, Tree& tree) {
  for (const pugi::xml_node& child : element.children()) {
    const pugi::xml_node content = child.first_child();
    if (content.type() == pugi::node_pcdata) {
      tree.properties[child.name()].emplace_back(content.value());
    } else {
      walk(child, tree.sections[child.name()].emplace_back());
    }
  }
}

}  // namespace

std::string textOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary | std::ios::ate);
  std::string text(static_cast<std::size_t>(in.tellg()), '\0');
  in.seekg(0);
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (!in) throw std::runtime_error("cannot read " + file);
  return text;
}

nlohmann::json loadNlohmann(const std::string& file) {
  return nlohmann::json::parse(textOf(file));
}

RapidJson loadRapidJson(const std::string& file) {
  RapidJson result = {textOf(file), {}};
  if (result.document.ParseInsitu(result.text.data()).HasParseError()) {
    throw std::runtime_error("cannot parse " + file);
  }
  return result;
}

Tree walkRapidJson(const std::string& file) {
  const RapidJson json = loadRapidJson(file);
  Tree tree;
  walk<rapidjson::Value>(json.document, tree);
  return tree;
}

simdjson::dom::parser loadSimdjson(const std::string& file) {
  simdjson::dom::parser parser;
  if (parser.load(file).error() != simdjson::SUCCESS) {
    throw std::runtime_error("cannot parse " + file);
  }
  return parser;
}

Tree walkSimdjson(const std::string& file) {
  simdjson::dom::parser parser;
  const simdjson::dom::element root = parser.load(file);
  Tree tree;
  walk(root, tree);
  return tree;
}

toml::table loadToml(const std::string& file) {
  return toml::parse_file(file);
}

YAML::Node loadYaml(const std::string& file) {
  return YAML::LoadFile(file);
}

std::unique_ptr<libconfig::Config> loadLibconfig(const std::string& file) {
  auto config = std::make_unique<libconfig::Config>();
  config->readFile(file.c_str());
  return config;
}

boost::property_tree::ptree loadInfo(const std::string& file) {
  boost::property_tree::ptree tree;
  boost::property_tree::read_info(file, tree);
  return tree;
}

Tree walkPugixmlElements(const std::string& file) {
  pugi::xml_document document;
  if (!document.load_file(file.c_str())) throw std::runtime_error("cannot parse " + file);
  Tree tree;
  walk(document.document_element(), tree);
  return tree;
}

}  // namespace benchmarks
