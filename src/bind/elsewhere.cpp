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
      tellUnfit(assignment, unknownMessage({&level.description}, isSetting, part.name));
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

std::vector<Occurrence> Reader::findElsewhere(const Level& level, std::size_t at) {
  std::vector<Occurrence> sources;
  const Row& row = *level.description.rows[at];
  if (request.takesEnvironment && !(row.variable.empty() && level.variablePrefix.empty())) {
    const std::string name = variableOf(row, level.variablePrefix);
    if (const char* text = ::secure_getenv(name.c_str())) {
      const auto kept = variables.emplace("environment " + name, text).first;
      sources.emplace_back(kept->first, kept->second);
    }
  }
  if (level.assigned.empty()) return sources;
  for (const Assignment& assignment : level.assigned[at]) {
    sources.emplace_back(commandLine.location.file, assignment.override->second);
  }
  return sources;
}

void Reader::tellUnfit(const Assignment& assignment, const std::string& reason) {
  const std::string path = spelled(assignment.override->first);
  if (request.together != nullptr) {
    const auto number = static_cast<std::uint32_t>(assignment.override - overrides.data());
    return request.together->addOverride(number, path, reason, commandLine);
  }
  findings.add(Severity::ERROR, "unknown-setting", path, reason, commandLine);
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
