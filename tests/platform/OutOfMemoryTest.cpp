#include <gtest/gtest.h>
#include <locator/locator.h>

#include "../FailingAllocations.hpp"
#include "Support.hpp"

namespace {

// Too long for a string that keeps its text inside itself.
const std::string longDirectory = "/a/directory/with/a/name/that/needs/memory";

std::uint32_t prependWithoutMemory(cu_SearchPath* path) {
  const FailingAllocations fail;
  return cu_SearchPath_prepend(path, longDirectory.c_str());
}

}  // namespace

// Lets the first allocation of a call fail, then only the second, and so on until it succeeds.
TEST(OutOfMemory, IsReportedAndLeavesEverythingAsItWas) {
  const TempDir temp;
  const std::string name = std::string(40, 'n');
  temp.addFile(name);
  const std::string fileName = temp.path() / name;
  const std::vector<std::string> directories = {longDirectory, temp.path()};

  using Call = std::uint32_t (*)(cu_SearchPath*, cu_String*, bool*, cu_String**,
                                 const std::string& fileName);
  const struct {
    const char* function;
    Call call;
  } rows[] = {
      {"cu_String_new",
       [](auto, auto, auto, cu_String** created, auto&) { return cu_String_new(created, 100); }},
      {"cu_String_set", [](auto, cu_String* text, auto, auto,
                           auto& file) { return cu_String_set(text, file.c_str()); }},
      {"cu_Filename_getPath", [](auto, cu_String* text, auto, auto,
                                 auto& file) { return cu_Filename_getPath(file.c_str(), text); }},
      {"cu_SearchPath_find",
       [](cu_SearchPath* path, cu_String* text, bool* flag, auto, auto& file) {
         return cu_SearchPath_find(path, file.c_str() + file.rfind('/') + 1, flag, text);
       }},
      {"cu_SearchPath_append", [](cu_SearchPath* path, auto, auto, auto,
                                  auto& file) { return cu_SearchPath_append(path, file.c_str()); }},
      {"cu_SearchPath_prepend",
       [](cu_SearchPath* path, auto, auto, auto, auto& file) {
         return cu_SearchPath_prepend(path, file.c_str());
       }},
      {"cu_SearchPath_get", [](cu_SearchPath* path, cu_String* text, auto, auto,
                               auto&) { return cu_SearchPath_get(path, 0, text); }},
  };
  for (const auto& row : rows) {
    std::uint32_t code = CU_OUT_OF_MEMORY;
    int allowed = 0;
    for (; code == CU_OUT_OF_MEMORY; ++allowed) {
      const Path path(directories);
      const Text text("before");
      bool flag = false;
      cu_String* created = nullptr;
      {
        const FailingAllocations fail(allowed);
        code = row.call(path, text, &flag, &created, fileName);
      }
      if (code != CU_OUT_OF_MEMORY) {
        cu_String_delete(&created);
        break;
      }
      EXPECT_STREQ(cu_Error_getFunctionName(cu_getErrorLocation()), row.function);
      EXPECT_STREQ(cu_Error_getDescription(cu_getErrorLocation()), "Out of memory!");
      EXPECT_EQ(text.str(), "before") << row.function;
      EXPECT_FALSE(flag) << row.function;
      EXPECT_EQ(created, nullptr) << row.function;
      EXPECT_EQ(directoriesOf(path), directories) << row.function;
    }
    EXPECT_EQ(code, 0u) << row.function;
    EXPECT_GT(allowed, 0) << row.function;
  }
}

// Each step is a prepend that succeeds "+" or fails "!", or the remove of a pair "-"; expected
// holds the answer of each remove.
TEST(OutOfMemory, LeavesPairsOfPrependAndRemoveBalanced) {
  using Directories = std::vector<std::string>;
  const struct {
    const char* name;
    Directories before;
    const char* steps;
    std::vector<bool> expected;
  } rows[] = {
      {"the user's own entry survives", {longDirectory}, "!-", {false}},
      {"the user's own entry behind others survives", {"/b", longDirectory}, "!-", {false}},
      {"the first of two equal entries survives",
       {longDirectory, "/b", longDirectory},
       "!-",
       {false}},
      {"no such entry", {"/b"}, "!-", {false}},
      {"inner pair failed", {longDirectory}, "+!--", {false, true}},
      {"outer pair failed", {longDirectory}, "!+--", {true, false}},
      {"both failed", {longDirectory}, "!!--", {false, false}},
      {"failed pair between", {}, "+!-+--", {false, true, true}},
  };
  for (const auto& row : rows) {
    Path path(row.before);
    std::vector<bool> answers;
    for (const char* step = row.steps; *step != '\0'; ++step) {
      if (*step == '+') {
        EXPECT_EQ(cu_SearchPath_prepend(path, longDirectory.c_str()), 0u);
      } else if (*step == '!') {
        EXPECT_EQ(prependWithoutMemory(path), CU_OUT_OF_MEMORY);
      } else {
        answers.push_back(path.remove(longDirectory));
      }
    }
    EXPECT_EQ(answers, row.expected) << row.name;
    EXPECT_EQ(directoriesOf(path), row.before) << row.name;
    // Nothing is remembered beyond the pair.
    for (const std::string& directory : row.before) EXPECT_TRUE(path.remove(directory)) << row.name;
  }
}

TEST(OutOfMemory, LogsNothing) {
  const std::string message(100, 'm');
  const Outcome outcome = inChild([&] {
    const FailingAllocations fail;
    return cu_Logger_log(CU_FATAL, message.c_str()) == CU_OUT_OF_MEMORY;
  });
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
}

TEST(OutOfMemory, LocatorTriesAgain) {
  const Outcome outcome = inChild([] {
    int attempts = 0;
    for (cu_SearchPath* path = nullptr; path == nullptr; ++attempts) {
      const FailingAllocations fail(attempts);
      path = getConfigLocator();
    }
    return attempts > 3 && !directoriesOf(getConfigLocator()).empty();
  });
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
}
