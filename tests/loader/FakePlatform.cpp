#include "FakePlatform.hpp"

#include <locator/locator.h>

#include <algorithm>
#include <filesystem>

// The record of the last failed call.
struct cu_ErrorLocation {
  unit::Failure failure;
};

struct cu_SearchPath {};

namespace {

cu_ErrorLocation record;
cu_SearchPath searchPath;

std::uint32_t call(const std::string& name, const std::string& arguments = "") {
  FakePlatform& fake = FakePlatform::instance();
  const std::size_t number = fake.calls.size();
  fake.calls.push_back(arguments.empty() ? name : name + " " + arguments);
  if (fake.failing.count(number) == 0) return CU_OK;
  record.failure = FakePlatform::failureOf(number);
  return std::get<0>(record.failure);
}

}  // namespace

FakePlatform& FakePlatform::instance() {
  static FakePlatform fake;
  return fake;
}

unit::Failure FakePlatform::failureOf(std::size_t call) {
  const int number = static_cast<int>(call);
  return {0x7000000u + std::uint32_t(call),
          number + 100,
          "fake/file",
          "fake_function",
          number + 200,
          "the reason of " + std::to_string(call)};
}

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
  *text = &FakePlatform::instance().texts.emplace_back();
  return CU_OK;
}
const char* cu_String_get(const cu_String* text) {
  return text->value.c_str();
}
std::uint32_t cu_String_delete(cu_String** text) {
  if (const auto result = call("delete")) return result;
  FakePlatform::instance().texts.remove_if([&](const cu_String& own) { return &own == *text; });
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
  *found = false;
  for (const std::string& directory : FakePlatform::instance().path) {
    *found = std::filesystem::exists(directory + "/" + name);
    if (*found) {
      file->value = directory + "/" + name;
      break;
    }
  }
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
  *count = FakePlatform::instance().path.size();
  return CU_OK;
}
std::uint32_t cu_SearchPath_get(cu_SearchPath*, std::size_t index, cu_String* directory) {
  if (const auto result = call("get", std::to_string(index))) return result;
  directory->value = FakePlatform::instance().path.at(index);
  return CU_OK;
}
std::uint32_t cu_SearchPath_prepend(cu_SearchPath*, const char* directory) {
  if (const auto result = call("prepend", directory)) return result;
  auto& path = FakePlatform::instance().path;
  path.insert(path.begin(), directory);
  return CU_OK;
}
std::uint32_t cu_SearchPath_remove(cu_SearchPath*, const char* directory, bool* removed) {
  if (const auto result = call("remove", directory)) return result;
  auto& path = FakePlatform::instance().path;
  const auto position = std::find(path.begin(), path.end(), directory);
  *removed = position != path.end();
  if (*removed) path.erase(position);
  return CU_OK;
}
cu_SearchPath* getConfigLocator() {
  return &searchPath;
}

std::uint32_t cu_Logger_log(std::uint32_t level, const char* message) {
  return call("log", std::to_string(level) + " " + message);
}
