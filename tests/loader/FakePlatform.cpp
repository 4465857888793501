#include "FakePlatform.hpp"

#include <cutil/cutil.h>
#include <locator/locator.h>

#include <algorithm>
#include <filesystem>
#include <list>

struct cu_String {
  std::string value;
};

// The record of the last failed call.
struct cu_ErrorLocation {
  std::size_t call = 0;
  std::string description;
};

struct cu_SearchPath {};

namespace {

// Owns the text objects: the adapters leave one behind when a call on it fails.
std::list<cu_String> texts;
cu_ErrorLocation record;
cu_SearchPath searchPath;

std::uint32_t call(const char* name) {
  FakePlatform& fake = FakePlatform::instance();
  const std::size_t number = fake.calls.size();
  fake.calls.emplace_back(name);
  if (fake.failing.count(number) == 0) return CU_OK;
  record = {number, "the reason of " + std::to_string(number)};
  return FakePlatform::codeOf(number);
}

}  // namespace

FakePlatform& FakePlatform::instance() {
  static FakePlatform fake;
  return fake;
}

std::uint32_t cu_SetResolver(std::uint32_t, cu_Resolver, std::uint32_t) {
  return CU_OK;
}
const char* cu_GetErrorName(std::uint32_t) {
  return "FAKE";
}

const cu_ErrorLocation* cu_getErrorLocation() {
  return &record;
}
int cu_Error_getSystemErrorCode(const cu_ErrorLocation* location) {
  return static_cast<int>(location->call) + 100;
}
const char* cu_Error_getFileName(const cu_ErrorLocation*) {
  return "fake/file";
}
const char* cu_Error_getFunctionName(const cu_ErrorLocation*) {
  return "fake_function";
}
int cu_Error_getLineNumber(const cu_ErrorLocation* location) {
  return static_cast<int>(location->call) + 200;
}
const char* cu_Error_getDescription(const cu_ErrorLocation* location) {
  return location->description.c_str();
}

std::uint32_t cu_String_new(cu_String** text, std::size_t) {
  if (const auto result = call("String_new")) return result;
  *text = &texts.emplace_back();
  return CU_OK;
}
const char* cu_String_get(const cu_String* text) {
  return text->value.c_str();
}
std::uint32_t cu_String_delete(cu_String** text) {
  if (const auto result = call("String_delete")) return result;
  texts.remove_if([text](const cu_String& own) { return &own == *text; });
  *text = nullptr;
  return CU_OK;
}

std::uint32_t cu_Filename_getPath(const char* fileName, cu_String* path) {
  if (const auto result = call("Filename_getPath")) return result;
  path->value = std::filesystem::path(fileName).parent_path();
  return CU_OK;
}

std::uint32_t cu_SearchPath_find(cu_SearchPath*, const char* name, bool* found, cu_String* file) {
  if (const auto result = call("SearchPath_find")) return result;
  for (const std::string& directory : FakePlatform::instance().path) {
    *found = std::filesystem::exists(directory + "/" + name);
    if (*found) {
      file->value = directory + "/" + name;
      break;
    }
  }
  return CU_OK;
}
std::uint32_t cu_SearchPath_count(cu_SearchPath*, std::size_t* count) {
  if (const auto result = call("SearchPath_count")) return result;
  *count = FakePlatform::instance().path.size();
  return CU_OK;
}
std::uint32_t cu_SearchPath_get(cu_SearchPath*, std::size_t index, cu_String* directory) {
  if (const auto result = call("SearchPath_get")) return result;
  directory->value = FakePlatform::instance().path.at(index);
  return CU_OK;
}
std::uint32_t cu_SearchPath_prepend(cu_SearchPath*, const char* directory) {
  if (const auto result = call("SearchPath_prepend")) return result;
  auto& path = FakePlatform::instance().path;
  path.insert(path.begin(), directory);
  return CU_OK;
}
std::uint32_t cu_SearchPath_remove(cu_SearchPath*, const char* directory, bool* removed) {
  if (const auto result = call("SearchPath_remove")) return result;
  auto& path = FakePlatform::instance().path;
  const auto position = std::find(path.begin(), path.end(), directory);
  *removed = position != path.end();
  if (*removed) path.erase(position);
  return CU_OK;
}
cu_SearchPath* getConfigLocator() {
  return &searchPath;
}

std::uint32_t cu_Logger_log(std::uint32_t, const char*) {
  return call("Logger_log");
}
