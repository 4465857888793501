// The same look-ups with each library.
//
// Every reader holds the same configuration, in the form that is natural for its library, and has
//   bool read(i, value)    stores the property at path i; false when it is missing, where the
//                          library's call says so; otherwise only for properties that exist
//   bool readOptional(..)  the library's call for properties that may be missing
// A path is "section.section.property".
#ifndef BENCHMARKS_READERS_HPP
#define BENCHMARKS_READERS_HPP

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "Inputs.hpp"
#include "Loaders.hpp"
#include "service/util/config/Select.hpp"

namespace benchmarks {

using Paths = std::vector<std::string>;

Paths pathsOf(const std::vector<Sample>& samples);

// ---- This library: by name and index, with a Select built once, with a Select built at each use

class ByNameAndIndex {
 public:
  ByNameAndIndex(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    const Names& path = names[i];
    return config->getSection(path.outer, 0)
        ->getSection(path.inner, 0)
        ->getProperty(path.property, value, 0);
  }

 private:
  struct Names {
    std::string outer, inner, property;
  };
  service::util::config::IConfigPtr config;
  std::vector<Names> names;
};

class SelectOnce {
 public:
  SelectOnce(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    return config->getProperty(selects[i], value);
  }
  bool readOptional(std::size_t i, std::string& value) const { return read(i, value); }

 private:
  service::util::config::IConfigPtr config;
  std::vector<service::util::config::Select> selects;
};

class SelectEachTime {
 public:
  SelectEachTime(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    return config->getProperty(service::util::config::Select(paths[i]), value);
  }

 private:
  service::util::config::IConfigPtr config;
  Paths paths;
};

// ---- Its peers

class BoostReader {
 public:
  BoostReader(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    value = root->get<std::string>(paths[i]);
    return true;
  }
  bool readOptional(std::size_t i, std::string& value) const {
    auto found = root->get_optional<std::string>(paths[i]);
    if (!found) return false;
    value = std::move(*found);
    return true;
  }

 private:
  boost::property_tree::ptree tree;
  const boost::property_tree::ptree* root;
  Paths paths;
};

class PocoReader {
 public:
  PocoReader(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    value = config->getString(paths[i]);
    return true;
  }
  bool readOptional(std::size_t i, std::string& value) const {
    value = config->getString(paths[i], "");
    return !value.empty();
  }

 private:
  Poco::AutoPtr<Poco::Util::XMLConfiguration> config;
  Paths paths;
};

class LibconfigReader {
 public:
  LibconfigReader(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const { return config.lookupValue(paths[i], value); }
  bool readOptional(std::size_t i, std::string& value) const { return read(i, value); }

 private:
  libconfig::Config config;
  Paths paths;
};

// XPath queries, compiled once.
class PugixmlReader {
 public:
  PugixmlReader(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    const pugi::xml_node node = queries[i].evaluate_node(document).node();
    if (!node) return false;
    value = node.child_value();
    return true;
  }
  bool readOptional(std::size_t i, std::string& value) const { return read(i, value); }

 private:
  pugi::xml_document document;
  std::vector<pugi::xpath_query> queries;
};

// ---- A property of a section at hand

class SectionAtHand {
 public:
  SectionAtHand(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    return sections[i].first->getProperty(sections[i].second, value, 0);
  }

 private:
  std::vector<std::pair<service::util::config::IConfigPtr, std::string>> sections;
};

class BoostAtHand {
 public:
  BoostAtHand(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    value = sections[i].first->get<std::string>(sections[i].second);
    return true;
  }

 private:
  boost::property_tree::ptree tree;
  std::vector<std::pair<const boost::property_tree::ptree*, std::string>> sections;
};

class PocoAtHand {
 public:
  PocoAtHand(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    value = sections[i].first->getString(sections[i].second);
    return true;
  }

 private:
  Poco::AutoPtr<Poco::Util::XMLConfiguration> config;
  std::vector<std::pair<Poco::AutoPtr<Poco::Util::AbstractConfiguration>, std::string>> sections;
};

class LibconfigAtHand {
 public:
  LibconfigAtHand(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    return sections[i].first->lookupValue(sections[i].second, value);
  }

 private:
  libconfig::Config config;
  std::vector<std::pair<const libconfig::Setting*, std::string>> sections;
};

class PugixmlAtHand {
 public:
  PugixmlAtHand(Inputs& inputs, const Shape& shape, const Paths& paths);
  bool read(std::size_t i, std::string& value) const {
    value = sections[i].second.evaluate_node(sections[i].first).node().child_value();
    return true;
  }

 private:
  pugi::xml_document document;
  std::vector<std::pair<pugi::xml_node, pugi::xpath_query>> sections;
};

}  // namespace benchmarks

#endif
