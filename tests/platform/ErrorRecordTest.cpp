#include <gtest/gtest.h>

#include <thread>

#include "Support.hpp"

namespace {

struct Record {
  int systemError;
  std::string file;
  std::string function;
  std::string description;

  bool operator==(const Record& other) const {
    return systemError == other.systemError && file == other.file && function == other.function &&
           description == other.description;
  }
};

std::ostream& operator<<(std::ostream& out, const Record& record) {
  return out << record.file << ' ' << record.function << ": " << record.description << " ("
             << record.systemError << ')';
}

Record currentRecord() {
  const cu_ErrorLocation* location = cu_getErrorLocation();
  return {cu_Error_getSystemErrorCode(location), cu_Error_getFileName(location),
          cu_Error_getFunctionName(location), cu_Error_getDescription(location)};
}

const char* anyText(std::uint32_t) {
  return "text";
}

struct BadCall {
  std::function<std::uint32_t()> call;
  std::uint32_t code;
  const char* file;
  const char* function;
  const char* description;
};

void expectFailure(const BadCall& row) {
  EXPECT_EQ(row.call(), row.code) << row.function;
  EXPECT_EQ(currentRecord(), (Record{0, row.file, row.function, row.description}));
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
    const char* file;
    const char* function;
    const char* argument;
    std::function<std::uint32_t()> call;
  } rows[] = {
      {"String", "cu_String_new", "text", [] { return cu_String_new(nullptr, 0); }},
      {"String", "cu_String_set", "text", [] { return cu_String_set(nullptr, ""); }},
      {"String", "cu_String_set", "value", [&] { return cu_String_set(text, nullptr); }},
      {"String", "cu_String_delete", "text", [] { return cu_String_delete(nullptr); }},
      {"String", "cu_String_delete", "*text", [&] { return cu_String_delete(&noText); }},
      {"Filename", "cu_Filename_getPath", "fileName",
       [&] { return cu_Filename_getPath(nullptr, text); }},
      {"Filename", "cu_Filename_getPath", "path", [] { return cu_Filename_getPath("a", nullptr); }},
      {"SearchPath", "cu_SearchPath_new", "path", [] { return cu_SearchPath_new(nullptr); }},
      {"SearchPath", "cu_SearchPath_delete", "path", [] { return cu_SearchPath_delete(nullptr); }},
      {"SearchPath", "cu_SearchPath_delete", "*path",
       [&] { return cu_SearchPath_delete(&noPath); }},
      {"SearchPath", "cu_SearchPath_find", "path",
       [&] { return cu_SearchPath_find(nullptr, "a", &flag, text); }},
      {"SearchPath", "cu_SearchPath_find", "name",
       [&] { return cu_SearchPath_find(path, nullptr, &flag, text); }},
      {"SearchPath", "cu_SearchPath_find", "found",
       [&] { return cu_SearchPath_find(path, "a", nullptr, text); }},
      {"SearchPath", "cu_SearchPath_find", "file",
       [&] { return cu_SearchPath_find(path, "a", &flag, nullptr); }},
      {"SearchPath", "cu_SearchPath_prepend", "path",
       [] { return cu_SearchPath_prepend(nullptr, "a"); }},
      {"SearchPath", "cu_SearchPath_prepend", "directory",
       [&] { return cu_SearchPath_prepend(path, nullptr); }},
      {"SearchPath", "cu_SearchPath_append", "path",
       [] { return cu_SearchPath_append(nullptr, "a"); }},
      {"SearchPath", "cu_SearchPath_append", "directory",
       [&] { return cu_SearchPath_append(path, nullptr); }},
      {"SearchPath", "cu_SearchPath_remove", "path",
       [&] { return cu_SearchPath_remove(nullptr, "/one", &flag); }},
      {"SearchPath", "cu_SearchPath_remove", "directory",
       [&] { return cu_SearchPath_remove(path, nullptr, &flag); }},
      {"SearchPath", "cu_SearchPath_remove", "removed",
       [&] { return cu_SearchPath_remove(path, "/one", nullptr); }},
      {"SearchPath", "cu_SearchPath_clear", "path", [] { return cu_SearchPath_clear(nullptr); }},
      {"SearchPath", "cu_SearchPath_count", "path",
       [&] { return cu_SearchPath_count(nullptr, &count); }},
      {"SearchPath", "cu_SearchPath_count", "count",
       [&] { return cu_SearchPath_count(path, nullptr); }},
      {"SearchPath", "cu_SearchPath_get", "path",
       [&] { return cu_SearchPath_get(nullptr, 0, text); }},
      {"SearchPath", "cu_SearchPath_get", "directory",
       [&] { return cu_SearchPath_get(path, 0, nullptr); }},
      {"Logger", "cu_Logger_log", "message", [] { return cu_Logger_log(CU_FATAL, nullptr); }},
      {"ErrorRegistry", "cu_SetResolver", "resolver.moduleName",
       [] {
         return cu_SetResolver(200, {nullptr, anyText, anyText}, 24);
       }},
      {"ErrorRegistry", "cu_SetResolver", "resolver.getName",
       [] {
         return cu_SetResolver(200, {"m", nullptr, anyText}, 24);
       }},
      {"ErrorRegistry", "cu_SetResolver", "resolver.getDescription",
       [] {
         return cu_SetResolver(200, {"m", anyText, nullptr}, 24);
       }},
  };
  for (const auto& row : rows) {
    const std::string file = std::string("platform/cutil/") + row.file;
    const std::string description = std::string("Argument \"") + row.argument + "\" is missing!";
    expectFailure({row.call, CU_MISSING_ARGUMENT, file.c_str(), row.function, description.c_str()});
  }
  // No failed call has touched what it was given.
  EXPECT_EQ(text.str(), "before");
  EXPECT_TRUE(flag);
  EXPECT_EQ(count, 99u);
  EXPECT_EQ(directoriesOf(path), std::vector<std::string>{"/one"});
  EXPECT_STREQ(cu_GetErrorModule(200u << 24), "unknown module");
}

