// Completes problems. The library says where a start tag ends; editors want to go where it begins.
#include "shared/problems.hpp"

#include <algorithm>

#include "shared/searchPath.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

// How many bytes of text, which is UTF-8, its first UTF-16 units are.
std::size_t bytesIn(const std::string& text, int units) {
  std::size_t at = 0;
  while (at < text.size() && units > 0) {
    const Character c(text.data() + at, text.size() - at);
    units -= c.code > 0xFFFF ? 2 : 1;
    at += c.length;
  }
  return at;
}

// The tag that ends before location, or the point itself.
Range rangeOf(const Location& location, SourceText& source) {
  Range range = {location.file, location.line, location.column, location.line, location.column};
  const auto last = source.line(location.file, location.line);
  if (!last) return range;
  const std::size_t end = bytesIn(*last, location.column - 1);
  if (end == 0 || (*last)[end - 1] != '>') return range;
  // No "<" stands inside a tag, not even in its attributes.
  std::size_t from = end - 1;
  for (int line = location.line; line > 0; --line) {
    const std::string text = *source.line(location.file, line);
    const std::size_t start = text.rfind('<', from);
    if (start != text.npos) {
      range.line = line;
      range.column = static_cast<int>(utf16Units(text.substr(0, start))) + 1;
      return range;
    }
    from = text.npos;
  }
  return range;
}

// The first text in single quotes, as the XML library puts names.
std::string quotedName(const std::string& message) {
  const std::size_t start = message.find('\'');
  const std::size_t end = start == message.npos ? start : message.find('\'', start + 1);
  return end == message.npos ? "" : message.substr(start + 1, end - start - 1);
}

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
  const std::string name = quotedName(problem.message);
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
  Range& range = finding.range;
  const auto move = [&](const Location& to) {
    range = {to.file, to.line, to.column, to.line, to.column};
  };
  if (finding.problem.rule != "not-well-formed") return "";
  if (source.isUtf16(range.file))
    return "; the file is in UTF-16, and must say so in its first line";
  if (const auto invalid = source.firstInvalid(range.file)) {
    if (finding.problem.message.find("byte") == std::string::npos) return "";
    move(*invalid);
    return "; this is no UTF-8: save the file as UTF-8, or name its encoding in the first line";
  }
  if (finding.problem.message == "unterminated comment") {
    if (const auto start = source.lastPlaceOf(range.file, "<!--")) move(*start);
    return ": it begins here";
  }
  return "";
}

}  // namespace

Finding describe(const Problem& problem, const Loader& loader, SourceText& source) {
  Finding finding;
  finding.problem = problem;
  finding.range = rangeOf(problem.location, source);
  std::string message = loader.shownText(problem.message);
  const bool isAboutFiles = problem.rule == "include-cycle" || problem.rule == "shadowed-file";
  if (isAboutFiles) message = loader.shortened(message);
  finding.message = printable(message) + suggestion(problem) + moveToCause(finding, source);
  for (const Location& include : problem.includes) {
    finding.includes.push_back(rangeOf(include, source));
  }
  return finding;
}

const char* nameOf(Severity severity) {
  return severity == Severity::ERROR ? "error" : "warning";
}

}  // namespace zuconfig
