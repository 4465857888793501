// zuconfig includes: which file includes which. Reads all files that a load would read, also when
// some are missing or include each other in a circle.
#include <sys/stat.h>

#include <iostream>
#include <list>
#include <map>
#include <optional>
#include <set>

#include "commands/Command.hpp"
#include "shared/Loader.hpp"
#include "shared/problems.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

namespace xml = service::util::config::xml;
enum class Kind { FILE, AGAIN, CYCLE, MISSING };

// One include, or the top-level file.
struct Node {
  Kind kind = Kind::FILE;
  std::string name;  // as it is written
  std::string path;  // empty when it is missing
  Location include;
  std::vector<const Node*> includes;
};

// Builds the graph while a check reads the files. What a file includes is told the first time only.
class Graph : public xml::Observer {
 public:
  void fileEntered(const File& file) override {
    Node& node = nodes.emplace_back();
    node.name = file.name;
    node.path = file.path;
    node.include = file.include;
    const auto identity = identityOf(file.path);
    if (identity && openFiles.count(*identity) > 0) {
      node.kind = Kind::CYCLE;
    } else if (identity && !seen.insert(*identity).second) {
      node.kind = Kind::AGAIN;
    }
    if (!open.empty()) open.back().node->includes.push_back(&node);
    open.push_back({&node, identity ? openFiles.insert(*identity) : openFiles.end()});
  }

  // A file whose includes turned up only now, because the search path is another one, was not shown
  // as it is here.
  void fileLeft(const File& /*file*/) override {
    const auto [node, identity] = open.back();
    if (!node->includes.empty()) node->kind = Kind::FILE;
    if (identity != openFiles.end()) openFiles.erase(identity);
    open.pop_back();
  }

  // Adds the files that are not there to those that include them.
  void addMissing(const std::vector<Problem>& problems) {
    std::map<std::string, Node*> first;
    for (Node& node : nodes) first.emplace(node.path, &node);
    for (const Problem& problem : problems) {
      if (problem.rule != "missing-include") continue;
      const auto includer = first.find(problem.location.file);
      if (includer == first.end()) continue;
      Node& node = nodes.emplace_back();
      node.kind = Kind::MISSING;
      node.name = problem.subject;
      node.include = problem.location;
      includer->second->includes.push_back(&node);
    }
  }

  // Null when the top-level file was not found.
  const Node* root() const { return nodes.empty() ? nullptr : &nodes.front(); }
  const std::list<Node>& all() const { return nodes; }

 private:
  using Identity = std::pair<dev_t, ino_t>;
  using Identities = std::multiset<Identity>;

  // A file that is being read, as it was when it was entered: it may be another one when it is
  // left.
  struct Open {
    Node* node;
    Identities::iterator identity;  // in openFiles; its end when the file was gone already
  };

  static std::optional<Identity> identityOf(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return Identity(status.st_dev, status.st_ino);
  }

  std::list<Node> nodes;   // in the order of reading
  std::vector<Open> open;  // outermost first
  Identities openFiles;
  std::set<Identity> seen;
};

const char* remarkOf(Kind kind) {
  switch (kind) {
    case Kind::FILE:
      return "";
    case Kind::AGAIN:
      return "seen above";
    case Kind::CYCLE:
      return "cycle";
    case Kind::MISSING:
      return "not found";
  }
  return "";
}

class GraphPrinter {
 public:
  explicit GraphPrinter(const FileNames& names) : names(names) {}

  void printTree(const Node& root) {
    struct Entry {
      const Node* node;
      std::string indent;
      bool isLast;
    };
    std::vector<Entry> todo = {{&root, "", true}};
    while (!todo.empty()) {
      const Entry entry = todo.back();
      todo.pop_back();
      const bool isRoot = entry.node == &root;
      std::cout << colours.dim << entry.indent
                << (isRoot         ? ""
                    : entry.isLast ? "└── "
                                   : "├── ")
                << colours.off;
      printNode(*entry.node);
      const std::string indent = isRoot ? "" : deeper(entry.indent, entry.isLast);
      const auto& includes = entry.node->includes;
      for (auto node = includes.rbegin(); node != includes.rend(); ++node) {
        todo.push_back({*node, indent, node == includes.rbegin()});
      }
    }
  }

