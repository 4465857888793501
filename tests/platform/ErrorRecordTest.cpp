#include <gtest/gtest.h>

#include <thread>

#include "Support.hpp"

namespace {

// "file function: description (system error)".
std::string currentRecord() {
  const cu_ErrorLocation* location = cu_getErrorLocation();
  return std::string(cu_Error_getFileName(location)) + " " + cu_Error_getFunctionName(location) +
         ": " + cu_Error_getDescription(location) + " (" +
         std::to_string(cu_Error_getSystemErrorCode(location)) + ")";
}

const char* anyText(std::uint32_t) {
  return "text";
}

struct BadCall {
  const char* function;
  std::function<std::uint32_t()> call;
  std::uint32_t code;
  std::string description;
};

// The file is named after the middle of the function.
void expectFailure(const BadCall& row) {
  const std::string function = row.function;
  const std::size_t end = function.rfind('_');
  const std::string file = end == 2 ? "ErrorRegistry" : function.substr(3, end - 3);
  EXPECT_EQ(row.call(), row.code) << row.function;
  EXPECT_EQ(currentRecord(),
            "platform/cutil/" + file + " " + function + ": " + row.description + " (0)");
  EXPECT_GT(cu_Error_getLineNumber(cu_getErrorLocation()), 0) << row.function;
}

}  // namespace

// One argument a function: what is checked is that a call checks at all.
TEST(ErrorRecord, NamesTheWrongArgument) {
  const Path path({"/one"});
  const Text text("before");
  cu_SearchPath* const noMemory = cu_SearchPath_outOfMemory();
  cu_String* noText = nullptr;
  cu_SearchPath* noPath = nullptr;
  cu_String* huge = nullptr;
  bool flag = true;
  std::size_t count = 99;
  const auto missing = [](const std::string& name) {
    return "Argument \"" + name + "\" is missing!";
  };
  const char* const outOfMemory = "Out of memory!";
  const cu_Resolver good = {"m", anyText, anyText};

  const BadCall rows[] = {
      {"cu_String_new", [] { return cu_String_new(nullptr, 0); }, 1, missing("text")},
      {"cu_String_set", [&] { return cu_String_set(text, nullptr); }, 1, missing("value")},
      {"cu_String_delete", [&] { return cu_String_delete(&noText); }, 1, missing("*text")},
      {"cu_Filename_getPath", [&] { return cu_Filename_getPath(nullptr, text); }, 1,
       missing("fileName")},
      {"cu_SearchPath_new", [] { return cu_SearchPath_new(nullptr); }, 1, missing("path")},
      {"cu_SearchPath_copy", [&] { return cu_SearchPath_copy(path, nullptr); }, 1, missing("copy")},
      {"cu_SearchPath_delete", [&] { return cu_SearchPath_delete(&noPath); }, 1, missing("*path")},
      {"cu_SearchPath_find", [&] { return cu_SearchPath_find(path, nullptr, &flag, text); }, 1,
       missing("name")},
      {"cu_SearchPath_prepend", [&] { return cu_SearchPath_prepend(path, nullptr); }, 1,
       missing("directory")},
      {"cu_SearchPath_append", [] { return cu_SearchPath_append(nullptr, "a"); }, 1,
       missing("path")},
      {"cu_SearchPath_remove", [&] { return cu_SearchPath_remove(path, "/one", nullptr); }, 1,
       missing("removed")},
      {"cu_SearchPath_clear", [] { return cu_SearchPath_clear(nullptr); }, 1, missing("path")},
      {"cu_SearchPath_count", [&] { return cu_SearchPath_count(nullptr, &count); }, 1,
       missing("path")},
      {"cu_SearchPath_get", [&] { return cu_SearchPath_get(path, 0, nullptr); }, 1,
       missing("directory")},
      {"cu_SearchPath_get", [&] { return cu_SearchPath_get(path, 1, text); }, 5,
       "Argument \"index\" is 1, but must be below the count!"},
      {"cu_Logger_log", [] { return cu_Logger_log(CU_FATAL, nullptr); }, 1, missing("message")},
      {"cu_Logger_log", [] { return cu_Logger_log(5, "text"); }, 5,
       "Argument \"level\" is 5, but must be 0 to 4!"},
      {"cu_Logger_setThreshold", [] { return cu_Logger_setThreshold(5); }, 5,
       "Argument \"level\" is 5, but must be 0 to 4!"},
      {"cu_SetResolver",
       [&] {
         return cu_SetResolver(200, {nullptr, anyText, anyText}, 24);
       },
       1, missing("resolver.moduleName")},
      {"cu_SetResolver",
       [&] {
         return cu_SetResolver(200, {"m", nullptr, anyText}, 24);
       },
       1, missing("resolver.getName")},
      {"cu_SetResolver", [&] { return cu_SetResolver(0, good, 24); }, 5,
       "Argument \"module\" is 0, but must be 1 to 255!"},
      {"cu_SetResolver", [&] { return cu_SetResolver(256, good, 24); }, 5,
       "Argument \"module\" is 256, but must be 1 to 255!"},
      {"cu_SetResolver", [&] { return cu_SetResolver(200, good, 16); }, 5,
       "Argument \"localBits\" is 16, but must be 24!"},
      // More than any memory holds; what stands for a path that there was no memory for.
      {"cu_String_new", [&] { return cu_String_new(&huge, SIZE_MAX); }, 2, outOfMemory},
      {"cu_SearchPath_count", [&] { return cu_SearchPath_count(noMemory, &count); }, 2,
       outOfMemory},
  };
  for (const BadCall& row : rows) expectFailure(row);
  // No failed call has touched what it was given.
  EXPECT_EQ(text.str(), "before");
  EXPECT_TRUE(flag);
  EXPECT_EQ(count, 99u);
  EXPECT_EQ(directoriesOf(path), std::vector<std::string>{"/one"});
  EXPECT_STREQ(cu_GetErrorModule(200u << 24), "unknown module");
}

TEST(ErrorRecord, ReadersTakeNothingForAnEmptyRecord) {
  EXPECT_EQ(cu_Error_getSystemErrorCode(nullptr), 0);
  EXPECT_STREQ(cu_Error_getFileName(nullptr), "");
  EXPECT_STREQ(cu_Error_getFunctionName(nullptr), "");
  EXPECT_EQ(cu_Error_getLineNumber(nullptr), 0);
  EXPECT_STREQ(cu_Error_getDescription(nullptr), "");
  EXPECT_STREQ(cu_String_get(nullptr), "");
}

TEST(ErrorRecord, StaysUntilTheNextFailureOfItsThread) {
  cu_String_set(nullptr, "");
  const std::string mine = currentRecord();
  std::string before, after;
  std::thread([&] {
    before = currentRecord();
    cu_SearchPath_new(nullptr);
    after = currentRecord();
  }).join();
  const Text successfulCall("text");

  EXPECT_EQ(before, " :  (0)");
  EXPECT_EQ(after,
            "platform/cutil/SearchPath cu_SearchPath_new: Argument \"path\" is missing! (0)");
  EXPECT_EQ(currentRecord(), mine);
}
