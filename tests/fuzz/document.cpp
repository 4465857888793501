// The input is a configuration file that is loaded, validated and not. A document that validation
// accepts loads without it as well, with the same content; every value is found by its selector,
// and the search path is put back. The file may refer to a second one. An input that breaks this,
// once mended, becomes a seed.
//
// There is one exception to the same content. A document type may declare an attribute to be of
// tokens; the XML library then strips the blanks in its value, but leaves them when a schema, which
// takes any text for a name, has the last word.

#include <locator/locator.h>
#include <sys/resource.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "TemporaryFolder.hpp"
#include "cppUtil/err/Exception.hpp"
#include "printed.hpp"
#include "service/util/config/visit.hpp"
#include "service/util/config/xml/Session.hpp"
#include "service/util/config/xml/create.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace {

using service::util::locator::ConfigLocator;
namespace config = service::util::config;

// Ends the process when something does not hold: the fuzzer then keeps the input.
void require(bool holds, const std::string& finding) {
  if (holds) return;
  std::fprintf(stderr, "\nFinding: %s\n", finding.c_str());
  std::abort();
}

// Makes the stack small while it lives: a load looks at the limit, and circles end soon.
class SmallStack {
 public:
  SmallStack() {
    getrlimit(RLIMIT_STACK, &before);
    const struct rlimit small = {rlim_t{1} << 20, before.rlim_max};
    setrlimit(RLIMIT_STACK, &small);
  }
  ~SmallStack() { setrlimit(RLIMIT_STACK, &before); }
  SmallStack(const SmallStack&) = delete;
  SmallStack& operator=(const SmallStack&) = delete;

 private:
  struct rlimit before = {};
};

// Looks every value up again by its selector.
class Selector : public Printer {
 public:
  explicit Selector(const config::IConfigPtr& root) : root(root) {}

  void property(const Visited& visited, const std::string& value) override {
    Printer::property(visited, value);
    if (!visited.selectable) return;
    std::string selected;
    require(root->getProperty(config::Select(visited.path), selected) && selected == value,
            "not found by its selector: " + visited.path);
  }

 private:
  const config::IConfigPtr& root;
};

struct Outcome {
  bool isLoaded = false;
  std::string text;  // the configuration or the message
};

Outcome load(bool validate) {
  const std::vector<std::string> searchPath = ConfigLocator::getEntries();
  const SmallStack smallStack;
  Outcome outcome;
  try {
    const config::IConfigPtr loaded = config::xml::create("main.xml", {}, validate);
    Selector selector(loaded);
    config::visit(loaded, selector);
    outcome = {true, selector.text};
  } catch (const cppUtil::err::Exception& e) {
    outcome.text = e.getMessage();
  }
  require(ConfigLocator::getEntries() == searchPath, "the search path is not put back");
  return outcome;
}

const TemporaryFolder& folder() {
  static const TemporaryFolder folder;
  return folder;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  static const config::xml::Session session;
  require(std::setlocale(LC_ALL, "C.UTF-8") != nullptr, "no locale for UTF-8");
  cu_SearchPath_clear(getConfigLocator());
  ConfigLocator::prepend(folder().path);
  folder().write("part.xml",
                 "<config xmlns='urn:zu:util:config' name='n' version='1'>"
                 "<property name='part'>value</property></config>");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document(reinterpret_cast<const char*>(data), size);
  folder().write("main.xml", document);
  const Outcome plain = load(false);
  const Outcome validated = load(true);
  if (!validated.isLoaded) return 0;
  require(plain.isLoaded, "valid, and not loaded without validation: " + plain.text);
  if (document.find("ATTLIST") != std::string::npos) return 0;
  require(plain.text == validated.text,
          "loaded as\n" + plain.text + "\nand with validation as\n" + validated.text);
  return 0;
}

#ifdef ZU_FUZZ_REPLAY
// Runs the files in the directories that are given.
int main(int argc, char** argv) {
  LLVMFuzzerInitialize(&argc, &argv);
  std::set<std::filesystem::path> files;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (entry.is_regular_file()) files.insert(entry.path());
    }
  }
  require(!files.empty(), "there is nothing to run");
  for (const std::filesystem::path& file : files) {
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    std::ifstream stream(file, std::ios::binary);
    const std::string input(std::istreambuf_iterator<char>(stream), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  }
}
#endif