  void printDot(const Graph& graph) const {
    std::cout << "digraph includes {\n  node [shape=box];\n";
    for (const Node& node : graph.all()) {
      if (node.kind == Kind::FILE) std::cout << "  " << inDot(node) << ";\n";
      if (node.kind == Kind::MISSING) std::cout << "  " << inDot(node) << " [style=dashed];\n";
    }
    for (const Node& node : graph.all()) {
      for (const Node* included : node.includes) {
        std::cout << "  " << inDot(node) << " -> " << inDot(*included)
                  << (included->kind == Kind::CYCLE ? " [color=red, label=\"cycle\"];\n" : ";\n");
      }
    }
    std::cout << "}\n";
  }

  // Each include stands in the "includes" of its file. However deep they are, the stack is not.
  void printJson(const Node& root) const {
    struct Level {
      const Node* node;
      std::size_t next;  // of its includes
    };
    std::vector<Level> levels;  // outermost first
    printFields(root, 0);
    levels.push_back({&root, 0});
    while (!levels.empty()) {
      Level& level = levels.back();
      const auto& includes = level.node->includes;
      const std::size_t depth = 4 * levels.size();
      if (level.next < includes.size()) {
        const Node& node = *includes[level.next];
        std::cout << (level.next++ == 0 ? "\n" : ",\n") << indentation(depth);
        printFields(node, depth);
        levels.push_back({&node, 0});
      } else {
        if (!includes.empty()) std::cout << "\n" << indentation(depth - 2);
        std::cout << "]\n" << indentation(depth - 4) << "}";
        levels.pop_back();
      }
    }
    std::cout << "\n";
  }

 private:
  std::string nameOf(const Node& node) const {
    return node.path.empty() ? node.name : names.nameOf(node.path);
  }

  void printNode(const Node& node) const {
    std::cout << printable(nameOf(node));
    if (node.kind != Kind::FILE) {
      const bool isFine = node.kind == Kind::AGAIN;
      std::cout << "  " << (isFine ? colours.dim : colours.bad) << "(" << remarkOf(node.kind) << ")"
                << colours.off;
    }
    std::cout << "\n";
  }

  // Up to the beginning of the includes.
  void printFields(const Node& node, std::size_t depth) const {
    const std::string separator = ",\n" + indentation(depth + 2);
    std::cout << "{\n" << indentation(depth + 2) << "\"name\": " << inJson(node.name);
    if (!node.path.empty())
      std::cout << separator << "\"file\": " << inJson(names.nameOf(node.path));
    if (!node.include.file.empty()) {
      std::cout << separator << "\"line\": " << node.include.line << separator
                << "\"column\": " << node.include.column;
    }
    if (node.kind != Kind::FILE) {
      std::cout << separator << "\"remark\": " << inJson(remarkOf(node.kind));
    }
    std::cout << separator << "\"includes\": [";
  }

  std::string inDot(const Node& node) const {
    std::string text;
    for (const char c : printable(nameOf(node))) {
      if (c == '"' || c == '\\') text += '\\';
      text += c;
    }
    return "\"" + text + "\"";
  }

  const FileNames& names;
  const Colours colours;
};

struct Includes {
  static constexpr const char* name = "includes";
  static constexpr const char* summary = "Print which file includes which";

  void define(CLI::App& command) {
    load.defineDirectories(command);
    command.add_option("--format", format, "tree (the default), dot or json")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"tree", "dot", "json"}));
    defineFile(command, file);
  }

  ExitCode run() const {
    Loader loader(load);
    Graph graph;
    const auto problems = xml::check(loader.resolve(file), {}, false, graph);
    if (graph.root() == nullptr) throw Failure(NOT_LOADED, loader.notFound(file));
    graph.addMissing(problems);
    GraphPrinter printer(loader.getNames());
    if (format == "dot") {
      printer.printDot(graph);
    } else if (format == "json") {
      printer.printJson(*graph.root());
    } else {
      printer.printTree(*graph.root());
    }
    return reportUnread(problems, loader.getNames());
  }

 private:
  // What may hide includes from the graph.
  static ExitCode reportUnread(const std::vector<Problem>& problems, const FileNames& names) {
    ExitCode code = FINE;
    for (const Problem& problem : problems) {
      if (problem.rule != "not-well-formed" && problem.rule != "unloadable") continue;
      std::cout.flush();
      std::cerr << "zuconfig: " << names.shown(problem.location) << ": "
                << printable(problem.message) << " [" << problem.rule << "]\n";
      code = NOT_LOADED;
    }
    return code;
  }

  LoadOptions load;
  std::string format = "tree";
  std::string file;
};

}  // namespace

void addIncludes(CLI::App& app, Chosen& chosen) {
  addCommand<Includes>(app, chosen);
}

}  // namespace zuconfig
