// One way to load the same content with each library, from the format that suits it.
//
// What a function returns is what a program would keep.
#ifndef BENCHMARKS_FORMATLOADERS_HPP
#define BENCHMARKS_FORMATLOADERS_HPP

#include <rapidjson/document.h>
#include <simdjson.h>
#include <yaml-cpp/yaml.h>

#include <toml++/toml.h>
#include <boost/property_tree/ptree.hpp>
#include <libconfig.h++>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Tree.hpp"

namespace benchmarks {

// All that a file holds.
std::string textOf(const std::string& file);

// A document whose texts stay where they were read.
struct RapidJson {
  std::string text;
  rapidjson::Document document;
};

nlohmann::json loadNlohmann(const std::string& file);
RapidJson loadRapidJson(const std::string& file);
Tree walkRapidJson(const std::string& file);
simdjson::dom::parser loadSimdjson(const std::string& file);
Tree walkSimdjson(const std::string& file);
toml::table loadToml(const std::string& file);
YAML::Node loadYaml(const std::string& file);
std::unique_ptr<libconfig::Config> loadLibconfig(const std::string& file);
boost::property_tree::ptree loadInfo(const std::string& file);
Tree walkPugixmlElements(const std::string& file);

}  // namespace benchmarks

#endif
