// The three forms of a report: for the eye and for editors, for scripts, for code hosts.
#include <cctype>
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "report/ProblemText.hpp"
#include "shared/problems.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using json = nlohmann::ordered_json;
using service::util::config::report::nameOf;

// Names of files need not be UTF-8.
std::string dumped(const json& document) {
  return printableJson(document.dump(2, ' ', false, json::error_handler_t::replace));
}

// Prints document, whose last list is empty and stands behind indent blanks, with what entryOf
// makes of each finding in that list. One entry after the other: of all of them together a report
// is made that takes many times the memory of the findings.
template <class EntryOf>
void printWith(const json& document, std::size_t indent, const std::vector<Finding>& findings,
               const EntryOf& entryOf) {
  const std::string frame = dumped(document);
  const std::size_t list = frame.rfind("[]") + 1;
  const std::string lineBreak = "\n" + std::string(indent, ' ');
  std::cout << frame.substr(0, list);
  for (const Finding& finding : findings) {
    std::cout << (&finding == &findings.front() ? "" : ",");
    std::istringstream lines(dumped(entryOf(finding)));
    for (std::string line; std::getline(lines, line);) std::cout << lineBreak << "  " << line;
  }
  std::cout << (findings.empty() ? "" : lineBreak) << frame.substr(list) << "\n";
}

json inJson(const Range& range, const FileNames& names) {
  json place = {{"file", names.nameOf(range.file)}};
  if (range.line > 0) {
    place.update({{"line", range.line}, {"column", range.column}});
    place.update({{"endLine", range.endLine}, {"endColumn", range.endColumn}});
  }
  return place;
}

// path as part of a URI.
std::string inUri(const std::string& path) {
  const std::string allowed = "-._~/!$&'()*+,;=@";
  std::string uri = path[0] == '/' ? "file://" : "";
  for (const char c : path) {
    if (isAlphanumeric(c) || allowed.find(c) != allowed.npos) {
      uri += c;
    } else {
      uri += '%';
      for (const char digit : inHexadecimal(c)) uri += static_cast<char>(std::toupper(digit));
    }
  }
  return uri;
}

json sarifLocation(const Range& range, const FileNames& names) {
  json place = {{"artifactLocation", {{"uri", inUri(names.nameOf(range.file))}}}};
  if (range.line > 0) {
    place["region"] = {{"startLine", range.line},
                       {"startColumn", range.column},
                       {"endLine", range.endLine},
                       {"endColumn", range.endColumn}};
  }
  return {{"physicalLocation", place}};
}

json sarifResult(const Finding& finding, const FileNames& names, SourceText& source) {
  const bool isInFile = finding.range.file != "command line";
  const std::string giver = isInFile ? "" : finding.range.file + ": ";
  json result = {{"ruleId", finding.problem.rule},
                 {"level", nameOf(finding.problem.severity)},
                 {"message", {{"text", giver + finding.problem.message}}}};
  if (isInFile) result["locations"] = json::array({sarifLocation(finding.range, names)});
  for (const Location& include : finding.problem.includes) {
    json location = sarifLocation(source.rangeOf(include), names);
    location["message"] = {{"text", "included from here"}};
    result["relatedLocations"].push_back(location);
  }
  return result;
}

}  // namespace

void printText(std::ostream& out, const Colours& colours, const std::vector<Finding>& findings,
               const FileNames& names, SourceText& source) {
  service::util::config::report::Style style;
  style.place = [&](const Location& location) { return names.shown(location); };
  style.bold = colours.bold;
  style.error = colours.bad;
  style.warning = colours.warning;
  style.mark = colours.good;
  style.off = colours.off;
  for (const auto& [problem, range] : findings) {
    out << format(problem, range, source, style);
  }
}

void printJson(const std::vector<Finding>& findings, const FileNames& names, SourceText& source) {
  printWith(json::array(), 0, findings, [&](const Finding& finding) {
    const Problem& problem = finding.problem;
    json entry = inJson(finding.range, names);
    entry["severity"] = nameOf(problem.severity);
    entry["rule"] = problem.rule;
    entry["message"] = problem.message;
    entry["includes"] = json::array();
    for (const Location& include : problem.includes) {
      entry["includes"].push_back(inJson(source.rangeOf(include), names));
    }
    return entry;
  });
}

void printSarif(const std::vector<Finding>& findings, const FileNames& names, SourceText& source) {
  std::set<std::string> rules;
  for (const Finding& finding : findings) rules.insert(finding.problem.rule);
  json ruleList = json::array();
  for (const std::string& rule : rules) ruleList.push_back({{"id", rule}});
  const json driver = {{"name", "zuconfig"}, {"version", ZUCONFIG_VERSION}, {"rules", ruleList}};
  const json run = {
      {"tool", {{"driver", driver}}}, {"columnKind", "utf16CodeUnits"}, {"results", json::array()}};
  const json report = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                       {"version", "2.1.0"},
                       {"runs", json::array({run})}};
  printWith(report, 6, findings,
            [&](const Finding& finding) { return sarifResult(finding, names, source); });
}

}  // namespace zuconfig
