// Loads made-up documents by both ways, plain first and through the XML library alone, validated
// and not, and compares all that a caller can notice: the tree, the calls of an observer, the
// failure, the log and the search path.
//
// usage: plain_difference [SEED [COUNT]] | FOLDER...

#include <cutil/cutil.h>
#include <locator/locator.h>
#include <stdlib.h>

#include <clocale>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "../TemporaryFolder.hpp"
#include "Documents.hpp"
#include "cppUtil/err/Exception.hpp"
#include "plain/readFile.hpp"
#include "service/util/config/xml/Observer.hpp"
#include "service/util/config/xml/Session.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace {

using service::util::config::IConfigPtr;
using service::util::config::xml::Location;

// Tells everything in the order in which it happens.
class Story : public service::util::config::xml::Observer {
 public:
  void fileEntered(const File& file) override {
    text << "enter " << file.name << " " << file.path << " " << file.include.line << ":"
         << file.include.column << "\n";
  }
  void sectionAdded(const IConfigPtr& /*parent*/, const std::string& name, std::uint32_t index,
                    const IConfigPtr& /*section*/, const Location& location) override {
    tell("section", name, index, location);
  }
  void propertyAdded(const IConfigPtr& config, const std::string& name, std::uint32_t index,
                     const Location& location) override {
    tell("property", name, index, location);
    std::string value;
    config->getProperty(name, value, index);
    text << value << "\n";
  }
  void fileLeft(const File& file) override { text << "leave " << file.path << "\n"; }

  static void log(std::uint32_t level, const char* message, void* story) {
    static_cast<Story*>(story)->text << "log " << level << " " << message << "\n";
  }

  std::ostringstream text;

 private:
  void tell(const char* what, const std::string& name, std::uint32_t index,
            const Location& location) {
    text << what << " " << name << "[" << index << "] " << location.file << ":" << location.line
         << ":" << location.column << "\n";
  }
};

std::string load(const std::string& file, const char* plain, bool validate) {
  ::setenv("ZU_CONFIG_PLAIN", plain, 1);
  Story story;
  cu_Logger_setCallback(&Story::log, &story);
  try {
    service::util::config::xml::create(file, {}, validate, story);
    story.text << "loaded\n";
  } catch (const cppUtil::err::Exception& e) {
    const std::string message = e.getMessage();
    story.text << "code " << e.getCode() << " " << e.getFile() << " " << e.getFunction() << ": "
               << message.substr(0, message.find(": 0x")) << "\n";  // some tell an address
  }
  for (const std::string& entry : service::util::locator::ConfigLocator::getEntries()) {
    story.text << "path " << entry << "\n";
  }
  return story.text.str();
}

struct Counts {
  long loaded = 0;
  long plain = 0;
};

// Loads the file, which holds the document, by both ways; tells of a difference and keeps it. A
// document that is not plain goes one way only, but for one in ten.
bool areAlike(const std::filesystem::path& file, const std::string& document, bool validate,
              Counts& counts) {
  const bool isPlain = service::util::config::plain::readFile(file, validate).has_value();
  const std::string expected = load(file, "off", validate);
  const std::string found =
      isPlain || document.size() % 10 == 0 ? load(file, "on", validate) : expected;
  counts.plain += isPlain ? 1 : 0;
  counts.loaded += expected.find("\nloaded\n") != expected.npos ? 1 : 0;
  if (found == expected) return true;
  std::ofstream("difference.xml", std::ios::binary) << document;
  std::cerr << "kept as difference.xml" << (validate ? ", validated" : "") << ". The XML library:\n"
            << expected << "The plain way:\n"
            << found;
  return false;
}

int run(std::uint32_t seed, long count) {
  const service::util::config::xml::Session session;
  const TemporaryFolder folder;
  cu_SearchPath_clear(getConfigLocator());
  cu_SearchPath_append(getConfigLocator(), folder.path.c_str());
  const std::string part =
      "<config xmlns='urn:zu:util:config' name='n' version='1'>\r\n<property name='a'>1</property>"
      "<section name='s'/>";
  folder.write("part.xml", part + "</config>");
  folder.write("sub/part.xml", part + "<include>../part.xml</include></config>");
  folder.write("wrong.xml", part);

  Documents documents(seed);
  Counts counts;
  const std::filesystem::path file = folder.path / "main.xml";
  for (long i = 0; i < count; ++i) {
    const std::string document = documents.next();
    folder.write("main.xml", document);
    if (!areAlike(file, document, false, counts) || !areAlike(file, document, true, counts)) {
      return 1;
    }
  }
  std::cout << "no difference in " << 2 * count << " loads; " << counts.loaded << " succeed, "
            << counts.plain << " are plain\n";
  // Most of what loads is to be plain, or the comparison is none.
  return counts.plain < counts.loaded / 2 ? 1 : 0;
}

// Tells how many of the files below the folders are plain; of those that load, most must be.
int tellShare(const std::vector<std::string>& folders) {
  const service::util::config::xml::Session session;
  Counts counts;
  long files = 0;
  for (const std::string& folder : folders) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (entry.path().extension() != ".xml") continue;
      const std::string file = std::filesystem::absolute(entry.path());
      ++files;
      if (load(file, "off", false).find("\nloaded\n") == std::string::npos) continue;
      ++counts.loaded;
      counts.plain += service::util::config::plain::readFile(file, false) ? 1 : 0;
    }
  }
  std::cout << files << " files; " << counts.loaded << " load, " << counts.plain
            << " of them are plain\n";
  return counts.plain < counts.loaded / 2 ? 1 : 0;
}

}  // namespace

// Arguments: a seed and a number of documents, or folders of files.
int main(int argc, char** argv) {
  // Where it is not known that the XML library's local code page is UTF-8, the locale decides.
  std::setlocale(LC_ALL, "C.UTF-8");
  try {
    if (argc > 1 && std::filesystem::is_directory(argv[1]))
      return tellShare({argv + 1, argv + argc});
    return run(argc > 1 ? static_cast<std::uint32_t>(std::atol(argv[1])) : 1,
               argc > 2 ? std::atol(argv[2]) : 1000);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << "\n";
    return 1;
  }
}
