#include "shared/writers.hpp"

#include <algorithm>
#include <vector>

#include "service/util/config/visit.hpp"
#include "shared/Failure.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::Visited;
using service::util::config::Visitor;

class PathsWriter : public Visitor {
 public:
  PathsWriter(std::ostream& out, bool isNull) : out(out), isNull(isNull) {}

  void property(const Visited& visited, const std::string& value) override {
    if (isNull) {
      out << visited.path << '\n' << value << '\0';
    } else {
      out << visited.path << '=' << escaped(value) << '\n';
    }
  }

 private:
  std::ostream& out;
  bool isNull;
};

class JsonWriter : public Visitor {
 public:
  explicit JsonWriter(std::ostream& out) : out(out) { open(); }

  // Writes what remains to be closed.
  void finish() {
    close();
    out << "\n";
  }

  void property(const Visited& visited, const std::string& value) override {
    if (visited.index == 0) startName(visited.name);
    out << (visited.index == 0 ? "[" : ", ") << inJson(value);
    if (visited.index + 1 == visited.count) out << "]";
  }

  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    if (visited.index == 0) {
      if (!levels.back().isInSections) startSections();
      startName(visited.name);
    }
    out << (visited.index == 0 ? "[" : ", ");
    open();
    return true;
  }

  void leaveSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    close();
    if (visited.index + 1 == visited.count) out << "]";
  }

 private:
  struct Level {
    bool isInSections;
    bool hasNames;  // in the object that is open
  };

  void indent(std::size_t more) const {
    out << "\n" << indentation(4 * levels.size() + 2 * more - 4);
  }

  void open() {
    levels.push_back({false, false});
    out << "{";
    indent(1);
    out << "\"properties\": {";
  }

  void startName(const std::string& name) {
    Level& level = levels.back();
    if (level.hasNames) out << ",";
    level.hasNames = true;
    indent(2);
    out << inJson(name) << ": ";
  }

  void closeObject() {
    if (levels.back().hasNames) indent(1);
    out << "}";
  }

  void startSections() {
    closeObject();
    out << ",";
    indent(1);
    out << "\"sections\": {";
    levels.back() = {true, false};
  }

  void close() {
    if (!levels.back().isInSections) startSections();
    closeObject();
    indent(0);
    out << "}";
    levels.pop_back();
  }

  std::ostream& out;
  std::vector<Level> levels;  // outermost first
};

// Every variable name is the prefix and, with "_" between them, the names on the way, each followed
// by its index unless that is 0. In a name, every byte other than ASCII letters and digits, and a
// digit that comes first, is written "__" and two hexadecimal digits: so no two values share a
// variable.
class ShellWriter : public Visitor {
 public:
  ShellWriter(std::ostream& out, const std::string& prefix) : out(out), variable(prefix) {}

  void property(const Visited& visited, const std::string& value) override {
    const std::size_t length = variable.size();
    extend(visited);
    out << variable << "='";
    for (const char c : value) {
      if (c == '\'') {
        out << "'\\''";
      } else {
        out << c;
      }
    }
    out << "'\n";
    variable.resize(length);
  }

  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    lengths.push_back(variable.size());
    extend(visited);
    variable += '_';
    return true;
  }

  void leaveSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) override {
    variable.resize(lengths.back());
    lengths.pop_back();
  }

 private:
  void extend(const Visited& visited) {
    const std::size_t start = variable.size();
    for (const char c : visited.name) {
      const bool isFirst = variable.size() == start;
      if (isAlphanumeric(c) && !(isFirst && isDigit(c))) {
        variable += c;
      } else {
        variable += "__" + inHexadecimal(c);
      }
    }
    if (visited.index > 0) variable += "_" + std::to_string(visited.index);
  }

  std::ostream& out;
  std::string variable;
  std::vector<std::size_t> lengths;  // of variable in the sections around, outermost first
};

bool startsVariable(const std::string& prefix) {
  const auto isAllowed = [](char c) { return isAlphanumeric(c) || c == '_'; };
  return !prefix.empty() && !isDigit(prefix[0]) &&
         std::all_of(prefix.begin(), prefix.end(), isAllowed);
}

}  // namespace

void writePaths(std::ostream& out, const IConfigPtr& config, bool isNull) {
  PathsWriter writer(out, isNull);
  service::util::config::visit(config, writer);
}

void writeJson(std::ostream& out, const IConfigPtr& config) {
  JsonWriter writer(out);
  service::util::config::visit(config, writer);
  writer.finish();
}

void writeShell(std::ostream& out, const IConfigPtr& config, const std::string& prefix) {
  if (!startsVariable(prefix)) {
    throw Failure(USAGE, "--prefix " + printable(prefix) + ": no start of a variable name");
  }
  ShellWriter writer(out, prefix);
  service::util::config::visit(config, writer);
}

}  // namespace zuconfig
