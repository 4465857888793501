#include "xml/validation.hpp"

#include <algorithm>
#include <xercesc/framework/MemBufInputSource.hpp>

#include "service/util/config/grammar/getGrammar.hpp"
#include "xerces/ErrorHandler.hpp"
#include "xerces/dom.hpp"
#include "xml/names.hpp"

namespace service::util::config::xml::internal {

void enableValidation(xerces::Parser& parser, const SchemeList& schemes) {
  std::string locations;
  for (const auto& [uri, location] : schemes) {
    locations.append(uri).append(" ").append(location).append("\n");
  }
  parser.setValidationScheme(xerces::Parser::Val_Always);
  parser.setDoSchema(true);
  parser.setValidationConstraintFatal(true);
  parser.setExternalSchemaLocation(locations.c_str());
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
  return uri == names::grammarNamespace ||
         std::any_of(schemes.begin(), schemes.end(),
                     [&](const auto& scheme) { return scheme.first == uri; });
}

}  // namespace service::util::config::xml::internal
