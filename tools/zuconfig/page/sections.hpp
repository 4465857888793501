// The parts of a page. Each writes an element with a heading, and an anchor that begins with "-",
// which no selector does.
#ifndef TOOLS_ZUCONFIG_PAGE_SECTIONS_HPP
#define TOOLS_ZUCONFIG_PAGE_SECTIONS_HPP

#include <ostream>
#include <string>

#include "page/Subject.hpp"

namespace zuconfig {

// What is wrong, with the lines of the files.
void writeProblems(std::ostream& out, const Subject& subject);

// The configuration as a tree of values and places, an anchor for each selector.
void writeTree(std::ostream& out, const Subject& subject);

// What the programs of --for know and the configuration has not.
void writeUnset(std::ostream& out, const Subject& subject);

// What differs between two, side by side, and folded what does not.
void writeDifferences(std::ostream& out, const Subject& a, const Subject& b);

// The include graph, each file of it, and the search path.
void writeFiles(std::ostream& out, const Subject& subject);

// For the script: which file was read for which include.
void writeData(std::ostream& out, const Subject& subject);

// The place of origin as a link to its file.
std::string placeOf(const Subject& subject, const Origins::Origin& origin);

// The ids of files are this with the number of the file.
std::string filePrefix(const Subject& subject);

// The start tag of a section and its heading, which names the subject where there are two.
void openSection(std::ostream& out, const Subject& subject, const char* id, const char* title);

}  // namespace zuconfig

#endif
