// Finds all that is wrong with one document, whatever it includes.
#ifndef SRC_XML_DOCUMENTCHECK_HPP
#define SRC_XML_DOCUMENTCHECK_HPP

#include <string>
#include <vector>
#include <xercesc/framework/XMLGrammarPool.hpp>

#include "cppUtil/internal/Position.hpp"
#include "service/util/config/xml/check.hpp"

namespace service::util::config::xml::internal {

struct Include {
  std::string text;
  cppUtil::internal::Position position;
  std::size_t parent;  // which of the parents it stands in
};

// The first section of its name in its parent.
struct NamedSection {
  std::string name;
  cppUtil::internal::Position position;
};

struct DocumentFindings {
  std::vector<Problem> problems;  // by line; without include chains
  std::vector<Include> includes;  // in the order in which a load follows them
  // The sections in each element that has includes; the first one is the root element, always.
  std::vector<std::vector<NamedSection>> parents;
};

// Reads the file, by its full name. grammars: null to check without validation, otherwise a pool
// that holds the grammar of configuration files. The XML library must be initialised.
DocumentFindings checkDocument(const std::string& path, const SchemeList& schemes,
                               xercesc::XMLGrammarPool* grammars);

}  // namespace service::util::config::xml::internal

#endif
