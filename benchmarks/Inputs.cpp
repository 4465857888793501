#include "Inputs.hpp"

#include <stdlib.h>  // mkdtemp

#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <system_error>

#include "formats.hpp"

namespace benchmarks {

namespace {

constexpr std::uint32_t seed = 20240229;

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '&') {
      result += "&amp;";
    } else if (c == '<') {
      result += "&lt;";
    } else {
      result += c;
    }
  }
  return result;
}

class Writer : public Sink {
 public:
  explicit Writer(const std::string& name) : out(name) {
    out.exceptions(std::ios::badbit | std::ios::failbit);
  }

  void beginSection(const std::string& name) final {
    openSection(name);
    path.push_back(name);
  }
  void endSection() final {
    const std::string name = path.back();
    path.pop_back();
    closeSection(name);
  }

 protected:
  virtual void openSection(const std::string& name) = 0;
  virtual void closeSection(const std::string& name) = 0;
  std::string indent() const { return std::string(2 * (path.size() + 1), ' '); }

  std::ofstream out;
  std::vector<std::string> path;
};

class ConfigWriter : public Writer {
 public:
  // first: what stands in front of the root element. last: its last element.
  explicit ConfigWriter(const std::string& name, const std::string& first = "",
                        const std::string& last = "")
      : Writer(name), last(last) {
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        << first << "<config xmlns=\"urn:zu:util:config\" name=\"benchmark\" version=\"1.0\">\n";
  }
  ~ConfigWriter() override { out << last << "</config>\n"; }

  void property(const std::string& name, const std::string& value) override {
    out << indent() << "<property name=\"" << name << "\">" << escaped(value) << "</property>\n";
  }
  void include(const std::string& name) {
    out << indent() << "<include>" << name << "</include>\n";
  }

 private:
  void openSection(const std::string& name) override {
    out << indent() << "<section name=\"" << name << "\">\n";
  }
  void closeSection(const std::string&) override { out << indent() << "</section>\n"; }

  const std::string last;
};

class ElementsWriter : public Writer {
 public:
  explicit ElementsWriter(const std::string& name) : Writer(name) { out << "<config>\n"; }
  ~ElementsWriter() override { out << "</config>\n"; }

  void property(const std::string& name, const std::string& value) override {
    out << indent() << '<' << name << '>' << escaped(value) << "</" << name << ">\n";
  }

 private:
  void openSection(const std::string& name) override { out << indent() << '<' << name << ">\n"; }
  void closeSection(const std::string& name) override { out << indent() << "</" << name << ">\n"; }
};

// Drops what repeats a name where it stands.
class FirstOnly : public Sink {
 public:
  explicit FirstOnly(Sink& target) : target(target) {}

  void beginSection(const std::string& name) override {
    if (dropped != 0 || !names.back().insert(name).second) {
      ++dropped;
      return;
    }
    target.beginSection(name);
    names.emplace_back();
  }
  void endSection() override {
    if (dropped != 0) {
      --dropped;
      return;
    }
    target.endSection();
    names.pop_back();
  }
  void property(const std::string& name, const std::string& value) override {
    if (dropped == 0 && names.back().insert(name).second) target.property(name, value);
  }

 private:
  Sink& target;
  std::vector<std::set<std::string>> names = {{}};
  std::size_t dropped = 0;  // sections that are open and left out
};

class LibconfigWriter : public Writer {
 public:
  using Writer::Writer;

  void property(const std::string& name, const std::string& value) override {
    out << indent() << name << " = \"" << value << "\";\n";
  }

 private:
  void openSection(const std::string& name) override { out << indent() << name << " = {\n"; }
  void closeSection(const std::string&) override { out << indent() << "};\n"; }
};

class SampleCollector : public Sink {
 public:
  void beginSection(const std::string& name) override {
    prefixes.push_back(prefixes.back() + name + ".");
  }
  void endSection() override { prefixes.pop_back(); }
  void property(const std::string& name, const std::string& value) override {
    if (prefixes.size() == 3) samples.push_back({prefixes.back() + name, value});
  }

  std::vector<Sample> samples;

 private:
  std::vector<std::string> prefixes = {""};
};

using WriteTree = void (*)(const Tree&, std::ostream&);

