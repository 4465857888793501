#include "formats.hpp"

namespace benchmarks {

namespace {

using Texts = std::vector<std::string>;

// One text alone, several as a list: the same in all formats that have lists.
std::ostream& operator<<(std::ostream& out, const Texts& texts) {
  if (texts.size() == 1) return out << '"' << texts[0] << '"';
  const char* before = "[";
  for (const std::string& text : texts) {
    out << before << '"' << text << '"';
    before = ", ";
  }
  return out << ']';
}

std::string inner(const std::string& indent) {
  return indent + "  ";
}

void writeInfo(const Tree& tree, const std::string& indent, std::ostream& out) {
  for (const auto& [name, values] : tree.properties) {
    for (const std::string& value : values) out << indent << name << " \"" << value << "\"\n";
  }
  for (const auto& [name, sections] : tree.sections) {
    for (const Tree& section : sections) {
      out << indent << name << " {\n";
      writeInfo(section, inner(indent), out);
      out << indent << "}\n";
    }
  }
}

void writeJson(const Tree& tree, const std::string& indent, std::ostream& out) {
  const char* before = "{\n";
  const auto begin = [&](const std::string& name) {
    out << before << indent << '"' << name << "\": ";
    before = ",\n";
  };
  for (const auto& [name, values] : tree.properties) {
    begin(name);
    out << values;
  }
  for (const auto& [name, sections] : tree.sections) {
    begin(name);
    const char* bracket = "[";
    for (const Tree& section : sections) {
      out << bracket;
      writeJson(section, inner(indent), out);
      bracket = ", ";
    }
    out << ']';
  }
  out << '}';
}

void writeLibconfig(const Tree& tree, const std::string& indent, std::ostream& out) {
  for (const auto& [name, values] : tree.properties) {
    out << indent << name << " = " << values << ";\n";
  }
  for (const auto& [name, sections] : tree.sections) {
    const char* before = " = ({\n";
    out << indent << name;
    for (const Tree& section : sections) {
      out << before;
      writeLibconfig(section, inner(indent), out);
      before = "}, {\n";
    }
    out << indent << "});\n";
  }
}

void writeToml(const Tree& tree, const std::string& path, std::ostream& out) {
  for (const auto& [name, values] : tree.properties) out << name << " = " << values << '\n';
  for (const auto& [name, sections] : tree.sections) {
    for (const Tree& section : sections) {
      out << "\n[[" << path << name << "]]\n";
      writeToml(section, path + name + '.', out);
    }
  }
}

void writeYaml(const Tree& tree, const std::string& indent, std::ostream& out) {
  for (const auto& [name, values] : tree.properties) {
    out << indent << name << ": " << values << '\n';
  }
  for (const auto& [name, sections] : tree.sections) {
    out << indent << name << ":\n";
    for (const Tree& section : sections) {
      out << indent << "-\n";
      writeYaml(section, inner(indent), out);
    }
  }
}

}  // namespace

void writeInfo(const Tree& tree, std::ostream& out) {
  writeInfo(tree, "", out);
}

void writeJson(const Tree& tree, std::ostream& out) {
  writeJson(tree, inner(""), out);
}

void writeLibconfig(const Tree& tree, std::ostream& out) {
  writeLibconfig(tree, "", out);
}

void writeToml(const Tree& tree, std::ostream& out) {
  writeToml(tree, "", out);
}

void writeYaml(const Tree& tree, std::ostream& out) {
  writeYaml(tree, "", out);
}

}  // namespace benchmarks
