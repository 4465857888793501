#include "shared/problems.hpp"

#include <algorithm>

#include "shared/missingFile.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

std::string suggestion(const Problem& problem) {
  const std::vector<std::string> elements = {"property", "section", "include", "config"};
  const std::vector<std::string> attributes = {"name", "version"};
  const auto isNew = [](const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) == names.end();
  };
  if (problem.rule == "missing-include" || problem.rule == "not-found") {
    const bool isIncluded = problem.rule == "missing-include";
    return hintForMissing(problem.subject, isIncluded ? problem.location.file : "");
  }
  if (problem.rule == "unknown-element") return didYouMean(nearest(problem.subject, elements));
  if (problem.rule != "invalid") return "";
  const std::string& name = problem.subject;
  if (problem.message.find("element 'include'") != problem.message.npos) {
    return "; the text of an include is the name of the file";
  }
  const bool isUndeclared = problem.message.find("no declaration") == 0;
  if (isUndeclared && !isNew({"property", "section", "include"}, name)) {
    return "; inside a property or an include there is only text";
  }
  const bool isAttribute = problem.message.find("attribute '") != std::string::npos;
  const auto& known = isAttribute ? attributes : elements;
  if (!isNew(known, name)) return "";
  const auto names = nearest(name, known);
  const bool isOfProperty = problem.message.find("element 'property'") != problem.message.npos;
  if (names.empty() && isOfProperty) return "; the value of a property is its text";
  return didYouMean(names);
}

// Three faults are reported far from where they are. Moves to there and answers with what to add to
// the message.
std::string moveToCause(Finding& finding, SourceText& source) {
  const std::string file = finding.range.file;
  const auto move = [&](const Location& to) {
    finding.range = {file, to.line, to.column, to.line, to.column};
  };
  if (finding.problem.rule != "not-well-formed") return "";
  if (source.isUtf16(file)) return "; the file is in UTF-16, and must say so in its first line";
  if (finding.problem.message == "unterminated comment") {
    if (const auto start = source.lastPlaceOf(file, "<!--")) move(*start);
    return ": it begins here";
  }
  if (finding.problem.message.find("byte") == std::string::npos) return "";
  const auto invalid = source.firstInvalid(file);
  if (!invalid) return "";
  move(*invalid);
  return "; this is no UTF-8: save the file as UTF-8, or name its encoding in the first line";
}

}  // namespace

Finding describe(const Problem& problem, const FileNames& names, SourceText& source) {
  Finding finding = {problem, source.rangeOf(problem.location)};
  std::string message = names.shownText(problem.message);
  const bool isAboutFiles = problem.rule == "include-cycle" || problem.rule == "shadowed-file" ||
                            problem.rule == "repeated-section";
  if (isAboutFiles) message = names.shortened(message);
  finding.problem.message = printable(message) + suggestion(problem) + moveToCause(finding, source);
  return finding;
}

Finding asTold(const Problem& problem) {
  const Location& at = problem.location;
  Finding finding = {problem, {at.file, at.line, at.column, at.line, at.column}};
  finding.problem.message = printable(problem.message);
  return finding;
}

bool isOfSelectors(const Problem& problem) {
  return problem.rule == "repeated-section" || problem.rule == "unreachable-name";
}

}  // namespace zuconfig
