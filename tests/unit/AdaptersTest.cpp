// The adapters over a platform that fails on demand, linked in place of the platform libraries.

#include <cutil/cutil.h>
#include <gtest/gtest.h>
#include <locator/locator.h>

#include <list>
#include <vector>

#include "Failure.hpp"
#include "cppUtil/fileName/getPath.hpp"
#include "cppUtil/logger/Logger.hpp"
#include "service/util/locator/ConfigLocator.hpp"

struct cu_String {
  std::string value;
};
struct cu_SearchPath {};
struct cu_ErrorLocation {};

namespace {

using cppUtil::logger::Logger;
using service::util::locator::ConfigLocator;
using unit::Failure;
using unit::failureOf;

using Calls = std::vector<std::string>;

struct FakePlatform {
  Calls calls;                      // what was called, with what
  std::string failing = {};         // the call that fails, by its name in calls
  bool flag = true;                 // what find and remove answer with
  std::list<cu_String> texts = {};  // created and not deleted
} platform;

cu_SearchPath thePath;
cu_ErrorLocation theRecord;

constexpr std::uint32_t failureCode = 0x5000009;
const Failure failure(failureCode, 13, "path.c", "cu_fail", 77, "it failed");
const Calls recordReads = {"record()", "systemErrorCode(1)", "file(1)", "function(1)",
                           "line(1)",  "description(1)"};

std::uint32_t called(const std::string& name, const std::string& arguments = "") {
  platform.calls.push_back(name + "(" + arguments + ")");
  return name == platform.failing ? failureCode : 0;
}

template <class Value>
Value readOf(const char* part, const cu_ErrorLocation* record, Value value) {
  called(part, record == &theRecord ? "1" : "0");
  return value;
}

std::string textOf(const cu_SearchPath* path, const char* name) {
  return std::string(path == &thePath ? "path, " : "another, ") + name;
}

struct Registration {
  std::uint32_t count = 0, module = 0, localBits = 0;
  cu_Resolver resolver = {};
} registration;  // filled before main; needs no initialisation of its own at run time

}  // namespace

uint32_t cu_SetResolver(uint32_t module, cu_Resolver resolver, uint32_t localBits) {
  registration = {registration.count + 1, module, localBits, resolver};
  return CU_INVALID_ARGUMENT;  // a refused registration must not keep the library from loading
}
const char* cu_GetErrorName(uint32_t) {
  return "NAME";
}
const cu_ErrorLocation* cu_getErrorLocation() {
  called("record");
  return &theRecord;
}
int cu_Error_getSystemErrorCode(const cu_ErrorLocation* record) {
  return readOf("systemErrorCode", record, 13);
}
const char* cu_Error_getFileName(const cu_ErrorLocation* record) {
  return readOf("file", record, "path.c");
}
const char* cu_Error_getFunctionName(const cu_ErrorLocation* record) {
  return readOf("function", record, "cu_fail");
}
int cu_Error_getLineNumber(const cu_ErrorLocation* record) {
  return readOf("line", record, 77);
}
const char* cu_Error_getDescription(const cu_ErrorLocation* record) {
  return readOf("description", record, "it failed");
}
uint32_t cu_String_new(cu_String** text, size_t capacity) {
  if (const auto result = called("new", std::to_string(capacity))) return result;
  EXPECT_EQ(*text, nullptr);
  *text = &platform.texts.emplace_back();
  return 0;
}
const char* cu_String_get(const cu_String* text) {
  called("get");
  return text->value.c_str();
}
uint32_t cu_String_delete(cu_String** text) {
  platform.texts.remove_if([text](const cu_String& each) { return &each == *text; });
  *text = nullptr;
  return called("delete");
}
uint32_t cu_Filename_getPath(const char* fileName, cu_String* path) {
  path->value = "answer";
  return called("getPath", fileName);
}
cu_SearchPath* getConfigLocator() {
  called("locator");
  return &thePath;
}
uint32_t cu_SearchPath_find(cu_SearchPath* path, const char* name, bool* found, cu_String* file) {
  EXPECT_FALSE(*found);
  *found = platform.flag;
  file->value = "answer";
  return called("find", textOf(path, name));
}
uint32_t cu_SearchPath_prepend(cu_SearchPath* path, const char* directory) {
  return called("prepend", textOf(path, directory));
}
uint32_t cu_SearchPath_remove(cu_SearchPath* path, const char* directory, bool* removed) {
  EXPECT_FALSE(*removed);
  *removed = platform.flag;
  return called("remove", textOf(path, directory));
}
uint32_t cu_SearchPath_count(cu_SearchPath*, size_t* count) {
  *count = 2;
  return called("count");
}
uint32_t cu_SearchPath_get(cu_SearchPath*, size_t index, cu_String* directory) {
  directory->value = "/entry" + std::to_string(index);
  return called("entry", std::to_string(index));
}
uint32_t cu_Logger_log(uint32_t level, const char* message) {
  return called("log", std::to_string(level) + ", " + message);
}

