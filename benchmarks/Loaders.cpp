#include "Loaders.hpp"

#include <tinyxml2.h>

#include <boost/property_tree/xml_parser.hpp>
#include <cstring>
#include <stdexcept>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "service/util/config/grammar/getGrammar.hpp"
#include "service/util/config/xml/create.hpp"
#include "xerces/Parser.hpp"

namespace benchmarks {

namespace {

using service::util::config::IConfigPtr;

// Both walks classify the children in one pass, as their users would.
void walk(const pugi::xml_node& element, Tree& tree) {
  for (const pugi::xml_node& child : element.children()) {
    if (std::strcmp(child.name(), "property") == 0) {
      tree.properties[child.attribute("name").value()].emplace_back(child.child_value());
    } else if (std::strcmp(child.name(), "section") == 0) {
      walk(child, tree.sections[child.attribute("name").value()].emplace_back());
    }
  }
}

void walk(const tinyxml2::XMLElement& element, Tree& tree) {
  for (const auto* child = element.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement()) {
    if (std::strcmp(child->Name(), "property") == 0) {
      tree.properties[child->Attribute("name")].emplace_back(child->GetText());
    } else if (std::strcmp(child->Name(), "section") == 0) {
      walk(*child, tree.sections[child->Attribute("name")].emplace_back());
    }
  }
}

}  // namespace

IConfigPtr loadConfig(const std::string& file, bool validate) {
  return service::util::config::xml::create(file, {}, validate);
}

void parseWithTags(const std::string& file, bool validate) {
  xerces::Parser parser;
  if (validate) {
    parser.setValidationScheme(xerces::Parser::Val_Always);
    parser.setDoSchema(true);
    parser.setValidationConstraintFatal(true);
    parser.cacheGrammarFromParse(true);
    parser.useCachedGrammarInParse(true);
    const std::vector<char> grammar = service::util::config::grammar::getGrammar();
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(grammar.data()),
                                            grammar.size(), "config.xsd");
    parser.loadGrammar(source, xercesc::Grammar::SchemaGrammarType, true);
  }
  parser.parseDoc(file);
}

void parseBare(const std::string& file) {
  xercesc::XercesDOMParser parser;
  parser.setIncludeIgnorableWhitespace(false);
  parser.setDoNamespaces(true);
  parser.parse(file.c_str());
  if (parser.getErrorCount() != 0) throw std::runtime_error("cannot parse " + file);
}

boost::property_tree::ptree loadBoost(const std::string& file) {
  boost::property_tree::ptree tree;
  boost::property_tree::read_xml(file, tree, boost::property_tree::xml_parser::trim_whitespace);
  return tree;
}

Poco::AutoPtr<Poco::Util::XMLConfiguration> loadPoco(const std::string& file) {
  return new Poco::Util::XMLConfiguration(file);
}

pugi::xml_document loadPugixmlDocument(const std::string& file) {
  pugi::xml_document document;
  if (!document.load_file(file.c_str())) throw std::runtime_error("cannot parse " + file);
  return document;
}

Tree loadPugixml(const std::string& file) {
  const pugi::xml_document document = loadPugixmlDocument(file);
  Tree tree;
  walk(document.document_element(), tree);
  return tree;
}

Tree loadTinyxml2(const std::string& file) {
  tinyxml2::XMLDocument document;
  if (document.LoadFile(file.c_str()) != tinyxml2::XML_SUCCESS) {
    throw std::runtime_error("cannot parse " + file);
  }
  Tree tree;
  walk(*document.RootElement(), tree);
  return tree;
}

}  // namespace benchmarks
