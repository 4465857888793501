// Loads one configuration file and prints what came of it, for tests that watch from outside.
//
// Writes "LOADED" and the configuration, or "FAILED", the code and the message. Exits with 0 in
// both cases; with 1 when anything but the library's exception came out or when the load did not
// put the state of the process back.

#include <cutil/cutil.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "cppUtil/err/Exception.hpp"
#include "service/util/config/visit.hpp"
#include "service/util/config/xml/create.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace {

using service::util::config::IConfigPtr;
using service::util::locator::ConfigLocator;

struct Options {
  std::string file;
  service::util::config::xml::SchemeList schemes;
  bool validate = false;
  std::size_t stackSize = 0;  // of a thread to load on; 0 for the main thread
  rlim_t laterStack = 0;      // a limit on the stack, set after first.xml was loaded; 0 for none
  std::string event;          // what happens between the log entry about a file and reading it
  std::string eventFile;      // that file, in the current directory
};

Options options;
bool isReading = false;  // that file has been logged, and nothing of it was read so far

[[noreturn]] void stop(const char* reason) {
  std::fprintf(stderr, "%s: %s\n", reason, std::strerror(errno));
  std::exit(2);
}

Options parseOptions(const std::vector<std::string>& arguments) {
  Options result;
  std::size_t i = 0;
  const auto next = [&] { return i < arguments.size() ? arguments[i++] : std::string(); };
  for (std::string word = next(); !word.empty(); word = next()) {
    if (word == "--validate") {
      result.validate = true;
    } else if (word == "--scheme") {
      const std::string uri = next();
      result.schemes.emplace_back(uri, next());
    } else if (word == "--stack") {
      result.stackSize = std::stoul(next()) * 1024;
    } else if (word == "--later-stack") {
      result.laterStack = std::stoul(next()) * 1024;
    } else if (word == "--during") {
      result.event = next();
      result.eventFile = next();
    } else {
      result.file = word;
    }
  }
  return result;
}

// Between the moment when a file was found and the one when it is opened.
void onLog(std::uint32_t /*level*/, const char* message, void* /*context*/) {
  const char* file = options.eventFile.c_str();
  if (std::strstr(message, ("/" + options.eventFile + "'").c_str()) == nullptr) return;
  isReading = true;
  const bool isReplaced = options.event == "fifo" || options.event == "device";
  if ((isReplaced || options.event == "vanish") && unlink(file) != 0) stop("unlink");
  if (options.event == "fifo" && mkfifo(file, 0600) != 0) stop("mkfifo");
  if (options.event == "device" && symlink("/dev/zero", file) != 0) stop("symlink");
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

void load() {
  try {
    const IConfigPtr config =
        service::util::config::xml::create(options.file, options.schemes, options.validate);
    std::cout << "LOADED\n";
    Printer printer;
    visit(config, printer);
  } catch (const cppUtil::err::Exception& e) {
    std::cout << "FAILED " << e.getCode() << "\n" << e.getMessage() << "\n";
  }
}

void* loadOnThread(void* /*unused*/) {
  load();
  return nullptr;
}

}  // namespace

// In the place of the system's own, for what happens to a file while it is being read.
extern "C" __attribute__((visibility("default"))) ssize_t read(int file, void* buffer,
                                                               size_t size) {
  if (isReading && options.event == "read error") {
    errno = EIO;
    return -1;
  }
  const ssize_t count = syscall(SYS_read, file, buffer, size);
  if (isReading && options.event == "truncate" && truncate(options.eventFile.c_str(), 0) != 0) {
    stop("truncate");
  }
  isReading = false;
  return count;
}

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  options = parseOptions({argv + 1, argv + argc});
  cu_Logger_setThreshold(CU_DEBUG);
  cu_Logger_setCallback(onLog, nullptr);
  const std::vector<std::string> before = ConfigLocator::getEntries();

  if (options.laterStack != 0) {
    service::util::config::xml::create("first.xml", {}, false);
    const rlimit limit = {options.laterStack, RLIM_INFINITY};
    if (setrlimit(RLIMIT_STACK, &limit) != 0) stop("setrlimit");
  }
  if (options.stackSize == 0) {
    load();
  } else {
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    if (pthread_attr_setstacksize(&attributes, options.stackSize) != 0 ||
        pthread_create(&thread, &attributes, loadOnThread, nullptr) != 0) {
      stop("pthread_create");
    }
    pthread_join(thread, nullptr);
  }

  const bool isPathChanged = ConfigLocator::getEntries() != before;
  const bool isXmlInitialised = xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
  if (isPathChanged) std::cout << "SEARCH PATH CHANGED\n";
  if (isXmlInitialised) std::cout << "XML LIBRARY STILL INITIALISED\n";
  return isPathChanged || isXmlInitialised ? 1 : 0;
}
