// A configuration as text, the same for all tests: one line for each value and section, names in
// byte order, occurrences in the order of their index, the content of a section below it.
#ifndef TESTS_PRINTED_HPP
#define TESTS_PRINTED_HPP

#include <string>

#include "service/util/config/visit.hpp"

inline std::string inQuotes(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '\n') {
      result += "\\n";
    } else if (c == '\t') {
      result += "\\t";
    } else if (c == '"' || c == '\\') {
      result += {'\\', c};
    } else {
      result += c;
    }
  }
  return result + "\"";
}

class Printer : public service::util::config::Visitor {
 public:
  using Visited = service::util::config::Visited;

  void property(const Visited& visited, const std::string& value) override {
    begin(visited);
    text += " = " + inQuotes(value) + "\n";
  }
  bool enterSection(const Visited& visited, const service::util::config::IConfigPtr&) override {
    begin(visited);
    text += ":\n";
    indent += "  ";
    return true;
  }
  void leaveSection(const Visited&, const service::util::config::IConfigPtr&) override {
    indent.resize(indent.size() - 2);
  }

  std::string text;

 private:
  void begin(const Visited& visited) {
    text += indent + inQuotes(visited.name) + "[" + std::to_string(visited.index) + "]";
  }

  std::string indent;
};

inline std::string printed(const service::util::config::IConfigPtr& config) {
  Printer printer;
  service::util::config::visit(config, printer);
  return printer.text;
}

#endif
