#include <gtest/gtest.h>
#include <locator/locator.h>

#include <optional>

#include "../FailingAllocations.hpp"
#include "../TemporaryFolder.hpp"
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
  const TemporaryFolder temp;
  const std::string name = std::string(40, 'n');
  temp.write(name);
  const std::string file = temp.path / name;
  const std::vector<std::string> directories = {longDirectory, temp.path};
  const Path path(directories);
  std::optional<Text> text;
  bool flag = false;
  cu_String* created = nullptr;
  cu_SearchPath* copy = nullptr;

  const struct {
    const char* function;
    std::function<std::uint32_t()> call;
  } rows[] = {
      {"cu_String_new", [&] { return cu_String_new(&created, 100); }},
      {"cu_SearchPath_copy", [&] { return cu_SearchPath_copy(path, &copy); }},
      {"cu_SearchPath_find", [&] { return cu_SearchPath_find(path, name.c_str(), &flag, *text); }},
      {"cu_Filename_getPath", [&] { return cu_Filename_getPath(file.c_str(), *text); }},
      {"cu_SearchPath_get", [&] { return cu_SearchPath_get(path, 0, *text); }},
      {"cu_SearchPath_append", [&] { return cu_SearchPath_append(path, file.c_str()); }},
  };
  for (const auto& row : rows) {
    text.emplace("before");
    int allowed = 0;
    const auto callWithMemory = [&] {
      const FailingAllocations fail(allowed);
      return row.call();
    };
    for (; callWithMemory() == CU_OUT_OF_MEMORY; ++allowed) {
      EXPECT_STREQ(cu_Error_getFunctionName(cu_getErrorLocation()), row.function);
      EXPECT_STREQ(cu_Error_getDescription(cu_getErrorLocation()), "Out of memory!");
      EXPECT_EQ(text->str(), "before") << row.function;
      EXPECT_FALSE(flag || created != nullptr || copy != nullptr) << row.function;
      EXPECT_EQ(directoriesOf(path), directories) << row.function;
    }
    flag = false;
    cu_String_delete(&created);
    cu_SearchPath_delete(&copy);
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
      {"the user's own entry behind others survives", {"/b", longDirectory}, "!-", {false}},
      {"the first of two equal entries survives",
       {longDirectory, "/b", longDirectory},
       "!-",
       {false}},
      {"no such entry", {"/b"}, "!-", {false}},
      {"outer pair failed", {longDirectory}, "!+--", {true, false}},
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

// A copy has pairs of its own.
TEST(OutOfMemory, LeavesACopyWithoutTheFailedPairs) {
  Path path({longDirectory});
  EXPECT_EQ(prependWithoutMemory(path), CU_OUT_OF_MEMORY);
  cu_SearchPath* copy = nullptr;
  bool removed = false;
  EXPECT_EQ(cu_SearchPath_copy(path, &copy), 0u);
  EXPECT_EQ(cu_SearchPath_remove(copy, longDirectory.c_str(), &removed), 0u);
  EXPECT_TRUE(removed);
  cu_SearchPath_delete(&copy);
  EXPECT_FALSE(path.remove(longDirectory));
}

TEST(OutOfMemory, LogsNothing) {
  const std::string message(100, 'm');
  const std::string written = writtenInChild([&] {
    const FailingAllocations fail;
    return cu_Logger_log(CU_FATAL, message.c_str()) == CU_OUT_OF_MEMORY;
  });
  EXPECT_EQ(written, "");
}

TEST(OutOfMemory, LocatorSaysSoAndTriesAgain) {
  writtenInChild([] {
    int attempts = 0;
    for (std::uint32_t code = CU_OUT_OF_MEMORY; code == CU_OUT_OF_MEMORY; ++attempts) {
      const FailingAllocations fail(attempts);
      bool removed = false;
      code = cu_SearchPath_remove(getConfigLocator(), "/none", &removed);  // needs no memory itself
    }
    return attempts > 3 && !directoriesOf(getConfigLocator()).empty();
  });
}
