#include <locator/locator.h>

#include <optional>

#include "../FailingAllocations.hpp"
#include "../TemporaryFolder.hpp"
#include "Support.hpp"

namespace {

// Too long for a string that keeps its text inside itself.
const std::string longDirectory = "/a/directory/with/a/name/that/needs/memory";

}  // namespace

// Lets the first allocation of a call fail, then only the second, and so on until it succeeds.
TEST(OutOfMemory, IsReportedAndLeavesEverythingAsItWas) {
  const TemporaryFolder temp;
  const std::string name = std::string(40, 'n');
  temp.write(name);
  const std::string file = temp.path / name;
  const Path path({longDirectory, temp.path});
  const std::string directories = directoriesOf(path);
  std::optional<Text> text;
  bool flag = false;
  cu_String* created = nullptr;
  cu_SearchPath* copy = nullptr;

  const std::pair<std::string, std::function<std::uint32_t()>> rows[] = {
      {"String cu_String_new", [&] { return cu_String_new(&created, 100); }},
      {"SearchPath cu_SearchPath_copy", [&] { return cu_SearchPath_copy(path, &copy); }},
      {"SearchPath cu_SearchPath_find",
       [&] { return cu_SearchPath_find(path, name.c_str(), &flag, *text); }},
      {"Filename cu_Filename_getPath", [&] { return cu_Filename_getPath(file.c_str(), *text); }},
      {"SearchPath cu_SearchPath_get", [&] { return cu_SearchPath_get(path, 0, *text); }},
      {"SearchPath cu_SearchPath_append", [&] { return cu_SearchPath_append(path, file.c_str()); }},
  };
  for (const auto& [function, call] : rows) {
    text.emplace("before");
    int allowed = 0;
    const auto codeWithMemory = [&, &call = call] {
      const FailingAllocations fail(allowed);
      return call();
    };
    for (; codeWithMemory() == CU_OUT_OF_MEMORY; ++allowed) {
      EXPECT_EQ(failed(CU_OUT_OF_MEMORY), "2 platform/cutil/" + function + ": Out of memory! (0)");
      EXPECT_EQ(text->str(), "before") << function;
      EXPECT_FALSE(flag || created != nullptr || copy != nullptr) << function;
      EXPECT_EQ(directoriesOf(path), directories) << function;
    }
    flag = false;
    cu_String_delete(&created);
    cu_SearchPath_delete(&copy);
    EXPECT_GT(allowed, 0) << function;
  }
}

TEST(OutOfMemory, LogsNothing) {
  const std::string written = writtenInChild([] {
    const FailingAllocations fail;
    return cu_Logger_log(CU_FATAL, longDirectory.c_str()) == CU_OUT_OF_MEMORY;
  });
  EXPECT_EQ(written, "");
}

TEST(OutOfMemory, LocatorSaysSoAndTriesAgain) {
  writtenInChild([] {
    ::setenv("ZU_CONFIG_PATH", longDirectory.c_str(), 1);
    std::uint32_t code = CU_OUT_OF_MEMORY;
    int allowed = 0;
    for (; code == CU_OUT_OF_MEMORY; ++allowed) {
      const FailingAllocations fail(allowed);
      bool removed = false;
      code = cu_SearchPath_remove(getConfigLocator(), "/none", &removed);  // needs none itself
    }
    return allowed > 3 && directoriesOf(getConfigLocator()) == "[" + longDirectory + "]";
  });
}

// Each step is a prepend that succeeds "+" or fails "!", or the remove of a pair "-", which "="
// does on a copy; expected holds the answer of each remove.
TEST(OutOfMemory, LeavesPairsOfPrependAndRemoveBalanced) {
  const struct {
    const char* name;
    std::vector<std::string> before;
    const char* steps;
    std::vector<bool> expected;
  } rows[] = {
      {"the user's own entry behind others survives", {"/b", longDirectory}, "!-", {false}},
      {"the first of two equal ones, too", {longDirectory, "/b", longDirectory}, "!-", {false}},
      {"no such entry", {"/b"}, "!-", {false}},
      {"outer pair failed", {longDirectory}, "!+--", {true, false}},
      {"failed pair between", {}, "+!-+--", {false, true, true}},
      {"a copy has pairs of its own", {longDirectory}, "!=-", {true, false}},
  };
  for (const auto& row : rows) {
    const Path path(row.before);
    const std::string before = directoriesOf(path);
    std::vector<bool> answers;
    for (const char* step = row.steps; *step != '\0'; ++step) {
      if (*step == '+') {
        EXPECT_EQ(cu_SearchPath_prepend(path, longDirectory.c_str()), 0u);
      } else if (*step == '!') {
        const FailingAllocations fail;
        EXPECT_EQ(cu_SearchPath_prepend(path, longDirectory.c_str()), CU_OUT_OF_MEMORY);
      } else if (*step == '-') {
        answers.push_back(removeFrom(path, longDirectory));
      } else {
        cu_SearchPath* copy = nullptr;
        EXPECT_EQ(cu_SearchPath_copy(path, &copy), 0u);
        answers.push_back(removeFrom(copy, longDirectory));
        cu_SearchPath_delete(&copy);
      }
    }
    EXPECT_EQ(answers, row.expected) << row.name;
    EXPECT_EQ(directoriesOf(path), before) << row.name;
    // Nothing is remembered beyond the pair.
    for (const std::string& each : row.before) EXPECT_TRUE(removeFrom(path, each)) << row.name;
  }
}
