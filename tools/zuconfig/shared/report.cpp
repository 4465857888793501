// The three forms of a report: for the eye and for editors, for scripts, for code hosts.
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "shared/problems.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using json = nlohmann::ordered_json;

// How much of a long line is shown, and how much of that before the place.
constexpr std::size_t widest = 160;
constexpr std::size_t before = 60;

// The part of a line to show, one character an entry, and where in it a range stands.
struct Excerpt {
  Excerpt(const std::string& line, int column, int endColumn) {
    int unit = 1;
    for (std::size_t at = 0; at < line.size();) {
      const Character c(line.data() + at, line.size() - at);
      if (unit < column) ++start;
      if (unit < endColumn) ++end;
      const bool isControl = (c.code < 0x20 && c.code != '\t') || c.code == 0x7F;
      characters.push_back(isControl ? " " : line.substr(at, c.length));
      unit += c.code > 0xFFFF ? 2 : 1;
      at += c.length;
    }
    if (characters.size() > widest) cut();
  }

  void cut() {
    const std::size_t from = start > before ? start - before : 0;
    const std::size_t to = std::min(from + widest, characters.size());
    characters = {characters.begin() + static_cast<std::ptrdiff_t>(from),
                  characters.begin() + static_cast<std::ptrdiff_t>(to)};
    start -= from;
    end = std::min(end, to) - from;
  }

  std::vector<std::string> characters;
  std::size_t start = 0;
  std::size_t end = 0;
};

void printExcerpt(std::ostream& out, const Colours& colours, const Range& range,
                  SourceText& source) {
  const auto line = source.line(range.file, range.line);
  if (!line || line->empty()) return;
  const bool isOneLine = range.endLine == range.line;
  const Excerpt excerpt(*line, range.column, isOneLine ? range.endColumn : INT32_MAX);
  std::string text;
  std::string marks;
  for (std::size_t i = 0; i < excerpt.characters.size(); ++i) {
    text += excerpt.characters[i];
    if (i < excerpt.start) marks += excerpt.characters[i] == "\t" ? '\t' : ' ';
  }
  marks += colours.good;
  marks += '^';
  if (excerpt.end > excerpt.start + 1) marks += std::string(excerpt.end - excerpt.start - 1, '~');
  out << std::setw(5) << range.line << " | " << text << "\n      | " << marks << colours.off
      << "\n";
}

std::string shownRange(const Range& range, const Loader& loader) {
  return loader.shown(Location{range.file, range.line, range.column});
}

json inJson(const Range& range, const Loader& loader) {
  json place = {{"file", loader.nameOf(range.file)}};
  if (range.line > 0) {
    place.update({{"line", range.line}, {"column", range.column}});
    place.update({{"endLine", range.endLine}, {"endColumn", range.endColumn}});
  }
  return place;
}

// path as part of a URI.
std::string inUri(const std::string& path) {
  static const char* digits = "0123456789ABCDEF";
  const std::string allowed = "-._~/!$&'()*+,;=@";
  std::string uri = path[0] == '/' ? "file://" : "";
  for (const char c : path) {
    if (isAlphanumeric(c) || allowed.find(c) != allowed.npos) {
      uri += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      uri += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return uri;
}

json sarifLocation(const Range& range, const Loader& loader) {
  json place = {{"artifactLocation", {{"uri", inUri(loader.nameOf(range.file))}}}};
  if (range.line > 0) {
    place["region"] = {{"startLine", range.line},
                       {"startColumn", range.column},
                       {"endLine", range.endLine},
                       {"endColumn", range.endColumn}};
  }
  return {{"physicalLocation", place}};
}

json sarifResult(const Finding& finding, const Loader& loader) {
  json result = {{"ruleId", finding.problem.rule},
                 {"level", nameOf(finding.problem.severity)},
                 {"message", {{"text", finding.message}}},
                 {"locations", json::array({sarifLocation(finding.range, loader)})}};
  for (const Range& include : finding.includes) {
    json location = sarifLocation(include, loader);
    location["message"] = {{"text", "included from here"}};
    result["relatedLocations"].push_back(location);
  }
  return result;
}

}  // namespace

void printText(std::ostream& out, const Colours& colours, const std::vector<Finding>& findings,
               const Loader& loader, SourceText& source) {
  for (const Finding& finding : findings) {
    const bool isError = finding.problem.severity == Severity::ERROR;
    out << colours.bold << shownRange(finding.range, loader) << ": " << colours.off
        << (isError ? colours.bad : colours.warning) << nameOf(finding.problem.severity) << ": "
        << colours.off << finding.message << " [" << finding.problem.rule << "]\n";
    printExcerpt(out, colours, finding.range, source);
    for (const Range& include : finding.includes) {
      out << shownRange(include, loader) << ": note: included from here\n";
    }
  }
}

void printJson(const std::vector<Finding>& findings, const Loader& loader) {
  json list = json::array();
  for (const Finding& finding : findings) {
    json entry = inJson(finding.range, loader);
    entry["severity"] = nameOf(finding.problem.severity);
    entry["rule"] = finding.problem.rule;
    entry["message"] = finding.message;
    entry["includes"] = json::array();
    for (const Range& include : finding.includes) {
      entry["includes"].push_back(inJson(include, loader));
    }
    list.push_back(entry);
  }
  std::cout << list.dump(2) << "\n";
}

void printSarif(const std::vector<Finding>& findings, const Loader& loader) {
  std::map<std::string, json> rules;
  json results = json::array();
  for (const Finding& finding : findings) {
    rules.emplace(finding.problem.rule, json{{"id", finding.problem.rule}});
    results.push_back(sarifResult(finding, loader));
  }
  json ruleList = json::array();
  for (auto& [id, rule] : rules) ruleList.push_back(rule);
  const json driver = {
      {"name", "zuconfig"}, {"version", ZUCONFIG_VERSION}, {"rules", std::move(ruleList)}};
  const json run = {{"tool", {{"driver", driver}}},
                    {"columnKind", "utf16CodeUnits"},
                    {"results", std::move(results)}};
  const json report = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                       {"version", "2.1.0"},
                       {"runs", json::array({run})}};
  std::cout << report.dump(2) << "\n";
}

}  // namespace zuconfig
