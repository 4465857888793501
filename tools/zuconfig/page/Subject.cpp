#include "page/Subject.hpp"

#include <algorithm>

namespace zuconfig {

namespace {

using service::util::config::Visited;
using service::util::config::Visitor;

// Counts, and gives every finding the first element that it is about.
class Survey : public Visitor {
 public:
  explicit Survey(Subject& subject) : subject(subject) {}

  void property(const Visited& visited, const std::string& /*value*/) override {
    ++subject.values;
    assign(visited, false, visited.path);
  }

  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    ++subject.sections;
    assign(visited, true, visited.path + ".");
    return true;
  }

 private:
  void assign(const Visited& visited, bool isSection, const std::string& id) {
    if (subject.findings.empty()) return;
    for (const std::size_t number : subject.findingsAt(subject.originOf(visited, isSection))) {
      if (subject.elements[number].empty()) subject.elements[number] = id;
    }
  }

  Subject& subject;
};

}  // namespace

Subject::Subject(Loader& loader, const std::string& file, const char* suffix)
    : name(shownArgument(file)), suffix(suffix), loader(loader) {
  const std::string resolved = loader.resolve(file);
  auto problems = loader.check(resolved, graph);
  graph.addMissing(problems);
  files = listFiles(graph, loader.getNames());
  std::string reason;
  config = loader.tryLoad(resolved, origins, reason);
  const bool isExplained = std::any_of(problems.begin(), problems.end(), [](const Problem& p) {
    return p.severity == Severity::ERROR;
  });
  if (config == nullptr && !isExplained) {
    problems.push_back({Severity::ERROR, "unloadable", reason, "", {resolved}, {}});
  }
  for (std::size_t i = 0; i < files.size(); ++i) numbers[files[i].nodes.front()->path] = i;
  for (const Problem& problem : problems) {
    const Location& at = problem.location;
    if (at.line > 0) places[{at.file, at.line, at.column}].push_back(findings.size());
    findings.push_back(describe(problem, loader.getNames(), loader.getSources()));
  }
  elements.resize(findings.size());
  if (config == nullptr) return;
  Survey survey(*this);
  service::util::config::visit(config, survey);
}

bool Subject::hasErrors() const {
  return std::any_of(findings.begin(), findings.end(), [](const Finding& finding) {
    return finding.problem.severity == Severity::ERROR;
  });
}

Origins::Origin Subject::originOf(const Visited& visited, bool isSection) const {
  return isSection ? origins.ofSection(visited.parent, visited.name, visited.index)
                   : origins.of(visited.parent, visited.name, visited.index);
}

const std::vector<std::size_t>& Subject::findingsAt(const Origins::Origin& origin) const {
  static const std::vector<std::size_t> none;
  if (origin.file == nullptr) return none;
  const auto found = places.find({origin.file->path, origin.line, origin.column});
  return found == places.end() ? none : found->second;
}

}  // namespace zuconfig
