// What makes a parse a validating one: the grammar of configuration files, the caller's schemas and
// the namespace of the root element.
#ifndef SRC_XML_VALIDATION_HPP
#define SRC_XML_VALIDATION_HPP

#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/framework/XMLGrammarPool.hpp>

#include "service/util/config/xml/create.hpp"
#include "xerces/Parser.hpp"

namespace service::util::config::xml::internal {

// The pairs of a namespace and the location of its schema that the XML library makes of the list:
// an entry may hold several of them, or a part of one, since white space parts them.
using SchemaLocations = std::vector<std::pair<std::string, std::string>>;
SchemaLocations schemaLocations(const SchemeList& schemes);

// Switches on validation against the grammars in the parser's pool and the caller's schemas.
void enableValidation(xerces::Parser& parser, const SchemeList& schemes);

// Compiles the grammar of configuration files into the pool. Throws xerces::Exception when the XML
// library reports an error.
void loadGrammar(xercesc::XMLGrammarPool& grammars);

// Whether the grammar of configuration files or one of the schemas binds the element. A grammar
// binds the elements of its own namespace only, and a document type those of none.
bool isInKnownNamespace(const xercesc::DOMElement& root, const SchemeList& schemes);

}  // namespace service::util::config::xml::internal

#endif
