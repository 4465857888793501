#include "harness.hpp"

#include <locator/locator.h>
#include <sys/resource.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "cppUtil/err/Exception.hpp"
#include "service/util/config/Select.hpp"
#include "service/util/config/visit.hpp"
#include "service/util/config/xml/Session.hpp"
#include "service/util/config/xml/create.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace fuzz {

namespace {

namespace fs = std::filesystem;
namespace config = service::util::config;
using service::util::locator::ConfigLocator;

constexpr rlim_t stackSize = 1 << 20;

// The temporary directory of this process.
class Directory {
 public:
  Directory() {
    std::string pattern = fs::temp_directory_path() / "zu-fuzz-XXXXXX";
    require(mkdtemp(pattern.data()) != nullptr, "no temporary directory");
    path = pattern;
  }
  ~Directory() { fs::remove_all(path); }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;

  fs::path path;
};

// Makes the stack small while it lives: a load looks at the limit, and circles end soon.
class SmallStack {
 public:
  SmallStack() {
    getrlimit(RLIMIT_STACK, &before);
    const struct rlimit small = {stackSize, before.rlim_max};
    setrlimit(RLIMIT_STACK, &small);
  }
  ~SmallStack() { setrlimit(RLIMIT_STACK, &before); }
  SmallStack(const SmallStack&) = delete;
  SmallStack& operator=(const SmallStack&) = delete;

 private:
  struct rlimit before = {};
};

// Writes the content of a configuration, and looks every value up again by its selector.
class Writer : public config::Visitor {
 public:
  Writer(const config::IConfigPtr& root, std::string& content) : root(root), content(content) {}

  void property(const config::Visited& visited, const std::string& value) override {
    content += propertyText(visited.name, value);
    if (!visited.selectable) return;
    std::string selected;
    require(root->getProperty(config::Select(visited.path), selected) && selected == value,
            "not found by its selector: " + visited.path);
  }
  bool enterSection(const config::Visited& visited, const config::IConfigPtr&) override {
    content += sectionBegin(visited.name);
    return true;
  }
  void leaveSection(const config::Visited&, const config::IConfigPtr&) override {
    content += sectionEnd();
  }

 private:
  const config::IConfigPtr& root;
  std::string& content;
};

}  // namespace

void fail(const std::string& finding) {
  std::fprintf(stderr, "\nFinding: %s\n", finding.c_str());
  std::abort();
}

fs::path prepareLoads() {
  static const Directory directory;
  static const config::xml::Session session;
  require(std::setlocale(LC_ALL, "C.UTF-8") != nullptr, "no locale for UTF-8");

  cu_SearchPath_clear(getConfigLocator());
  ConfigLocator::prepend(directory.path);
  return directory.path;
}

void write(const fs::path& file, const std::string& content) {
  std::ofstream stream(file, std::ios::binary);
  stream << content;
  require(stream.flush().good(), "cannot write " + file.string());
}

Outcome load(const std::string& file, bool validate) {
  const std::vector<std::string> searchPath = ConfigLocator::getEntries();
  const SmallStack smallStack;
  Outcome outcome;
  try {
    const config::IConfigPtr loaded = config::xml::create(file, {}, validate);
    require(loaded != nullptr, "loaded nothing");
    outcome.isLoaded = true;
    Writer writer(loaded, outcome.content);
    config::visit(loaded, writer);
  } catch (const cppUtil::err::Exception& e) {
    require(!outcome.isLoaded, "loaded, and then failed to tell the content: " + e.getMessage());
    outcome.code = e.getCode();
    outcome.message = e.getMessage();
  }
  require(ConfigLocator::getEntries() == searchPath, "the search path is not put back");
  return outcome;
}

std::string propertyText(const std::string& name, const std::string& value) {
  return name + " = " + value + "\n";
}

std::string sectionBegin(const std::string& name) {
  return name + " {\n";
}

std::string sectionEnd() {
  return "}\n";
}

}  // namespace fuzz