void write(const Shape& shape, const std::string& name, WriteTree writeTree) {
  Tree tree;
  TreeBuilder builder(tree);
  generate(shape, seed, builder);
  std::ofstream out;
  out.exceptions(std::ios::badbit | std::ios::failbit);
  out.open(name);
  writeTree(tree, out);
}

void write(const Shape& shape, Format format, const std::string& name) {
  switch (format) {
    case Format::CONFIG: {
      ConfigWriter writer(name);
      return generate(shape, seed, writer);
    }
    case Format::DOCUMENT_TYPE: {
      ConfigWriter writer(name, "<!DOCTYPE config>\n");
      return generate(shape, seed, writer);
    }
    case Format::PREFIX_LAST: {
      ConfigWriter writer(name, "", "<note:note xmlns:note=\"urn:example:note\"/>\n");
      return generate(shape, seed, writer);
    }
    case Format::ELEMENTS: {
      ElementsWriter writer(name);
      return generate(shape, seed, writer);
    }
    case Format::LIBCONFIG: {
      LibconfigWriter writer(name);
      FirstOnly filter(writer);
      return generate(shape, seed, filter);
    }
    case Format::LIBCONFIG_LISTS:
      return write(shape, name, writeLibconfig);
    case Format::INFO:
      return write(shape, name, writeInfo);
    case Format::JSON:
      return write(shape, name, writeJson);
    case Format::TOML:
      return write(shape, name, writeToml);
    case Format::YAML:
      return write(shape, name, writeYaml);
  }
}

}  // namespace

Inputs::Inputs() {
  std::string name = std::filesystem::temp_directory_path() / "zu-benchmark-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), name);
  }
  directory = name;
}

Inputs::~Inputs() {
  std::error_code ignored;
  std::filesystem::remove_all(directory, ignored);
}

std::string Inputs::file(const Shape& shape, Format format) {
  const std::filesystem::path path =
      directory / (std::to_string(shape.groups) + "x" + std::to_string(shape.properties) + "." +
                   std::to_string(static_cast<int>(format)));
  if (!std::filesystem::exists(path)) write(shape, format, path);
  return path;
}

std::vector<std::string> Inputs::chain(std::size_t count) {
  return includes("chain", count, true);
}

std::vector<std::string> Inputs::sideBySide(std::size_t count) {
  return includes("side", count + 1, false);
}

std::string Inputs::deep(std::size_t depth) {
  const std::string path = directory / ("deep" + std::to_string(depth) + ".xml");
  if (std::filesystem::exists(path)) return path;
  ConfigWriter writer(path);
  for (std::size_t i = 0; i < depth; ++i) writer.beginSection("level");
  writer.property("innermost", "yes");
  for (std::size_t i = 0; i < depth; ++i) writer.endSection();
  return path;
}

std::vector<std::string> Inputs::includes(const std::string& name, std::size_t count, bool nested) {
  const auto fileName = [&](std::size_t i) {
    return name + std::to_string(count) + "-" + std::to_string(i) + ".xml";
  };
  std::vector<std::string> files;
  for (std::size_t i = 0; i < count; ++i) {
    files.push_back(directory / fileName(i));
    if (std::filesystem::exists(files.back())) continue;
    ConfigWriter writer(files.back());
    if (nested && i + 1 < count) writer.include(fileName(i + 1));
    for (std::size_t j = 1; !nested && i == 0 && j < count; ++j) writer.include(fileName(j));
    if (nested || i != 0) generate(smallShape, seed + static_cast<std::uint32_t>(i), writer);
  }
  return files;
}

void tell(const Shape& shape, Sink& sink) {
  generate(shape, seed, sink);
}

std::vector<Sample> samples(const Shape& shape, std::size_t count) {
  SampleCollector collector;
  FirstOnly filter(collector);
  generate(shape, seed, filter);
  std::vector<Sample> result;
  for (std::size_t i = 0; i < count; ++i) {
    result.push_back(collector.samples[i * collector.samples.size() / count]);
  }
  return result;
}

std::vector<std::string> parts(const std::string& path) {
  std::vector<std::string> result = {""};
  for (const char c : path) {
    if (c == '.') {
      result.emplace_back();
    } else {
      result.back() += c;
    }
  }
  return result;
}

}  // namespace benchmarks
