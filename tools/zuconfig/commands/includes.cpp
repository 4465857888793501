// zuconfig includes: which file includes which. Reads all files that a load would read, also when
// some are missing or include each other in a circle.
#include <iostream>
#include <vector>

#include "commands/Command.hpp"
#include "page/picture.hpp"
#include "shared/IncludeGraph.hpp"
#include "shared/Loader.hpp"
#include "shared/missingFile.hpp"
#include "shared/problems.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

namespace xml = service::util::config::xml;
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

  void printDot(const IncludeGraph& graph) const {
    std::cout << "digraph includes {\n  node [shape=box];\n";
    for (const Node& node : graph.all()) {
      if (node.kind == Node::FILE) std::cout << "  " << inDot(node) << ";\n";
      if (node.kind == Node::MISSING) std::cout << "  " << inDot(node) << " [style=dashed];\n";
    }
    for (const Node& node : graph.all()) {
      for (const Node* included : node.includes) {
        std::cout << "  " << inDot(node) << " -> " << inDot(*included)
                  << (included->kind == Node::CYCLE ? " [color=red, label=\"cycle\"];\n" : ";\n");
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
    if (node.kind != Node::FILE) {
      const bool isFine = node.kind == Node::AGAIN;
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
    if (node.kind != Node::FILE) {
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
    command.add_option("--format", format, "tree (the default), dot, json or svg")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"tree", "dot", "json", "svg"}));
    defineFile(command, file);
  }

  ExitCode run() const {
    Loader loader(load);
    IncludeGraph graph;
    const auto problems = xml::check(loader.resolve(file), {}, false, graph);
    if (graph.root() == nullptr) throw Failure(NOT_LOADED, notFound(file));
    graph.addMissing(problems);
    GraphPrinter printer(loader.getNames());
    if (format == "dot") {
      printer.printDot(graph);
    } else if (format == "json") {
      printer.printJson(*graph.root());
    } else if (format == "svg") {
      writePicture(std::cout, listFiles(graph, loader.getNames()));
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