namespace {

Calls operator+(Calls calls, const Calls& more) {
  calls.insert(calls.end(), more.begin(), more.end());
  return calls;
}

std::string find() {
  return ConfigLocator::find("app.xml");
}
std::string getPath() {
  return cppUtil::fileName::getPath("/etc/app.xml");
}
std::string getEntries() {
  std::string all;
  for (const auto& entry : ConfigLocator::getEntries()) all += entry;
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
  const Calls search = {"new(0)", "locator()", "find(path, app.xml)"};
  const Calls directory = {"new(0)", "getPath(/etc/app.xml)"};
  const Calls entry0 = {"locator()", "count()", "new(0)", "locator()", "entry(0)"};
  const Calls entry1 = {"get()", "locator()", "entry(1)"};
  const Calls readAndDelete = {"get()", "delete()"};
  const struct {
    std::string (*call)();
    std::string failing;  // "" for none
    bool flag;            // what the platform's find and remove answer with
    Calls calls;          // those before the record is read
    bool fails;
    const char* answer;
    std::size_t texts;  // left undeleted
  } rows[] = {
      {find, "", true, search + readAndDelete, false, "answer", 0},
      {find, "", false, search + Calls{"delete()"}, false, "", 0},
      {find, "new", true, {"new(0)"}, true, "", 0},
      {find, "find", true, search, true, "", 1},
      {find, "delete", true, search + readAndDelete, true, "", 0},
      {getPath, "", true, directory + readAndDelete, false, "answer", 0},
      {getPath, "new", true, {"new(0)"}, true, "", 0},
      {getPath, "getPath", true, directory, true, "", 1},
      {getPath, "delete", true, directory + readAndDelete, false, "answer", 0},  // goes unnoticed
      {getEntries, "", true, entry0 + entry1 + readAndDelete, false, "/entry0/entry1", 0},
      {getEntries, "count", true, {"locator()", "count()"}, true, "", 0},
      {getEntries, "entry", true, entry0, true, "", 1},
      {getEntries, "delete", true, entry0 + entry1 + readAndDelete, true, "", 0},
      {prepend, "", true, {"locator()", "prepend(path, /etc)"}, false, "", 0},
      {prepend, "prepend", true, {"locator()", "prepend(path, /etc)"}, true, "", 0},
      {remove, "", true, {"locator()", "remove(path, /etc)"}, false, "true", 0},
      {remove, "", false, {"locator()", "remove(path, /etc)"}, false, "false", 0},
      {remove, "remove", true, {"locator()", "remove(path, /etc)"}, true, "", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.calls.back() + ", failing: " + row.failing);
    platform = {{}, row.failing, row.flag};
    std::string answer;
    EXPECT_EQ(failureOf([&] { answer = row.call(); }), row.fails ? failure : Failure{});
    EXPECT_EQ(answer, row.answer);
    EXPECT_EQ(platform.calls, row.fails ? row.calls + recordReads : row.calls);
    EXPECT_EQ(platform.texts.size(), row.texts);
  }
}

TEST(Logger, EmptiesItsTextOnSuccessAndKeepsItOnFailure) {
  platform = {{}, "log"};
  Logger logger(3);
  logger << "Parsing " << std::string("file") << ' ' << 5U;
  EXPECT_EQ(failureOf([&] { logger.log(); }), failure);
  EXPECT_EQ(logger.str(), "Parsing file 5");

  platform.failing = "";
  logger << "!";
  logger.log();
  EXPECT_EQ(logger.str(), "");
  logger << "next";
  logger.log();
  const Calls all = Calls{"log(3, Parsing file 5)"} + recordReads +
                    Calls{"log(3, Parsing file 5!)", "log(3, next)"};
  EXPECT_EQ(platform.calls, all);
}

TEST(ErrorModule, IsRegisteredOnceBeforeMain) {
  EXPECT_EQ(registration.count, 1U);
  EXPECT_EQ(registration.module, 3U);
  EXPECT_EQ(registration.localBits, 24U);
  EXPECT_STREQ(registration.resolver.moduleName, "serviceUtilConfig");
  EXPECT_STREQ(registration.resolver.getName(0x3000001), "NOT_FOUND");
  EXPECT_STREQ(registration.resolver.getDescription(0x3000001),
               "Requested configuration property not found!");
}

}  // namespace
