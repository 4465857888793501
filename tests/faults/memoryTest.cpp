// Memory that runs out at every point of a load, in a process for each. Whatever comes of that
// load, the state of the process is put back and the next load succeeds.

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <new>
#include <set>

#include "../FailingAllocations.hpp"
#include "../loader/LoaderState.hpp"
#include "../platform/Support.hpp"
#include "cppUtil/err/Exception.hpp"
#include "service/util/config/Select.hpp"
#include "service/util/config/xml/Session.hpp"
#include "service/util/config/xml/create.hpp"

namespace {

using service::util::config::IConfigPtr;
using service::util::config::xml::Session;

// The functions of the XML library that an allocation failing in them, or before, breaks for good.
const std::set<std::string> knownFaults = {
    // The initialisation; the loader tries first whether there is memory for it. It ends the
    // process, or throws and stays half done, or has no memory manager for the next load.
    "xercesc::DefaultPanicHandler::panic",
    "xercesc::XMLPlatformUtils::Initialize",
    "xercesc::XMemory::operator new",
    // Validation. Releases what the constructor has not made yet; needs memory in a destructor.
    "xercesc::DFAContentModel::cleanup",
    "xercesc::ContentSpecNode::deleteChildNode",
};

// What a child says of itself on standard error.
constexpr const char* brokenBy = "BROKEN BY ";
constexpr const char* nothingFailed = "NOTHING FAILED";

// Ends the process with the name of the innermost function of the libraries. Needs no memory.
[[noreturn]] void reportCrash() {
  void* frames[64];
  const int count = backtrace(frames, 64);
  for (int i = 0; i < count; ++i) {
    Dl_info frame{};
    if (dladdr(static_cast<char*>(frames[i]) - 1, &frame) == 0) continue;
    const bool isOwn = std::strstr(frame.dli_fname, "/libzu") != nullptr;
    const bool isXml = std::strstr(frame.dli_fname, "/libxerces") != nullptr;
    if (!isOwn && !(isXml && frame.dli_sname != nullptr)) continue;
    std::fprintf(stderr, "%s%s", brokenBy, isOwn ? frame.dli_fname : frame.dli_sname);
    break;
  }
  _exit(1);
}

void reportCrashes() {
  void* frame = nullptr;
  backtrace(&frame, 1);  // the first call loads a library
  for (const int signal : {SIGSEGV, SIGBUS, SIGABRT, SIGILL, SIGFPE}) {
    std::signal(signal, [](int) { reportCrash(); });
  }
  std::atexit(reportCrash);
  alarm(60);
}

// "xercesc::Class::function" of a symbol, whatever the version of the XML library.
std::string functionOf(const std::string& symbol) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), std::free);
  if (status != 0) return symbol;
  const std::string text = name.get();
  const auto scope = text.find("::");
  return "xercesc" + text.substr(scope, text.find('(') - scope);
}

// Null when the load fails in one of the ways that it may.
IConfigPtr load(bool validate) {
  try {
    return service::util::config::xml::create("main.xml", {}, validate);
  } catch (const cppUtil::err::Exception&) {
  } catch (const std::bad_alloc&) {
  }
  return nullptr;
}

// Whether the process is sound after a load with that result.
bool isSoundAfter(const IConfigPtr& config, bool validate) {
  const auto isWhole = [](const IConfigPtr& each) {
    std::string p, leaf;
    return each != nullptr && each->getProperty("outer.inner.p", p) && p == "x" &&
           each->getProperty("outer.inner.s.leaf", leaf) && leaf == "y";
  };
  return getSearchPath().size() == 1 && !isXmlLibraryInitialised() &&
         (config == nullptr || isWhole(config)) && isWhole(load(validate));
}

// By day, only some of the faults.
const bool isNightly = std::getenv("ZU_NIGHTLY") != nullptr && ZU_STRIDE == 7;
const int stride = isNightly ? 1 : ZU_STRIDE;

class MemoryTest : public testing::Test {
 protected:
  // The XML library is opened here: the loader of the system and the initialisers of forty
  // libraries are not what is tested.
  void SetUp() override {
    setSearchPath({ZU_TEST_DATA_DIR "/include-in-section"});
    Session opened(Session::NOW);
  }
};

// The XML library makes thousands of allocations alike when it is initialised; few of those are
// taken. Where processes are slow, so are few of the others.
TEST_F(MemoryTest, EveryAllocationFailingOnce) {
  int initialisation = 0;
  {
    const FailingAllocations count(FailingAllocations::all, 0);
    const Session session(Session::NOW);
    initialisation = FailingAllocations::all - FailingAllocations::getAllowed();
  }
  std::set<std::string> faults;
  for (const bool validate : {false, true}) {
    for (int allocation = 0;;) {
      const Outcome outcome = inChild([=] {
        reportCrashes();
        IConfigPtr config;
        {
          const FailingAllocations fail(allocation, 1);
          config = load(validate);
          if (FailingAllocations::getAllowed() > 0) std::fputs(nothingFailed, stderr);
        }
        if (isXmlLibraryInitialised() && allocation < initialisation) {
          std::fprintf(stderr, "%s%s", brokenBy, "xercesc::XMLPlatformUtils::Initialize");
          return false;
        }
        return isSoundAfter(config, validate);
      });
      std::string function;
      if (const auto at = outcome.errors.find(brokenBy); at != std::string::npos) {
        function = functionOf(outcome.errors.substr(at + std::strlen(brokenBy)));
        faults.insert(function);
      }
      EXPECT_TRUE(outcome.status == 0 || knownFaults.count(function) != 0)
          << "allocation " << allocation << (validate ? ", validated: " : ": ") << function << "\n"
          << outcome.errors;
      if (outcome.errors == nothingFailed) break;
      const bool isOneOfMany = allocation > 100 && allocation + 100 < initialisation;
      allocation += isOneOfMany ? 61 : stride;
    }
  }
  // A function that has been mended leaves the list.
  if (isNightly) {
    EXPECT_EQ(faults, knownFaults);
  }
}

// As it happens to a process with a limit. Nothing crashes then.
TEST_F(MemoryTest, AddressSpaceLimitedToAnySize) {
  if (ZU_STRIDE > 7) GTEST_SKIP() << "needs more than can be limited";
  for (const bool validate : {false, true}) {
    Outcome outcome;
    for (rlim_t allowed = 0; outcome.errors != nothingFailed;
         allowed += rlim_t(stride) * 8 * 1024) {
      outcome = inChild([allowed, validate] {
        reportCrashes();
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit limited = {pages * rlim_t(sysconf(_SC_PAGESIZE)) + allowed, RLIM_INFINITY};
        const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_AS, &limited);
        const IConfigPtr config = load(validate);
        setrlimit(RLIMIT_AS, &unlimited);
        if (config != nullptr) std::fputs(nothingFailed, stderr);
        return isSoundAfter(config, validate);
      });
      ASSERT_EQ(outcome.status, 0) << allowed << " bytes: " << outcome.errors;
    }
  }
}

}  // namespace
