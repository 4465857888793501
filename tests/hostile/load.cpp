// Loads one configuration file and prints what came of it, for tests that watch from outside.
//
// usage: load FILE VALIDATE THREAD LATER_STACK [URI LOCATION]...
//   VALIDATE     1 to validate, with that list of schemas, else 0
//   THREAD       1 to load on another thread than the first, else 0
//   LATER_STACK  the limit on the stack, in bytes, that is set after first.xml was loaded; 0: none
//   is
//
// Writes "LOADED" and the configuration, or "FAILED", the code and the message. Exits with 0 in
// both cases; with 1 when anything but the library's exception came out or when the load did not
// put the state of the process back. A file fifo.xml in the current directory becomes a FIFO
// between the log entry about it and reading it.

#include <cutil/cutil.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <thread>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "cppUtil/err/Exception.hpp"
#include "service/util/config/visit.hpp"
#include "service/util/config/xml/create.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace {

using service::util::config::IConfigPtr;
using service::util::config::xml::create;
using service::util::locator::ConfigLocator;

void require(bool isDone, const char* what) {
  if (isDone) return;
  std::perror(what);
  std::exit(2);
}

void onLog(std::uint32_t /*level*/, const char* message, void* /*context*/) {
  if (std::strstr(message, "/fifo.xml'") == nullptr) return;
  require(unlink("fifo.xml") == 0 && mkfifo("fifo.xml", 0600) == 0, "fifo.xml");
}

class Printer : public service::util::config::Visitor {
  using Visited = service::util::config::Visited;

  void property(const Visited& visited, const std::string& value) override {
    std::cout << visited.name << "=" << value << "\n";
  }
  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    std::cout << visited.name << "{\n";
    return true;
  }
  void leaveSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) override {
    std::cout << "}\n";
  }
};

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  service::util::config::xml::SchemeList schemes;
  for (std::size_t i = 4; i < arguments.size(); i += 2) {
    schemes.emplace_back(arguments[i], arguments.at(i + 1));
  }
  cu_Logger_setThreshold(CU_DEBUG);
  cu_Logger_setCallback(onLog, nullptr);
  const std::vector<std::string> before = ConfigLocator::getEntries();

  if (const rlim_t laterStack = std::stoul(arguments.at(3)); laterStack != 0) {
    create("first.xml", {}, false);
    const rlimit limit = {laterStack, RLIM_INFINITY};
    require(setrlimit(RLIMIT_STACK, &limit) == 0, "setrlimit");
  }
  const auto load = [&] {
    try {
      const IConfigPtr config = create(arguments[0], schemes, arguments[1] == "1");
      std::cout << "LOADED\n";
      Printer printer;
      visit(config, printer);
    } catch (const cppUtil::err::Exception& e) {
      std::cout << "FAILED " << e.getCode() << "\n" << e.getMessage() << "\n";
    }
  };
  if (arguments[2] == "1") {
    std::thread(load).join();
  } else {
    load();
  }

  const bool isPathChanged = ConfigLocator::getEntries() != before;
  const bool isXmlInitialised = xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
  if (isPathChanged) std::cout << "SEARCH PATH CHANGED\n";
  if (isXmlInitialised) std::cout << "XML LIBRARY STILL INITIALISED\n";
  return isPathChanged || isXmlInitialised ? 1 : 0;
}
