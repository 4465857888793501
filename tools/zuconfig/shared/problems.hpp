// What a check found, with the place where an editor should go, and the three ways to print it.
#ifndef TOOLS_ZUCONFIG_SHARED_PROBLEMS_HPP
#define TOOLS_ZUCONFIG_SHARED_PROBLEMS_HPP

#include <ostream>
#include <string>
#include <vector>

#include "report/SourceText.hpp"
#include "service/util/config/xml/check.hpp"
#include "shared/FileNames.hpp"
#include "shared/text.hpp"

namespace zuconfig {

using service::util::config::report::Range;
using service::util::config::report::SourceText;
using service::util::config::xml::Problem;
using service::util::config::xml::Severity;

struct Finding {
  Problem problem;  // its message with what may have been meant
  Range range;      // the tag that the problem is about, or the point
};

// Completes the problem from the text of the files.
Finding describe(const Problem& problem, const FileNames& names, SourceText& source);

// What a program finds, at the place that it tells, which of a wrong value is its text.
Finding asTold(const Problem& problem);

// Whether the problem is one of selectors, which a program that reads by a description does not
// use.
bool isOfSelectors(const Problem& problem);

void printText(std::ostream& out, const Colours& colours, const std::vector<Finding>& findings,
               const FileNames& names, SourceText& source);
void printJson(const std::vector<Finding>& findings, const FileNames& names, SourceText& source);
void printSarif(const std::vector<Finding>& findings, const FileNames& names, SourceText& source);

}  // namespace zuconfig

#endif
