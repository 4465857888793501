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
#include "cppUtil/err/Exception.hpp"
#include "service/util/config/xml/Session.hpp"
#include "service/util/config/xml/create.hpp"

namespace {

using cppUtil::err::Exception;
using service::util::config::xml::Session;
using xercesc::XMLPlatformUtils;

// Loads main.xml of a folder of the test data and checks that the search path is put back; answers
// with the code of the failure, 0 when there is none.
std::uint32_t load(const std::string& folder, bool validate) {
  const std::vector<std::string> path = {std::string(ZU_TEST_DATA_DIR "/") + folder};
  setSearchPath(path);
  std::uint32_t code = 0;
  try {
    EXPECT_NE(service::util::config::xml::create("main.xml", {}, validate), nullptr);
  } catch (const cppUtil::err::Exception& e) {
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
  const auto blocks = memory.blocks;
  {
    auto first = std::make_unique<Session>();
    const Session second;
    loadAll();
    first.reset();
    loadAll();
  }
  loadAll();
  EXPECT_EQ(memory.blocks.size(), blocks.size());
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

// The heap counts what threads keep for themselves as in use; glibc is told to keep nothing. The
// sanitizers have a heap of their own, and look for leaks themselves.
TEST(Callers, LoadOverAndOverWithLevelMemory) {
  if (std::getenv("GLIBC_TUNABLES") == nullptr) GTEST_SKIP() << "set by ctest";
  const auto used = [] {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
  };
  std::size_t after1000 = 0;
  const bool isLimited = ZU_STRIDE > 7;
  for (int count = 0; count < (isLimited ? 400 : 2000); count += loadsOfAll) {
    if (count == 1000) after1000 = used();
    loadAll();
  }
  if (!isLimited) {
    EXPECT_EQ(used(), after1000);
  }
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

// All that an exception says, in a copy of every text.
std::vector<std::string> contentOf(const Exception& e) {
  std::vector<std::string> content = e.getStackTrace().getFrames();
  for (std::string& text : content) text = text.c_str();
  for (const char* text :
       {e.what(), e.getFile().c_str(), e.getFunction().c_str(), e.getMessage().c_str()})
    content.emplace_back(text);
  for (const auto number : {int(e.getCode()), e.getSystemErrorCode(), e.getLine()})
    content.push_back(std::to_string(number));
  return content;
}

TEST(Callers, KeepExceptionsForLater) {
  struct Kept {
    std::exception_ptr thrown;
    std::vector<std::string> content;
  };
  std::vector<Kept> all;
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
        all.push_back({std::current_exception(), contentOf(e)});
      }
    }
  }
  loadAll();
  for (Kept& kept : all) {
    try {
      std::rethrow_exception(std::exchange(kept.thrown, nullptr));
    } catch (const Exception& e) {
      EXPECT_EQ(contentOf(e), kept.content);
    }
  }
}

}  // namespace
