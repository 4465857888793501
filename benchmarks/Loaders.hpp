// One way to load a configuration file with each library, for the timings and the memory counts.
//
// What a function returns is what a program would keep. The XML library must be initialised.
#ifndef BENCHMARKS_LOADERS_HPP
#define BENCHMARKS_LOADERS_HPP

#include <Poco/AutoPtr.h>
#include <Poco/Util/XMLConfiguration.h>

#include <boost/property_tree/ptree.hpp>
#include <libconfig.h++>
#include <pugixml.hpp>
#include <string>

#include "Tree.hpp"
#include "service/util/config/IConfig.hpp"

namespace benchmarks {

service::util::config::IConfigPtr loadConfig(const std::string& file, bool validate);

// The floors: a parse and the release of its document, nothing made of it.
void parseWithTags(const std::string& file, bool validate);
void parseBare(const std::string& file);

boost::property_tree::ptree loadBoost(const std::string& file);
Poco::AutoPtr<Poco::Util::XMLConfiguration> loadPoco(const std::string& file);
Tree loadPugixml(const std::string& file);
pugi::xml_document loadPugixmlDocument(const std::string& file);
Tree loadTinyxml2(const std::string& file);

}  // namespace benchmarks

#endif
