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
void expectFailure(const BadCall& row, std::string file = "") {
  const std::string function = row.function;
  if (file.empty()) file = function.substr(3, function.rfind('_') - 3);
  EXPECT_EQ(row.call(), row.code) << row.function;
  EXPECT_EQ(currentRecord(),
            "platform/cutil/" + file + " " + function + ": " + row.description + " (0)");
  EXPECT_GT(cu_Error_getLineNumber(cu_getErrorLocation()), 0) << row.function;
}

}  // namespace

TEST(ErrorRecord, NamesTheMissingArgument) {
  const Path path({"/one"});
  const Text text("before");
  cu_String* noText = nullptr;
  cu_SearchPath* noPath = nullptr;
  bool flag = true;
  std::size_t count = 99;

  const struct {
    const char* function;
    const char* argument;
    std::function<std::uint32_t()> call;
  } rows[] = {
      {"cu_String_new", "text", [] { return cu_String_new(nullptr, 0); }},
      {"cu_String_set", "text", [] { return cu_String_set(nullptr, ""); }},
      {"cu_String_set", "value", [&] { return cu_String_set(text, nullptr); }},
      {"cu_String_delete", "text", [] { return cu_String_delete(nullptr); }},
      {"cu_String_delete", "*text", [&] { return cu_String_delete(&noText); }},
      {"cu_Filename_getPath", "fileName", [&] { return cu_Filename_getPath(nullptr, text); }},
      {"cu_Filename_getPath", "path", [] { return cu_Filename_getPath("a", nullptr); }},
      {"cu_SearchPath_new", "path", [] { return cu_SearchPath_new(nullptr); }},
      {"cu_SearchPath_delete", "path", [] { return cu_SearchPath_delete(nullptr); }},
      {"cu_SearchPath_delete", "*path", [&] { return cu_SearchPath_delete(&noPath); }},
      {"cu_SearchPath_find", "path", [&] { return cu_SearchPath_find(nullptr, "a", &flag, text); }},
      {"cu_SearchPath_find", "name",
       [&] { return cu_SearchPath_find(path, nullptr, &flag, text); }},
      {"cu_SearchPath_find", "found", [&] { return cu_SearchPath_find(path, "a", nullptr, text); }},
      {"cu_SearchPath_find", "file", [&] { return cu_SearchPath_find(path, "a", &flag, nullptr); }},
      {"cu_SearchPath_prepend", "path", [] { return cu_SearchPath_prepend(nullptr, "a"); }},
      {"cu_SearchPath_prepend", "directory", [&] { return cu_SearchPath_prepend(path, nullptr); }},
      {"cu_SearchPath_append", "path", [] { return cu_SearchPath_append(nullptr, "a"); }},
      {"cu_SearchPath_append", "directory", [&] { return cu_SearchPath_append(path, nullptr); }},
      {"cu_SearchPath_remove", "path", [&] { return cu_SearchPath_remove(nullptr, "a", &flag); }},
      {"cu_SearchPath_remove", "directory",
       [&] { return cu_SearchPath_remove(path, nullptr, &flag); }},
      {"cu_SearchPath_remove", "removed",
       [&] { return cu_SearchPath_remove(path, "/one", nullptr); }},
      {"cu_SearchPath_clear", "path", [] { return cu_SearchPath_clear(nullptr); }},
      {"cu_SearchPath_count", "path", [&] { return cu_SearchPath_count(nullptr, &count); }},
      {"cu_SearchPath_count", "count", [&] { return cu_SearchPath_count(path, nullptr); }},
      {"cu_SearchPath_get", "path", [&] { return cu_SearchPath_get(nullptr, 0, text); }},
      {"cu_SearchPath_get", "directory", [&] { return cu_SearchPath_get(path, 0, nullptr); }},
      {"cu_Logger_log", "message", [] { return cu_Logger_log(CU_FATAL, nullptr); }},
  };
  for (const auto& row : rows) {
    expectFailure({row.function, row.call, CU_MISSING_ARGUMENT,
                   std::string("Argument \"") + row.argument + "\" is missing!"});
  }
  // No failed call has touched what it was given.
  EXPECT_EQ(text.str(), "before");
  EXPECT_TRUE(flag);
  EXPECT_EQ(count, 99u);
  EXPECT_EQ(directoriesOf(path), std::vector<std::string>{"/one"});
}

TEST(ErrorRecord, NamesTheInvalidArgument) {
  const Path path({"/one"});
  const Text text("before");
  cu_String* huge = nullptr;

  const BadCall rows[] = {
      {"cu_SearchPath_get", [&] { return cu_SearchPath_get(path, 1, text); }, CU_INVALID_ARGUMENT,
       "Argument \"index\" is 1, but must be below the count!"},
      {"cu_Logger_log", [] { return cu_Logger_log(5, "text"); }, CU_INVALID_ARGUMENT,
       "Argument \"level\" is 5, but must be 0 to 4!"},
      {"cu_Logger_setThreshold", [] { return cu_Logger_setThreshold(5); }, CU_INVALID_ARGUMENT,
       "Argument \"level\" is 5, but must be 0 to 4!"},
      // More than any memory holds.
      {"cu_String_new", [&] { return cu_String_new(&huge, SIZE_MAX); }, CU_OUT_OF_MEMORY,
       "Out of memory!"},
  };
  for (const BadCall& row : rows) expectFailure(row);
  EXPECT_EQ(text.str(), "before");
}

TEST(ErrorRecord, NamesWhatIsWrongWithAResolver) {
  const cu_Resolver good = {"m", anyText, anyText};
  const struct {
    std::uint32_t module;
    cu_Resolver resolver;
    std::uint32_t localBits;
    std::uint32_t code;
    const char* description;
  } rows[] = {
      {200,
       {nullptr, anyText, anyText},
       24,
       CU_MISSING_ARGUMENT,
       "Argument \"resolver.moduleName\" is missing!"},
      {200,
       {"m", nullptr, anyText},
       24,
       CU_MISSING_ARGUMENT,
       "Argument \"resolver.getName\" is missing!"},
      {200,
       {"m", anyText, nullptr},
       24,
       CU_MISSING_ARGUMENT,
       "Argument \"resolver.getDescription\" is missing!"},
      {0, good, 24, CU_INVALID_ARGUMENT, "Argument \"module\" is 0, but must be 1 to 255!"},
      {256, good, 24, CU_INVALID_ARGUMENT, "Argument \"module\" is 256, but must be 1 to 255!"},
      {200, good, 16, CU_INVALID_ARGUMENT, "Argument \"localBits\" is 16, but must be 24!"},
  };
  for (const auto& row : rows) {
    const auto call = [&] { return cu_SetResolver(row.module, row.resolver, row.localBits); };
    expectFailure({"cu_SetResolver", call, row.code, row.description}, "ErrorRegistry");
  }
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
