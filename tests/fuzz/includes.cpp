// Include graphs: the input is a small program that writes configuration files, which are loaded
// and compared with what a model of the include rules says. What is not a step is passed over.
//
//   v      first of all: validate
//   F d n  begins the file n in the directory d; the first one is the file that is loaded
//   p n    adds a property             s n  begins a section           e  ends it
//   i n    includes the file n         I d n  includes it as a path below the directory d
//   x      leaves the file malformed
//
// d and n are any characters, taken modulo the number of directories and names.

#include <list>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "harness.hpp"

namespace {

namespace fs = std::filesystem;

constexpr const char* directories[] = {".", "a", "a/b"};
constexpr unsigned int nameCount = 5;
constexpr std::size_t maximumSectionDepth = 8;

// How many files a load of the model reads before the input is given up as too large, and how deep
// they include each other when they do so for ever: by then a state has come back.
constexpr int maximumFiles = 1000;
constexpr int endlessDepth = 100;

struct Include {
  std::string text;
  int line;
};

struct Element {
  std::string name;
  std::list<std::pair<std::string, std::string>> properties;
  std::list<Include> includes;
  std::list<Element> sections;
};

struct File {
  std::string content;
  Element root;
  bool isMalformed = false;
};

using Files = std::map<std::string, File>;

// The steps of the input.
class Steps {
 public:
  explicit Steps(std::string_view text) : text(text) {}

  bool isAtEnd() const { return text.empty(); }
  char next() {
    if (text.empty()) return 0;
    const char step = text.front();
    text.remove_prefix(1);
    return step;
  }
  unsigned int below(unsigned int bound) { return static_cast<unsigned char>(next()) % bound; }

 private:
  std::string_view text;
};

// Writes one file after the other, each element on a line of its own.
class FileWriter {
 public:
  void begin(const std::string& name) {
    end();
    file = {};
    fileName = name;
    line = 0;
    add("<config xmlns='urn:zu:util:config' name='n' version='1'>");
    open = {&file.root};
  }
  void end() {
    if (open.empty()) return;
    while (open.size() > 1) endSection();
    if (!file.isMalformed) add("</config>");
    open.clear();
    files[fileName] = std::move(file);
  }
  void property(const std::string& name) {
    const std::string value = std::to_string(++values);
    add("<property name='" + name + "'>" + value + "</property>");
    open.back()->properties.emplace_back(name, value);
  }
  void include(const std::string& text) {
    add("<include>" + text + "</include>");
    open.back()->includes.push_back({text, line});
  }
  void beginSection(const std::string& name) {
    if (open.size() > maximumSectionDepth) return;
    add("<section name='" + name + "'>");
    open.push_back(&open.back()->sections.emplace_back(Element{name, {}, {}, {}}));
  }
  void endSection() {
    if (open.size() == 1) return;
    add("</section>");
    open.pop_back();
  }
  void breakOff() { file.isMalformed = true; }

  Files files;

 private:
  void add(const std::string& text) {
    file.content += text + "\n";
    ++line;
  }

  File file;
  std::string fileName;
  std::vector<Element*> open;
  int line = 0;
  int values = 0;
};

std::string nameOf(unsigned int number) {
  return std::string("f") + std::to_string(number) + ".xml";
}

std::string inDirectory(unsigned int directory, unsigned int name) {
  return directory == 0 ? nameOf(name) : directories[directory] + ("/" + nameOf(name));
}

// The files of the input; the first is the name of the one to load.
std::pair<std::string, Files> filesOf(Steps& steps) {
  FileWriter writer;
  std::string main = inDirectory(0, 0);
  writer.begin(main);
  while (!steps.isAtEnd()) {
    const char step = steps.next();
    if (step == 'F') {
      const unsigned int directory = steps.below(std::size(directories));
      writer.begin(inDirectory(directory, steps.below(nameCount)));
    } else if (step == 'p') {
      writer.property("p" + std::to_string(steps.below(nameCount)));
    } else if (step == 'i') {
      writer.include(nameOf(steps.below(nameCount)));
    } else if (step == 'I') {
      const unsigned int directory = steps.below(std::size(directories));
      writer.include(inDirectory(directory, steps.below(nameCount)));
    } else if (step == 's') {
      writer.beginSection("s" + std::to_string(steps.below(nameCount)));
    } else if (step == 'e') {
      writer.endSection();
    } else if (step == 'x') {
      writer.breakOff();
    }
  }
  writer.end();
  return {main, writer.files};
}

struct Section {
  std::map<std::string, std::list<std::string>> properties;
  std::map<std::string, std::list<Section>> sections;
};

struct Failure {
  unsigned int code;
  std::string message;  // the end of it
};

struct TooLarge {};

// Loads the files as the loader should.
class Model {
 public:
  Model(const fs::path& root, const Files& files) : root(root), files(files), path{root} {}

