// The part of Reader that takes settings from the environment and the command line.

#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "bind/Reader.hpp"
#include "cppUtil/internal/text.hpp"

namespace service::util::config::bind::internal {

namespace {

using xml::Severity;

const Place commandLine = {{"command line"}};

std::string spelled(const Path& path) {
  std::string text;
  for (const PathPart& part : path)
    text = extended(text, part.name, part.index.value_or(0), part.index ? 2 : 1);
  return text;
}

// Whether a row of that form can be meant by the part of a path.
bool isFit(const Row& row, const PathPart& part) {
  if (row.form == Holder::SECTIONS || !part.index) return true;
  return row.form != Holder::LIST && *part.index == 0;
}

}  // namespace

void Reader::assign(Level& level) {
  if (level.assignments.empty()) return;
  level.assigned.resize(level.description.rows.size());
  for (const Assignment& assignment : level.assignments) {
    const Path& path = assignment.override->first;
    const PathPart& part = path[assignment.depth];
    const bool isSetting = assignment.depth + 1 == path.size();
    const auto* name = level.description.find(isSetting, part.name);
    if (name == nullptr) {
      const bool isOther = level.description.find(!isSetting, part.name) != nullptr;
      const std::string other = isSetting ? "; it is a section" : "; it is a property";
      tellUnfit(assignment, "nothing reads this" +
                                (isOther ? other
                                         : cppUtil::internal::didYouMean(cppUtil::internal::nearest(
                                               part.name, level.description.names()))));
      continue;
    }
    const Row& row = *level.description.rows[name->row];
    if (!isFit(row, part)) {
      tellUnfit(assignment, "nothing reads this; the name has no index");
      continue;
    }
    if (name->isFormer) {
      findings.add(Severity::WARNING, "renamed-setting", spelled(path),
                   cppUtil::internal::quoted(part.name) + " is called " +
                       cppUtil::internal::quoted(row.name) + " now",
                   commandLine);
    }
    level.assigned[name->row].push_back(assignment);
  }
}

// What the command line says, or the environment. Of a setting the last counts.
std::vector<Reader::Source> Reader::sourcesElsewhere(const Level& level, std::size_t at) const {
  std::vector<Source> sources;
  if (!level.assigned.empty()) {
    for (const Assignment& assignment : level.assigned[at]) {
      sources.push_back({nullptr, assignment.override->second, "command line"});
    }
  }
  const Row& row = *level.description.rows[at];
  if (!sources.empty() || (row.variable.empty() && level.variablePrefix.empty())) return sources;
  const std::string name =
      row.variable.empty() ? variableOf(level.variablePrefix, row.name) : row.variable;
  if (const char* text = request.takesEnvironment ? ::secure_getenv(name.c_str()) : nullptr) {
    sources.push_back({nullptr, text, "environment " + name});
  }
  return sources;
}

void Reader::tellUnfit(const Assignment& assignment, const std::string& reason) {
  findings.add(Severity::ERROR, "unknown-setting", spelled(assignment.override->first), reason,
               commandLine);
}

bool Reader::hasVariable(const Description& description, const std::string& prefix) const {
  if (!request.takesEnvironment) return false;
  const auto variables = variablesOf(description, prefix);
  return std::any_of(variables.begin(), variables.end(), [](const std::string& name) {
    return ::secure_getenv(name.c_str()) != nullptr;
  });
}

void Reader::tellUnknownVariables(const Level& level) {
  const std::string& prefix = level.description.variablePrefix;
  if (!request.takesEnvironment || prefix.empty() || prefix != level.variablePrefix) return;
  std::vector<std::string> known;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string entry = *variable;
    const std::string name = entry.substr(0, entry.find('='));
    if (name.rfind(prefix, 0) != 0 || ::secure_getenv(name.c_str()) == nullptr) continue;
    if (known.empty()) known = variablesOf(level.description, prefix);
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    findings.add(Severity::WARNING, "unknown-setting", "",
                 "nothing reads this" +
                     cppUtil::internal::didYouMean(cppUtil::internal::nearest(name, known)),
                 {{"environment " + name}});
  }
}

}  // namespace service::util::config::bind::internal
