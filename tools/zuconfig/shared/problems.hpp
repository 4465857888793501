// What a check found, with the place where an editor should go, and the three ways to print it.
#ifndef TOOLS_ZUCONFIG_SHARED_PROBLEMS_HPP
#define TOOLS_ZUCONFIG_SHARED_PROBLEMS_HPP

#include <ostream>
#include <string>
#include <vector>

#include "service/util/config/xml/check.hpp"
#include "shared/Loader.hpp"
#include "shared/SourceText.hpp"
#include "shared/text.hpp"

namespace zuconfig {

using service::util::config::xml::Problem;
using service::util::config::xml::Severity;

// Part of a file. Lines and columns count from 1, columns in UTF-16 units; 0 is not known.
struct Range {
  std::string file;
  int line = 0;
  int column = 0;
  int endLine = 0;
  int endColumn = 0;  // of the first character after it
};

struct Finding {
  Problem problem;
  std::string message;          // with what may have been meant
  Range range;                  // the tag that the problem is about, or the point
  std::vector<Range> includes;  // the tags of the include chain, innermost first
};

// Completes the problem from the text of the files.
Finding describe(const Problem& problem, const Loader& loader, SourceText& source);

const char* nameOf(Severity severity);

void printText(std::ostream& out, const Colours& colours, const std::vector<Finding>& findings,
               const Loader& loader, SourceText& source);
void printJson(const std::vector<Finding>& findings, const Loader& loader);
void printSarif(const std::vector<Finding>& findings, const Loader& loader);

}  // namespace zuconfig

#endif