TEST(ErrorRecord, NamesTheInvalidArgument) {
  const Path path({"/one"});
  const Text text("before");
  const cu_Resolver resolver = {"m", anyText, anyText};

  const BadCall rows[] = {
      {[&] { return cu_SearchPath_get(path, 1, text); }, CU_INVALID_ARGUMENT,
       "platform/cutil/SearchPath", "cu_SearchPath_get",
       "Argument \"index\" is 1, but must be below the count!"},
      {[] { return cu_Logger_log(5, "text"); }, CU_INVALID_ARGUMENT, "platform/cutil/Logger",
       "cu_Logger_log", "Argument \"level\" is 5, but must be 0 to 4!"},
      {[] { return cu_Logger_setThreshold(5); }, CU_INVALID_ARGUMENT, "platform/cutil/Logger",
       "cu_Logger_setThreshold", "Argument \"level\" is 5, but must be 0 to 4!"},
      {[&] { return cu_SetResolver(0, resolver, 24); }, CU_INVALID_ARGUMENT,
       "platform/cutil/ErrorRegistry", "cu_SetResolver",
       "Argument \"module\" is 0, but must be 1 to 255!"},
      {[&] { return cu_SetResolver(256, resolver, 24); }, CU_INVALID_ARGUMENT,
       "platform/cutil/ErrorRegistry", "cu_SetResolver",
       "Argument \"module\" is 256, but must be 1 to 255!"},
      {[&] { return cu_SetResolver(201, resolver, 16); }, CU_INVALID_ARGUMENT,
       "platform/cutil/ErrorRegistry", "cu_SetResolver",
       "Argument \"localBits\" is 16, but must be 24!"},
      // More than any memory holds.
      {[] {
         cu_String* huge = nullptr;
         return cu_String_new(&huge, SIZE_MAX);
       },
       CU_OUT_OF_MEMORY, "platform/cutil/String", "cu_String_new", "Out of memory!"},
  };
  for (const BadCall& row : rows) expectFailure(row);
  EXPECT_EQ(text.str(), "before");
  EXPECT_STREQ(cu_GetErrorName(0), "OK");
  EXPECT_STREQ(cu_GetErrorModule(201u << 24), "unknown module");
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
  EXPECT_EQ(cu_String_set(nullptr, ""), CU_MISSING_ARGUMENT);
  const Record mine = currentRecord();
  Record before;
  Record after;
  std::thread([&] {
    before = currentRecord();
    cu_SearchPath_new(nullptr);
    after = currentRecord();
  }).join();
  const Text successfulCall("text");

  EXPECT_EQ(before, (Record{0, "", "", ""}));
  EXPECT_EQ(after.function, "cu_SearchPath_new");
  EXPECT_EQ(currentRecord(), mine);
}
