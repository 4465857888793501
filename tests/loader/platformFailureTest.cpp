// A load during which the platform fails.

#include <gtest/gtest.h>

#include <functional>
#include <xercesc/util/PlatformUtils.hpp>

#include "../FakePlatform.hpp"
#include "service/util/config/Select.hpp"
#include "service/util/config/xml/Observer.hpp"
#include "service/util/config/xml/check.hpp"
#include "service/util/config/xml/create.hpp"

namespace {

using unit::Failure;
using unit::failureOf;

// app/main.xml, which includes part/part.xml, which adds the property p. Neither directory is on
// the search path by itself.
const std::string data = ZU_TEST_DATA_DIR "/platform-failures";

class PlatformFailureTest : public testing::Test {
 protected:
  void SetUp() override { fake = FakePlatform(); }

  // Loads with those calls failing; answers with what was thrown.
  Failure load(std::set<std::size_t> failing) {
    fake.path = {"/nowhere", data};
    fake.calls.clear();
    fake.failing = std::move(failing);
    return failureOf([] {
      const auto config = service::util::config::xml::create("app/main.xml", {}, false);
      EXPECT_EQ(config->getPropertyCount("p"), 1u);
    });
  }

  void expectStatePutBack(const std::string& message) {
    EXPECT_EQ(fake.path, (std::vector<std::string>{"/nowhere", data})) << message;
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr) << message;
  }

  FakePlatform& fake = FakePlatform::instance();
};

const std::string app = data + "/app";
const std::string part = data + "/part";
const std::vector<std::string> goodLoad = {
    // the top-level file
    "new 0", "find app/main.xml", "delete",             // find
    "new 0", "getPath " + app + "/main.xml", "delete",  // getPath
    "prepend " + app, "log 3 Parsing configuration file '" + app + "/main.xml'",
    // the include
    "new 0", "find part/part.xml", "delete",             // find
    "new 0", "getPath " + part + "/part.xml", "delete",  // getPath
    "prepend " + part, "log 3 Parsing configuration file '" + part + "/part.xml'", "remove " + part,
    // the top-level file
    "remove " + app};

TEST_F(PlatformFailureTest, EveryCallFailingOnce) {
  ASSERT_EQ(load({}), Failure{});
  ASSERT_EQ(fake.calls, goodLoad);
  expectStatePutBack("no failure");

  for (std::size_t call = 0; call < goodLoad.size(); ++call) {
    const std::string name = goodLoad[call] + " " + std::to_string(call);
    const auto thrown = load({call});
    expectStatePutBack(name);

    // A directory's name that is known already is not given up for a text that cannot be deleted.
    if (call == 5 || call == 13) {
      EXPECT_EQ(thrown, Failure{}) << name;
      EXPECT_EQ(fake.calls, goodLoad) << name;
      continue;
    }
    EXPECT_EQ(thrown, FakePlatform::failureOf(call)) << name;

    // Nothing follows but the removal of the directories prepended, or refused, so far.
    std::vector<std::string> expected(goodLoad.begin(), goodLoad.begin() + long(call) + 1);
    if (call >= 14 && call < 17) expected.push_back("remove " + part);
    if (call >= 6) expected.push_back("remove " + app);
    EXPECT_EQ(fake.calls, expected) << name;
    EXPECT_EQ(load({}), Failure{}) << "after " << name;
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
      {"log of the include, then its removal", {15, 16}, 15, 18, {part}},
      {"log of the include, then both removals", {15, 16, 17}, 15, 18, {part, app}},
      {"removal of the include, twice", {16, 17}, 16, 19, {part}},
      {"removal of the top-level file, twice", {17, 18}, 17, 19, {app}},
  };
  for (const Row& row : rows) {
    const auto thrown = load(row.failing);
    EXPECT_EQ(thrown, FakePlatform::failureOf(row.first)) << row.name;
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
      const Failure thrown = failureOf(row.run);
      expectStatePutBack(name);
      const bool isUnnoticed = calls[call] == "delete" && calls[call - 1].find("getPath") == 0;
      EXPECT_EQ(thrown, isUnnoticed ? Failure{} : FakePlatform::failureOf(call)) << name;
    }
  }
}

}  // namespace
