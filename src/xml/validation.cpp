#include "xml/validation.hpp"

#include <algorithm>
#include <locale>
#include <sstream>
#include <xercesc/framework/MemBufInputSource.hpp>

#include "service/util/config/grammar/getGrammar.hpp"
#include "xerces/ErrorHandler.hpp"
#include "xerces/dom.hpp"
#include "xml/names.hpp"

namespace service::util::config::xml::internal {

namespace {

std::string joined(const SchemeList& schemes) {
  std::string locations;
  for (const auto& [uri, location] : schemes) {
    locations.append(uri).append(" ").append(location).append("\n");
  }
  return locations;
}

}  // namespace

SchemaLocations schemaLocations(const SchemeList& schemes) {
  SchemaLocations locations;
  std::istringstream words(joined(schemes));
  words.imbue(std::locale::classic());  // where blanks, tabs and line ends are white space
  std::string uri;
  std::string location;
  while (words >> uri >> location) locations.emplace_back(uri, location);
  return locations;
}

void enableValidation(xerces::Parser& parser, const SchemeList& schemes) {
  parser.setValidationScheme(xerces::Parser::Val_Always);
  parser.setDoSchema(true);
  parser.setValidationConstraintFatal(true);
  parser.setExternalSchemaLocation(joined(schemes).c_str());
  parser.cacheGrammarFromParse(true);
  parser.useCachedGrammarInParse(true);
}

void loadGrammar(xercesc::XMLGrammarPool& grammars) {
  xerces::ErrorHandler errors;
  xerces::Parser parser(&grammars);
  const std::vector<char> grammar = grammar::getGrammar();
  const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(grammar.data()),
                                          grammar.size(), "config.xsd");
  parser.setErrorHandler(&errors);
  parser.loadGrammar(source, xercesc::Grammar::SchemaGrammarType, true);
  if (errors.hasErrors()) throw xerces::Exception() << errors.getReport();
}

bool isInKnownNamespace(const xercesc::DOMElement& root, const SchemeList& schemes) {
  const std::string uri = xerces::transcode(root.getNamespaceURI());
  if (uri == grammar::targetNamespace) return true;
  const SchemaLocations locations = schemaLocations(schemes);
  return std::any_of(locations.begin(), locations.end(),
                     [&](const auto& location) { return location.first == uri; });
}

}  // namespace service::util::config::xml::internal
