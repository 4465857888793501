// Callers that load while they are in the middle of something else, again and again, or that keep
// what a load threw.

#include <malloc.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <unordered_set>
#include <utility>
#include <xercesc/framework/MemoryManager.hpp>

#include "../loader/LoaderState.hpp"
#include "../unit/Failure.hpp"
#include "service/util/config/xml/Session.hpp"
#include "service/util/config/xml/create.hpp"

namespace {

using cppUtil::err::Exception;
using service::util::config::xml::Session;
using xercesc::XMLPlatformUtils;

// Loads main.xml of a folder of the test data and checks that the search path is put back; answers
// with the code of the failure, 0 when there is none.
std::uint32_t load(const std::string& folder, bool validate) {
  const std::vector<std::string> path = {ZU_TEST_DATA_DIR "/" + folder};
  setSearchPath(path);
  std::uint32_t code = 0;
  try {
    EXPECT_NE(service::util::config::xml::create("main.xml", {}, validate), nullptr);
  } catch (const Exception& e) {
    code = e.getCode();
  }
  EXPECT_EQ(getSearchPath(), path);
  return code;
}

// Loads in turn what succeeds and what fails in every phase, validated or not.
void loadAll() {
  for (const bool validate : {false, true}) {
    EXPECT_EQ(load("include-in-section", validate), 0u);
    EXPECT_EQ(load("not-found", validate), 1u);
    EXPECT_EQ(load("include-missing", validate), 3u);
    EXPECT_EQ(load("malformed-included", validate), 6u);
  }
  EXPECT_EQ(load("invalid-included-validated", true), 6u);
  EXPECT_EQ(load("wrong-root-included", false), 6u);
}
constexpr int loadsOfAll = 10;

class OwnMemory : public xercesc::MemoryManager {
 public:
  xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
  void* allocate(XMLSize_t size) override { return *blocks.insert(::operator new(size)).first; }
  void deallocate(void* block) override {
    if (block == nullptr) return;
    EXPECT_EQ(blocks.erase(block), 1u);
    ::operator delete(block);
  }

  std::unordered_set<void*> blocks;
};

TEST(Callers, KeepTheirOwnInitialisation) {
  OwnMemory memory;
  XMLPlatformUtils::Initialize("en_US", nullptr, nullptr, &memory);
  loadAll();
  const std::size_t blocks = memory.blocks.size();
  {
    auto first = std::make_unique<Session>();
    const Session second;
    loadAll();
    first.reset();
    loadAll();
  }
  loadAll();
  EXPECT_EQ(memory.blocks.size(), blocks);
  EXPECT_EQ(XMLPlatformUtils::fgMemoryManager, &memory);
  XMLPlatformUtils::Terminate();
  EXPECT_EQ(memory.blocks.size(), 0u);
  EXPECT_FALSE(isXmlLibraryInitialised());
  loadAll();
}

TEST(Callers, HoldTheXmlLibraryFromItsFirstUseOn) {
  auto first = std::make_unique<Session>();
  EXPECT_EQ(load("include-in-section", true), 0u);
  EXPECT_FALSE(isXmlLibraryInitialised());
  EXPECT_EQ(load("malformed", false), 6u);
  EXPECT_TRUE(isXmlLibraryInitialised());
  {
    const Session second(Session::NOW);
    first.reset();
    EXPECT_TRUE(isXmlLibraryInitialised());
  }
  EXPECT_FALSE(isXmlLibraryInitialised());
  const Session now(Session::NOW);
  EXPECT_TRUE(isXmlLibraryInitialised());
}

// The heap counts what threads keep for themselves as in use; glibc is told to keep nothing.
TEST(Callers, LoadOverAndOverWithLevelMemory) {
  if (std::getenv("GLIBC_TUNABLES") == nullptr || ZU_STRIDE > 7) GTEST_SKIP() << "needs this heap";
  const auto usedAfter = [](int loads) {
    for (int count = 0; count < loads; count += loadsOfAll) loadAll();
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
  };
  const std::size_t after1000 = usedAfter(1000);
  EXPECT_EQ(usedAfter(1000), after1000);
}

TEST(Callers, LoadInDestructorsDuringUnwinding) {
  struct Loading {
    ~Loading() {
      EXPECT_EQ(std::uncaught_exceptions(), 1);
      loadAll();
    }
  };
  const auto fail = [] {
    const Loading outer;
    const Session session;
    const Loading inner;
    setSearchPath({ZU_TEST_DATA_DIR "/malformed"});
    service::util::config::xml::create("main.xml", {}, false);
  };
  try {
    fail();
    FAIL();
  } catch (const Exception& e) {
    EXPECT_EQ(e.getMessage(),
              "XML Parser reported the following errors:\n\tFATAL  in \"" ZU_TEST_DATA_DIR
              "/malformed/main.xml\"(line=5, column=3): expected end of tag 'section'\n");
  }
  EXPECT_FALSE(isXmlLibraryInitialised());
}

// All that an exception says.
using Content = std::tuple<unit::Failure, std::string, std::vector<std::string>>;
Content contentOf(const Exception& e) {
  return {unit::failureIn(e), e.what(), e.getStackTrace().getFrames()};
}

TEST(Callers, KeepExceptionsForLater) {
  std::vector<std::pair<std::exception_ptr, Content>> all;
  {
    const Session session;
    for (const char* folder : {"not-found", "include-missing", "malformed", "invalid-validated",
                               "section-without-name"}) {
      setSearchPath({std::string(ZU_TEST_DATA_DIR "/") + folder});
      try {
        service::util::config::xml::create("main.xml", {}, true);
        ADD_FAILURE() << folder;
      } catch (const Exception& e) {
        EXPECT_GT(e.getStackTrace().getFrames().size(), 3u);
        all.emplace_back(std::current_exception(), contentOf(e));
      }
    }
  }
  loadAll();
  for (auto& [thrown, content] : all) {
    try {
      std::rethrow_exception(std::exchange(thrown, nullptr));
    } catch (const Exception& e) {
      EXPECT_EQ(contentOf(e), content);
    }
  }
}

}  // namespace
