// The parts of a page. Each writes an element with a heading, and an anchor that begins with "-",
// which no selector does.
#ifndef TOOLS_ZUCONFIG_PAGE_SECTIONS_HPP
#define TOOLS_ZUCONFIG_PAGE_SECTIONS_HPP

#include <ostream>
#include <string>

#include "page/Subject.hpp"

namespace zuconfig {

// What is wrong, with the lines of the files. suffix: what ids end in where a page has two
// subjects.
void writeProblems(std::ostream& out, const Subject& subject, const std::string& suffix);

// The configuration as a tree of values and places, an anchor for each selector.
void writeTree(std::ostream& out, const Subject& subject);

// The include graph, each file of it, and the search path.
void writeFiles(std::ostream& out, const Subject& subject, const std::string& suffix);

// For the script: which file was read for which include.
void writeData(std::ostream& out, const Subject& subject);

// The place of origin as a link to its file.
std::string placeOf(const Subject& subject, const Origins::Origin& origin);

// A dash, "file", the suffix and the number of a file.
std::string fileId(const std::string& suffix, std::size_t number);

}  // namespace zuconfig

#endif
