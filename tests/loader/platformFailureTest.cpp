// A load during which the platform fails. A fake stands in the place of both platform libraries, in
// which every call fails on demand.

#include <gtest/gtest.h>
#include <locator/locator.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <list>
#include <set>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "service/util/config/Select.hpp"
#include "service/util/config/xml/Observer.hpp"
#include "service/util/config/xml/check.hpp"
#include "service/util/config/xml/create.hpp"
#include "unit/Failure.hpp"

namespace xml = service::util::config::xml;
using unit::Failure;
using unit::failureOf;

struct cu_ErrorLocation {
  Failure failure;
};
struct cu_SearchPath {};
struct cu_String {
  std::string value;
};

namespace {

struct FakePlatform {
  std::set<std::size_t> failing = {};   // which of the calls, from 0
  std::vector<std::string> path = {};   // the search path, front first
  std::vector<std::string> calls = {};  // those made that can fail: "find app.xml"
  std::list<cu_String> texts = {};      // created and not deleted
};

FakePlatform fake;
cu_ErrorLocation record;  // of the last failed call
cu_SearchPath searchPath;

// What a call fails with.
Failure failureOfCall(std::size_t call) {
  const int number = static_cast<int>(call);
  return {0x7000000u + std::uint32_t(call),
          number + 100,
          "fake/file",
          "fake_function",
          number + 200,
          "the reason of " + std::to_string(call)};
}

std::uint32_t call(const std::string& name, const std::string& arguments = "") {
  const std::size_t number = fake.calls.size();
  fake.calls.push_back(arguments.empty() ? name : name + " " + arguments);
  if (fake.failing.count(number) == 0) return CU_OK;
  record.failure = failureOfCall(number);
  return std::get<0>(record.failure);
}

}  // namespace

// A refused registration must not keep the library from loading.
std::uint32_t cu_SetResolver(std::uint32_t, cu_Resolver, std::uint32_t) {
  return CU_INVALID_ARGUMENT;
}
const char* cu_GetErrorName(std::uint32_t) {
  return "FAKE";
}

const cu_ErrorLocation* cu_getErrorLocation() {
  return &record;
}
int cu_Error_getSystemErrorCode(const cu_ErrorLocation* location) {
  return std::get<1>(location->failure);
}
const char* cu_Error_getFileName(const cu_ErrorLocation* location) {
  return std::get<2>(location->failure).c_str();
}
const char* cu_Error_getFunctionName(const cu_ErrorLocation* location) {
  return std::get<3>(location->failure).c_str();
}
int cu_Error_getLineNumber(const cu_ErrorLocation* location) {
  return std::get<4>(location->failure);
}
const char* cu_Error_getDescription(const cu_ErrorLocation* location) {
  return std::get<5>(location->failure).c_str();
}

std::uint32_t cu_String_new(cu_String** text, std::size_t capacity) {
  if (const auto result = call("new", std::to_string(capacity))) return result;
  *text = &fake.texts.emplace_back();
  return CU_OK;
}
const char* cu_String_get(const cu_String* text) {
  return text->value.c_str();
}
std::uint32_t cu_String_delete(cu_String** text) {
  if (const auto result = call("delete")) return result;
  fake.texts.remove_if([&](const cu_String& own) { return &own == *text; });
  *text = nullptr;
  return CU_OK;
}

std::uint32_t cu_Filename_getPath(const char* fileName, cu_String* path) {
  if (const auto result = call("getPath", fileName)) return result;
  path->value = std::filesystem::path(fileName).parent_path();
  return CU_OK;
}

std::uint32_t cu_SearchPath_find(cu_SearchPath*, const char* name, bool* found, cu_String* file) {
  if (const auto result = call("find", name)) return result;
  const auto position = std::find_if(fake.path.begin(), fake.path.end(), [&](const auto& each) {
    return std::filesystem::exists(each + "/" + name);
  });
  *found = position != fake.path.end();
  if (*found) file->value = *position + "/" + name;
  return CU_OK;
}
std::uint32_t cu_SearchPath_copy(cu_SearchPath* path, cu_SearchPath** copy) {
  if (const auto result = call("copy")) return result;
  *copy = path;
  return CU_OK;
}
std::uint32_t cu_SearchPath_delete(cu_SearchPath** path) {
  if (const auto result = call("deletePath")) return result;
  *path = nullptr;
  return CU_OK;
}
std::uint32_t cu_SearchPath_count(cu_SearchPath*, std::size_t* count) {
  if (const auto result = call("count")) return result;
  *count = fake.path.size();
  return CU_OK;
}
std::uint32_t cu_SearchPath_get(cu_SearchPath*, std::size_t index, cu_String* directory) {
  if (const auto result = call("get", std::to_string(index))) return result;
  directory->value = fake.path.at(index);
  return CU_OK;
}
std::uint32_t cu_SearchPath_prepend(cu_SearchPath*, const char* directory) {
  if (const auto result = call("prepend", directory)) return result;
  fake.path.insert(fake.path.begin(), directory);
  return CU_OK;
}
std::uint32_t cu_SearchPath_remove(cu_SearchPath*, const char* directory, bool* removed) {
  if (const auto result = call("remove", directory)) return result;
  const auto position = std::find(fake.path.begin(), fake.path.end(), directory);
  *removed = position != fake.path.end();
  if (*removed) fake.path.erase(position);
  return CU_OK;
}
cu_SearchPath* getConfigLocator() {
  return &searchPath;
}

std::uint32_t cu_Logger_log(std::uint32_t level, const char* message) {
  return call("log", std::to_string(level) + " " + message);
}

namespace {

// app/main.xml, which includes part/part.xml, which adds the property p. Neither directory is on
// the search path by itself.
const std::string data = ZU_TEST_DATA_DIR "/platform-failures";

// What run throws with those calls failing.
Failure failureIn(const std::function<void()>& run, std::set<std::size_t> failing) {
  fake = {std::move(failing), {"/nowhere", data}};
  return failureOf(run);
}

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

TEST(PlatformFailureTest, MakesTheseCalls) {
  EXPECT_EQ(failureIn(load, {}), Failure{});
  EXPECT_EQ(fake.calls, goodLoad);
}

// What an observer is told takes further calls; a check makes its own.
TEST(PlatformFailureTest, EveryCallFailingOnce) {
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
      EXPECT_EQ(thrown, isUnnoticed ? Failure{} : failureOfCall(failing));
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
TEST(PlatformFailureTest, RemovalsFailingAfterAnotherFailure) {
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
    EXPECT_EQ(failureIn(load, row.failing), failureOfCall(*row.failing.begin())) << row.name;
    EXPECT_EQ(fake.calls.size(), row.calls) << row.name;
    fake.path.erase(fake.path.end() - 2, fake.path.end());
    EXPECT_EQ(fake.path, row.left) << row.name;
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr) << row.name;
  }
}

}  // namespace