  // The one that is loaded stands at the root.
  void load(const std::string& name, Section& section) { include(Include{name, 0}, "", section); }

 private:
  // The place of the file that the search path leads to.
  std::optional<fs::path> find(const std::string& name) const {
    for (const fs::path& directory : path) {
      const fs::path file = directory / name;
      if (files.count(file.lexically_relative(root)) != 0) return file;
    }
    return std::nullopt;
  }

  void include(const Include& include, const std::string& from, Section& section) {
    const auto found = find(include.text);
    if (!found) {
      throw Failure{3, "XMLParser: in file \"" + from + "\" at line " +
                           std::to_string(include.line) + " at column 10:  included " +
                           "configuration file '" + include.text + "' not found!"};
    }
    if (path.size() > endlessDepth) throw Failure{6, " nested too deeply for the stack!"};
    if (++read > maximumFiles) throw TooLarge();
    const File& file = files.at(found->lexically_relative(root));
    if (file.isMalformed) throw Failure{6, ""};
    path.push_front(found->parent_path());
    walk(file.root, *found, section);
    path.pop_front();
  }

  void walk(const Element& element, const std::string& from, Section& section) {
    for (const auto& [name, value] : element.properties) section.properties[name].push_back(value);
    for (const Include& next : element.includes) include(next, from, section);
    for (const Element& next : element.sections) {
      walk(next, from, section.sections[next.name].emplace_back());
    }
  }

  const fs::path& root;
  const Files& files;
  std::list<fs::path> path;  // the search path
  int read = 0;
};

std::string contentOf(const Section& section) {
  std::string content;
  for (const auto& [name, values] : section.properties) {
    for (const std::string& value : values) content += fuzz::propertyText(name, value);
  }
  for (const auto& [name, sections] : section.sections) {
    for (const Section& inner : sections) {
      content += fuzz::sectionBegin(name) + contentOf(inner) + fuzz::sectionEnd();
    }
  }
  return content;
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

fs::path root;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  root = fuzz::prepareLoads();
  fs::create_directories(root / directories[2]);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  const bool validate = !text.empty() && text[0] == 'v';
  Steps steps(text);
  const auto [main, files] = filesOf(steps);

  std::optional<Failure> failure;
  Section expected;
  try {
    Model(root, files).load(main, expected);
  } catch (const Failure& expectedFailure) {
    failure = expectedFailure;
  } catch (const TooLarge&) {
    return 0;
  }

  for (const auto& [name, file] : files) fuzz::write(root / name, file.content);
  const fuzz::Outcome outcome = fuzz::load(main, validate);
  for (const auto& [name, file] : files) fs::remove(root / name);

  if (failure) {
    fuzz::require(!outcome.isLoaded && outcome.code == failure->code &&
                      endsWith(outcome.message, failure->message),
                  "expected code " + std::to_string(failure->code) + " and " + failure->message +
                      ", got code " + std::to_string(outcome.code) + " and " + outcome.message);
  } else {
    fuzz::require(outcome.isLoaded, "not loaded: " + outcome.message);
    fuzz::require(outcome.content == contentOf(expected),
                  "expected\n" + contentOf(expected) + "\ngot\n" + outcome.content);
  }
  return 0;
}
