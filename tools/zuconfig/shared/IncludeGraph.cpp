#include "shared/IncludeGraph.hpp"

#include <map>

#include "shared/text.hpp"

namespace zuconfig {

const char* remarkOf(Node::Kind kind) {
  switch (kind) {
    case Node::FILE:
      return "";
    case Node::AGAIN:
      return "seen above";
    case Node::CYCLE:
      return "cycle";
    case Node::MISSING:
      return "not found";
  }
  return "";
}

void IncludeGraph::fileEntered(const File& file) {
  Node& node = nodes.emplace_back();
  node.name = file.name;
  node.path = file.path;
  node.directory = file.directory;
  node.shadowed = file.shadowed;
  node.include = file.include;
  const auto identity = identityOf(file.path);
  if (identity && openFiles.count(*identity) > 0) {
    node.kind = Node::CYCLE;
  } else if (identity && !seen.insert(*identity).second) {
    node.kind = Node::AGAIN;
  }
  if (!open.empty()) open.back().node->includes.push_back(&node);
  open.push_back({&node, identity ? openFiles.insert(*identity) : openFiles.end()});
}

// A file whose includes turned up only now, because the search path is another one, was not shown
// as it is here.
void IncludeGraph::fileLeft(const File& /*file*/) {
  const auto [node, identity] = open.back();
  if (!node->includes.empty()) node->kind = Node::FILE;
  if (identity != openFiles.end()) openFiles.erase(identity);
  open.pop_back();
}

void IncludeGraph::addMissing(const std::vector<service::util::config::xml::Problem>& problems) {
  std::map<std::string, Node*> first;
  for (Node& node : nodes) first.emplace(node.path, &node);
  for (const auto& problem : problems) {
    if (problem.rule != "missing-include") continue;
    const auto includer = first.find(problem.location.file);
    if (includer == first.end()) continue;
    Node& node = nodes.emplace_back();
    node.kind = Node::MISSING;
    node.name = problem.subject;
    node.include = problem.location;
    includer->second->includes.push_back(&node);
  }
}

std::optional<IncludeGraph::Identity> IncludeGraph::identityOf(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return Identity(status.st_dev, status.st_ino);
}

std::vector<ListedFile> listFiles(const IncludeGraph& graph, const FileNames& names) {
  std::vector<ListedFile> files;
  std::map<std::pair<bool, std::string>, std::size_t> numbers;
  const auto numberOf = [&](const Node& node) {
    const bool isMissing = node.path.empty();
    const std::string name = isMissing ? printable(node.name) : names.shown(node.path);
    const auto [entry, isNew] = numbers.emplace(std::pair(isMissing, name), files.size());
    if (isNew) files.push_back({name, {}, {}});
    return entry->second;
  };
  for (const Node& node : graph.all()) files[numberOf(node)].nodes.push_back(&node);
  std::set<std::pair<std::size_t, std::size_t>> known;
  for (const Node& node : graph.all()) {
    const std::size_t from = numberOf(node);
    for (const Node* included : node.includes) {
      const std::size_t to = numberOf(*included);
      if (known.emplace(from, to).second) files[from].includes.push_back(to);
    }
  }
  return files;
}

}  // namespace zuconfig
