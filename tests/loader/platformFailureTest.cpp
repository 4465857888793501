// A load during which the platform fails.

#include <gtest/gtest.h>

#include <functional>
#include <xercesc/util/PlatformUtils.hpp>

#include "FakePlatform.hpp"
#include "service/util/config/Select.hpp"
#include "service/util/config/xml/Observer.hpp"
#include "service/util/config/xml/check.hpp"
#include "service/util/config/xml/create.hpp"

namespace {

namespace xml = service::util::config::xml;
using unit::Failure;
using unit::failureOf;

// app/main.xml, which includes part/part.xml, which adds the property p. Neither directory is on
// the search path by itself.
const std::string data = ZU_TEST_DATA_DIR "/platform-failures";

class PlatformFailureTest : public testing::Test {
 protected:
  // What run throws with those calls failing.
  template <class Run>
  Failure failureIn(const Run& run, std::set<std::size_t> failing) {
    fake = {std::move(failing), {"/nowhere", data}};
    return failureOf(run);
  }

  FakePlatform& fake = FakePlatform::instance();
};

bool startsWith(const std::string& text, const char* start) {
  return text.rfind(start, 0) == 0;
}

void load() {
  const auto config = xml::create("app/main.xml", {}, false);
  EXPECT_EQ(config->getPropertyCount("p"), 1u);
}

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

TEST_F(PlatformFailureTest, MakesTheseCalls) {
  EXPECT_EQ(failureIn(load, {}), Failure{});
  EXPECT_EQ(fake.calls, goodLoad);
}

// What an observer is told takes further calls; a check makes its own.
TEST_F(PlatformFailureTest, EveryCallFailingOnce) {
  xml::Observer observer;
  const std::function<void()> runs[] = {load,
                                        [&] { xml::create("app/main.xml", {}, false, observer); },
                                        [&] { xml::check("app/main.xml", {}, false, observer); }};
  for (const auto& run : runs) {
    failureIn(run, {});
    const std::vector<std::string> calls = fake.calls;
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
      const std::string& name = calls[failing];
      SCOPED_TRACE(name + " " + std::to_string(failing));
      const Failure thrown = failureIn(run, {failing});
      EXPECT_EQ(fake.path, (std::vector<std::string>{"/nowhere", data}));
      EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);

      // What is known already is not given up for a text or a copy that cannot be deleted.
      const bool isUnnoticed =
          name == "deletePath" || (name == "delete" && !startsWith(calls[failing - 1], "find"));
      EXPECT_EQ(thrown, isUnnoticed ? Failure{} : FakePlatform::failureOf(failing));
      // A text object that a call failed on is left to the platform, but for that of the entries.
      const bool holdsText =
          startsWith(name, "find") || startsWith(name, "getPath") || name == "delete";
      EXPECT_EQ(fake.texts.size(), holdsText ? 1u : 0u);

      // Nothing follows but that what the adapters hold is deleted, and the directories removed
      // that were prepended, or refused, so far.
      if (isUnnoticed) continue;
      std::multiset<std::string> removals;
      for (std::size_t call = 0; call <= failing; ++call) {
        if (startsWith(calls[call], "prepend ")) removals.insert("remove " + calls[call].substr(8));
        if (call < failing && startsWith(calls[call], "remove ")) removals.erase(calls[call]);
      }
      std::multiset<std::string> later(fake.calls.begin() + long(failing) + 1, fake.calls.end());
      later.erase("delete");
      later.erase("deletePath");
      EXPECT_EQ(later, removals);
    }
  }
}

// The caller learns of the first failure, and every directory is still tried.
TEST_F(PlatformFailureTest, RemovalsFailingAfterAnotherFailure) {
  const struct {
    const char* name;
    std::set<std::size_t> failing;
    std::size_t calls;
    std::vector<std::string> left;  // in front of the path, by the fake that never removed them
  } rows[] = {
      {"log of the include, then both removals", {15, 16, 17}, 18, {part, app}},
      {"removal of the include, twice", {16, 17}, 19, {part}},
      {"removal of the top-level file, twice", {17, 18}, 19, {app}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(failureIn(load, row.failing), FakePlatform::failureOf(*row.failing.begin()))
        << row.name;
    EXPECT_EQ(fake.calls.size(), row.calls) << row.name;
    fake.path.erase(fake.path.end() - 2, fake.path.end());
    EXPECT_EQ(fake.path, row.left) << row.name;
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr) << row.name;
  }
}

}  // namespace
