// A load during which the platform fails.

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <xercesc/util/PlatformUtils.hpp>

#include "FakePlatform.hpp"
#include "cppUtil/err/Exception.hpp"
#include "service/util/config/Select.hpp"
#include "service/util/config/xml/Observer.hpp"
#include "service/util/config/xml/check.hpp"
#include "service/util/config/xml/create.hpp"

namespace {

using cppUtil::err::Exception;

// app/main.xml, which includes part/part.xml, which adds the property p. Neither directory is on
// the search path by itself.
const std::string data = ZU_TEST_DATA_DIR "/platform-failures";

class PlatformFailureTest : public testing::Test {
 protected:
  void SetUp() override { fake = FakePlatform(); }

  // Loads with those calls failing; answers with what was thrown.
  std::optional<Exception> load(std::set<std::size_t> failing) {
    fake.path = {"/nowhere", data};
    fake.calls.clear();
    fake.failing = std::move(failing);
    try {
      const auto config = service::util::config::xml::create("app/main.xml", {}, false);
      EXPECT_EQ(config->getPropertyCount("p"), 1u);
      return std::nullopt;
    } catch (const Exception& e) {
      return e;
    }
  }

  void expectStatePutBack(const std::string& message) {
    EXPECT_EQ(fake.path, (std::vector<std::string>{"/nowhere", data})) << message;
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr) << message;
  }

  FakePlatform& fake = FakePlatform::instance();
};

const std::vector<std::string> goodLoad = {
    // the top-level file
    "String_new", "SearchPath_find", "String_delete",   // find
    "String_new", "Filename_getPath", "String_delete",  // getPath
    "SearchPath_prepend", "Logger_log",
    // the include
    "String_new", "SearchPath_find", "String_delete",   // find
    "String_new", "Filename_getPath", "String_delete",  // getPath
    "SearchPath_prepend", "Logger_log", "SearchPath_remove",
    // the top-level file
    "SearchPath_remove"};

TEST_F(PlatformFailureTest, EveryCallFailingOnce) {
  ASSERT_FALSE(load({}));
  ASSERT_EQ(fake.calls, goodLoad);
  expectStatePutBack("no failure");

  for (std::size_t call = 0; call < goodLoad.size(); ++call) {
    const std::string name = goodLoad[call] + " " + std::to_string(call);
    const auto thrown = load({call});
    expectStatePutBack(name);

    // A directory's name that is known already is not given up for a text that cannot be deleted.
    if (call == 5 || call == 13) {
      EXPECT_FALSE(thrown) << name;
      EXPECT_EQ(fake.calls, goodLoad) << name;
      continue;
    }
    ASSERT_TRUE(thrown) << name;
    EXPECT_EQ(thrown->getCode(), FakePlatform::codeOf(call)) << name;
    EXPECT_EQ(thrown->getSystemErrorCode(), static_cast<int>(call) + 100) << name;
    EXPECT_EQ(thrown->getFile(), "fake/file") << name;
    EXPECT_EQ(thrown->getFunction(), "fake_function") << name;
    EXPECT_EQ(thrown->getLine(), static_cast<int>(call) + 200) << name;
    EXPECT_EQ(thrown->getMessage(), "the reason of " + std::to_string(call)) << name;

    // Nothing follows but the removal of the directories prepended, or refused, so far.
    std::vector<std::string> expected(goodLoad.begin(), goodLoad.begin() + long(call) + 1);
    const std::size_t removals = call < 6 || call == 17 ? call / 17 : call < 14 ? 1 : 2;
    expected.insert(expected.end(), removals, "SearchPath_remove");
    EXPECT_EQ(fake.calls, expected) << name;
    ASSERT_FALSE(load({})) << "after " << name;
  }
}

// The caller learns of the first failure, and every directory is still tried.
TEST_F(PlatformFailureTest, RemovalsFailingAfterAnotherFailure) {
  struct Row {
    const char* name;
    std::set<std::size_t> failing;
    std::size_t first;
    std::size_t calls;
    std::vector<std::string> left;  // in front of the path, by the fake that never removed them
  };
  const Row rows[] = {
      {"log of the include, then its removal", {15, 16}, 15, 18, {data + "/part"}},
      {"log of the include, then both removals",
       {15, 16, 17},
       15,
       18,
       {data + "/part", data + "/app"}},
      {"removal of the include, twice", {16, 17}, 16, 19, {data + "/part"}},
      {"removal of the top-level file, twice", {17, 18}, 17, 19, {data + "/app"}},
  };
  for (const Row& row : rows) {
    const auto thrown = load(row.failing);
    ASSERT_TRUE(thrown) << row.name;
    EXPECT_EQ(thrown->getCode(), FakePlatform::codeOf(row.first)) << row.name;
    EXPECT_EQ(thrown->getMessage(), "the reason of " + std::to_string(row.first)) << row.name;
    EXPECT_EQ(fake.calls.size(), row.calls) << row.name;
    fake.path.erase(fake.path.end() - 2, fake.path.end());
    EXPECT_EQ(fake.path, row.left) << row.name;
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr) << row.name;
  }
}

// What an observer is told takes further calls; a check makes its own.
TEST_F(PlatformFailureTest, EveryCallFailingOnceUnderAnObserver) {
  namespace xml = service::util::config::xml;
  xml::Observer observer;
  const struct {
    const char* name;
    std::function<void()> run;
  } rows[] = {
      {"observed load", [&] { xml::create("app/main.xml", {}, false, observer); }},
      {"check", [&] { xml::check("app/main.xml", {}, false, observer); }},
  };
  for (const auto& row : rows) {
    fake = FakePlatform();
    fake.path = {"/nowhere", data};
    row.run();
    const std::vector<std::string> calls = fake.calls;
    for (std::size_t call = 0; call < calls.size(); ++call) {
      const std::string name = row.name + (", " + calls[call]) + " " + std::to_string(call);
      fake.calls.clear();
      fake.failing = {call};
      std::uint32_t code = 0;
      try {
        row.run();
      } catch (const Exception& e) {
        code = e.getCode();
      }
      expectStatePutBack(name);
      const bool isUnnoticed =
          calls[call] == "String_delete" && calls[call - 1] == "Filename_getPath";
      EXPECT_EQ(code, isUnnoticed ? 0 : FakePlatform::codeOf(call)) << name;
    }
  }
}

}  // namespace
