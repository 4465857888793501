#include "service/util/locator/ConfigLocator.hpp"

#include <cutil/cutil.h>
#include <locator/locator.h>

#include <memory>

#include "cppUtil/err/platformCall.hpp"
#include "service/util/locator/SearchOrder.hpp"

// Platform libraries need not have these, which are null then.
#pragma weak cu_SearchPath_copy
#pragma weak cu_SearchPath_count
#pragma weak cu_SearchPath_get
#pragma weak cu_SearchPath_delete

namespace service::util::locator {

namespace {

using cppUtil::err::checkPlatformCall;

struct Delete {
  void operator()(cu_String* text) const noexcept { cu_String_delete(&text); }
  void operator()(cu_SearchPath* path) const noexcept { cu_SearchPath_delete(&path); }
};

std::unique_ptr<cu_SearchPath, Delete> copyOfSearchPath() {
  cu_SearchPath* copy = nullptr;
  checkPlatformCall(cu_SearchPath_copy(getConfigLocator(), &copy));
  return std::unique_ptr<cu_SearchPath, Delete>(copy);
}

std::unique_ptr<cu_String, Delete> makeText() {
  cu_String* text = nullptr;
  checkPlatformCall(cu_String_new(&text, 0));
  return std::unique_ptr<cu_String, Delete>(text);
}

}  // namespace

std::string ConfigLocator::find(const std::string& name) {
  // No file has such a name; the platform would look for what stands before the NUL.
  if (name.find('\0') != std::string::npos) return "";
  cu_String* text = nullptr;
  checkPlatformCall(cu_String_new(&text, 0));
  bool found = false;
  // When the search fails the text object is left as it is: its state is the platform's to judge.
  checkPlatformCall(cu_SearchPath_find(getConfigLocator(), name.c_str(), &found, text));
  std::string file;
  if (found) file = cu_String_get(text);
  checkPlatformCall(cu_String_delete(&text));
  return file;
}

std::vector<ConfigLocator::Match> ConfigLocator::findAll(const std::string& name) {
  return SearchOrder().findAll(name);
}

bool ConfigLocator::tellsEntries() noexcept {
  return cu_SearchPath_copy != nullptr && cu_SearchPath_count != nullptr &&
         cu_SearchPath_get != nullptr && cu_SearchPath_delete != nullptr;
}

std::vector<std::string> ConfigLocator::getEntries() {
  std::vector<std::string> entries;
  if (!tellsEntries()) return entries;
  const auto path = copyOfSearchPath();
  const auto text = makeText();
  std::size_t count = 0;
  checkPlatformCall(cu_SearchPath_count(path.get(), &count));
  for (std::size_t index = 0; index < count; ++index) {
    checkPlatformCall(cu_SearchPath_get(path.get(), index, text.get()));
    entries.emplace_back(cu_String_get(text.get()));
  }
  return entries;
}

void ConfigLocator::prepend(const std::string& directory) {
  checkPlatformCall(cu_SearchPath_prepend(getConfigLocator(), directory.c_str()));
}

bool ConfigLocator::remove(const std::string& directory) {
  bool removed = false;
  checkPlatformCall(cu_SearchPath_remove(getConfigLocator(), directory.c_str(), &removed));
  return removed;
}

}  // namespace service::util::locator
