#include "page/Subject.hpp"

#include <algorithm>
#include <set>

namespace zuconfig {

namespace {

using service::util::config::Visited;
using service::util::config::Visitor;
using service::util::config::bind::internal::Holder;

// Counts, and gives every finding the first element that it is about.
class Assignment : public Visitor {
 public:
  explicit Assignment(Subject& subject) : subject(subject) {}

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

Subject::Subject(Loader& loader, const Programs& programs, Secrets& secrets,
                 const std::string& file, const char* suffix)
    : name(shownArgument(file)), suffix(suffix), loader(loader), secrets(secrets) {
  const std::string resolved = loader.resolve(file);
  for (const Problem& problem : findProblems(resolved, programs)) {
    add(problem, describe(problem, loader.getNames(), loader.getSources()));
  }
  if (config != nullptr) {
    if (!programs.isEmpty()) judge(programs);
  } else {
    secrets.close();
  }
  elements.resize(findings.size());
  if (config == nullptr) return;
  Assignment assignment(*this);
  service::util::config::visit(config, assignment);
}

// Loads as well.
std::vector<Problem> Subject::findProblems(const std::string& resolved, const Programs& programs) {
  auto problems = loader.check(resolved, graph);
  graph.addMissing(problems);
  files = listFiles(graph, loader.getNames());
  for (std::size_t i = 0; i < files.size(); ++i) numbers[files[i].nodes.front()->path] = i;
  std::string reason;
  config = loader.tryLoad(resolved, origins, reason);
  const bool isExplained = std::any_of(problems.begin(), problems.end(), [](const Problem& p) {
    return p.severity == Severity::ERROR;
  });
  if (config == nullptr && !isExplained) {
    problems.push_back({Severity::ERROR, "unloadable", reason, "", {resolved}, {}});
  }
  if (programs.isEmpty()) return problems;
  problems.erase(std::remove_if(problems.begin(), problems.end(), isOfSelectors), problems.end());
  return problems;
}

void Subject::judge(const Programs& programs) {
  judgement = programs.judge(config, origins);
  secrets.add(judgement, config, origins);
  for (const Problem& problem : judgement.problems) add(problem, asTold(problem));
  std::set<std::string> told;
  for (const Survey& survey : judgement.surveys) {
    for (const Surveyed& entry : survey.entries) {
      for (const auto* given : {&entry.inForce, &entry.lost}) {
        for (const auto& one : *given) described[{one.part.get(), one.name}] = entry.described;
      }
      const auto form = entry.described->form;
      const bool isThere =
          !entry.inForce.empty() || (form == Holder::SECTION && !entry.described->isOptional);
      if (!isThere && told.insert(entry.path).second) unset.push_back(&entry);
    }
  }
}

void Subject::add(const Problem& problem, Finding finding) {
  const Location& at = problem.location;
  if (at.line > 0) places[{at.file, at.line, at.column}].push_back(findings.size());
  findings.push_back(std::move(finding));
}

const Described* Subject::describedAt(const IConfigPtr& section,
                                      const std::string& property) const {
  const auto found = described.find({section.get(), property});
  return found == described.end() ? nullptr : found->second;
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
