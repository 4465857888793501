// The adapters over a platform that fails on demand, linked in place of the platform libraries.

#include <gtest/gtest.h>

#include <algorithm>

#include "../FakePlatform.hpp"
#include "cppUtil/fileName/getPath.hpp"
#include "cppUtil/logger/Logger.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace {

using cppUtil::logger::Logger;
using service::util::locator::ConfigLocator;
using unit::Failure;
using unit::failureOf;

using Calls = std::vector<std::string>;

FakePlatform& platform = FakePlatform::instance();

std::string find() {
  return ConfigLocator::find("null");
}
std::string getPath() {
  return cppUtil::fileName::getPath("/etc/app.xml");
}
std::string getEntries() {
  std::string all;
  for (const auto& entry : ConfigLocator::getEntries()) all += entry + ";";
  return all;
}
std::string prepend() {
  ConfigLocator::prepend("/etc");
  return "";
}
std::string remove() {
  return ConfigLocator::remove("/etc") ? "true" : "false";
}

TEST(Adapters, MakeTheirCallsAndRaiseTheFirstFailure) {
  const Calls search = {"new 0", "find null", "delete"};
  const Calls directory = {"new 0", "getPath /etc/app.xml", "delete"};
  const Calls entries = {"count", "new 0", "get 0", "get 1", "delete"};
  const struct {
    std::string (*call)();
    Calls path;
    Calls calls;         // when none fails
    const char* answer;  // when none fails
    Calls pathAfter;
  } rows[] = {
      {find, {"/nowhere", "/dev"}, search, "/dev/null", {"/nowhere", "/dev"}},
      {find, {"/nowhere"}, search, "", {"/nowhere"}},
      {getPath, {}, directory, "/etc", {}},
      {getEntries, {"/a", "/b"}, entries, "/a;/b;", {"/a", "/b"}},
      {prepend, {"/a"}, {"prepend /etc"}, "", {"/etc", "/a"}},
      {remove, {"/a", "/etc"}, {"remove /etc"}, "true", {"/a"}},
      {remove, {"/a"}, {"remove /etc"}, "false", {"/a"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.calls.back());
    platform = {{}, row.path};
    EXPECT_EQ(row.call(), row.answer);
    EXPECT_EQ(platform.calls, row.calls);
    EXPECT_EQ(platform.path, row.pathAfter);
    EXPECT_EQ(platform.texts.size(), 0U);

    for (std::size_t failing = 0; failing < row.calls.size(); ++failing) {
      SCOPED_TRACE(row.calls[failing]);
      platform = {{failing}, row.path};
      // A directory's name that is known already is not given up for a text that cannot be deleted.
      const bool isUnnoticed = row.call == getPath && failing == 2;
      EXPECT_EQ(failureOf(row.call), isUnnoticed ? Failure{} : FakePlatform::failureOf(failing));
      EXPECT_EQ(platform.calls, Calls(row.calls.begin(), row.calls.begin() + long(failing) + 1));
      EXPECT_EQ(platform.path, row.path);
      // A text object that a call failed on is left to the platform.
      const auto made = std::count(row.calls.begin(), row.calls.begin() + long(failing), "new 0");
      EXPECT_EQ(platform.texts.size(), std::size_t(made));
    }
  }
}

TEST(Logger, EmptiesItsTextOnSuccessAndKeepsItOnFailure) {
  platform = {{0}};
  Logger logger(3);
  logger << "Parsing " << std::string("file") << ' ' << 5U;
  EXPECT_EQ(failureOf([&] { logger.log(); }), FakePlatform::failureOf(0));
  EXPECT_EQ(logger.str(), "Parsing file 5");

  logger << "!";
  logger.log();
  EXPECT_EQ(logger.str(), "");
  logger << "next" << std::endl;
  logger.log();
  EXPECT_EQ(platform.calls,
            (Calls{"log 3 Parsing file 5", "log 3 Parsing file 5!", "log 3 next\n"}));
}

TEST(ErrorModule, IsRegisteredOnceBeforeMain) {
  const auto& registration = FakePlatform::registration;
  EXPECT_EQ(registration.count, 1);
  EXPECT_EQ(registration.module, 3U);
  EXPECT_EQ(registration.localBits, 24U);
  EXPECT_STREQ(registration.resolver.moduleName, "serviceUtilConfig");
  EXPECT_STREQ(registration.resolver.getName(0x3000001), "NOT_FOUND");
  EXPECT_STREQ(registration.resolver.getDescription(0x3000001),
               "Requested configuration property not found!");
}

}  // namespace
