#include <thread>

#include "Support.hpp"

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
  const cu_ErrorText anyText = [](std::uint32_t) { return "text"; };
  const cu_Resolver good = {"m", anyText, anyText};

  const struct {
    std::string failed;
    std::string function;
    std::string argument;
  } missing[] = {
      {failed(cu_String_new(nullptr, 0)), "String_new", "text"},
      {failed(cu_String_set(text, nullptr)), "String_set", "value"},
      {failed(cu_String_delete(&noText)), "String_delete", "*text"},
      {failed(cu_Filename_getPath(nullptr, text)), "Filename_getPath", "fileName"},
      {failed(cu_SearchPath_new(nullptr)), "SearchPath_new", "path"},
      {failed(cu_SearchPath_copy(path, nullptr)), "SearchPath_copy", "copy"},
      {failed(cu_SearchPath_delete(&noPath)), "SearchPath_delete", "*path"},
      {failed(cu_SearchPath_find(path, nullptr, &flag, text)), "SearchPath_find", "name"},
      {failed(cu_SearchPath_prepend(path, nullptr)), "SearchPath_prepend", "directory"},
      {failed(cu_SearchPath_append(nullptr, "a")), "SearchPath_append", "path"},
      {failed(cu_SearchPath_remove(path, "/one", nullptr)), "SearchPath_remove", "removed"},
      {failed(cu_SearchPath_clear(nullptr)), "SearchPath_clear", "path"},
      {failed(cu_SearchPath_count(nullptr, &count)), "SearchPath_count", "path"},
      {failed(cu_SearchPath_get(path, 0, nullptr)), "SearchPath_get", "directory"},
      {failed(cu_Logger_log(CU_FATAL, nullptr)), "Logger_log", "message"},
  };
  for (const auto& row : missing) {
    const std::string unit = row.function.substr(0, row.function.find('_'));
    EXPECT_EQ(row.failed, "1 platform/cutil/" + unit + " cu_" + row.function + ": Argument \"" +
                              row.argument + "\" is missing! (0)");
  }
  const std::string setResolver = " platform/cutil/ErrorRegistry cu_SetResolver: Argument ";
  const std::pair<std::string, std::string> others[] = {
      {failed(cu_SearchPath_get(path, 1, text)),
       "5 platform/cutil/SearchPath cu_SearchPath_get: "
       "Argument \"index\" is 1, but must be below the count! (0)"},
      {failed(cu_Logger_log(5, "text")),
       "5 platform/cutil/Logger cu_Logger_log: Argument \"level\" is 5, but must be 0 to 4! (0)"},
      {failed(cu_Logger_setThreshold(5)),
       "5 platform/cutil/Logger cu_Logger_setThreshold: "
       "Argument \"level\" is 5, but must be 0 to 4! (0)"},
      {failed(cu_SetResolver(0, good, 24)),
       "5" + setResolver + "\"module\" is 0, but must be 1 to 255! (0)"},
      {failed(cu_SetResolver(256, good, 24)),
       "5" + setResolver + "\"module\" is 256, but must be 1 to 255! (0)"},
      {failed(cu_SetResolver(200, good, 16)),
       "5" + setResolver + "\"localBits\" is 16, but must be 24! (0)"},
      {failed(cu_SetResolver(200, {nullptr, anyText, anyText}, 24)),
       "1" + setResolver + "\"resolver.moduleName\" is missing! (0)"},
      {failed(cu_SetResolver(200, {"m", nullptr, anyText}, 24)),
       "1" + setResolver + "\"resolver.getName\" is missing! (0)"},
      // More than any memory holds; what stands for a path that there was no memory for.
      {failed(cu_String_new(&huge, SIZE_MAX)),
       "2 platform/cutil/String cu_String_new: Out of memory! (0)"},
      {failed(cu_SearchPath_count(noMemory, &count)),
       "2 platform/cutil/SearchPath cu_SearchPath_count: Out of memory! (0)"},
  };
  for (const auto& [found, expected] : others) EXPECT_EQ(found, expected);
  // No failed call has touched what it was given.
  EXPECT_EQ(text.str(), "before");
  EXPECT_TRUE(flag);
  EXPECT_EQ(count, 99u);
  EXPECT_EQ(directoriesOf(path), "[/one]");
  EXPECT_STREQ(cu_GetErrorModule(200u << 24), "unknown module");
}

TEST(ErrorRecord, StaysUntilTheNextFailureOfItsThread) {
  cu_String_set(nullptr, "");
  const std::string mine = recordText();
  std::string before, after;
  std::thread([&] {
    before = recordText();
    cu_SearchPath_new(nullptr);
    after = recordText();
  }).join();
  const Text successfulCall("text");

  EXPECT_EQ(before, " :  (0)");
  EXPECT_EQ(after,
            "platform/cutil/SearchPath cu_SearchPath_new: Argument \"path\" is missing! (0)");
  EXPECT_EQ(recordText(), mine);
}

TEST(ErrorRecord, ReadersTakeNothingForAnEmptyRecord) {
  EXPECT_EQ(recordText(nullptr), " :  (0)");
  EXPECT_EQ(cu_Error_getLineNumber(nullptr), 0);
  EXPECT_STREQ(cu_String_get(nullptr), "");
}
