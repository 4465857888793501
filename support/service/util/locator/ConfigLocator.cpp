#include "service/util/locator/ConfigLocator.hpp"

#include <cutil/cutil.h>
#include <locator/locator.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "cppUtil/err/platformCall.hpp"

namespace service::util::locator {

namespace {

using cppUtil::err::checkPlatformCall;

std::string getEntry(std::size_t index) {
  cu_String* text = nullptr;
  checkPlatformCall(cu_String_new(&text, 0));
  checkPlatformCall(cu_SearchPath_get(getConfigLocator(), index, text));
  std::string entry = cu_String_get(text);
  checkPlatformCall(cu_String_delete(&text));
  return entry;
}

// The absolute name that a look-up of name in directory arrives at; the empty one, which is never
// found, when the current directory is gone.
std::string join(const std::string& directory, const std::string& name) {
  const bool needsSlash = !directory.empty() && directory.back() != '/';
  std::string joined = directory + (needsSlash ? "/" : "") + name;
  if (joined.front() == '/') return joined;
  std::error_code ignored;
  const std::string current = std::filesystem::current_path(ignored);
  if (current.empty()) return "";
  return current + (current == "/" ? "" : "/") + joined;
}

}  // namespace

std::string ConfigLocator::find(const std::string& name) {
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
  std::vector<Match> matches;
  const auto add = [&](const std::string& directory, const std::string& file) {
    const auto isSameFile = [&](const Match& match) {
      std::error_code ignored;
      return match.file == file || std::filesystem::equivalent(match.file, file, ignored);
    };
    if (std::none_of(matches.begin(), matches.end(), isSameFile))
      matches.push_back({directory, file});
  };
  if (name.empty()) return matches;
  if (name.front() == '/') {
    if (const std::string file = find(name); !file.empty()) add("", file);
    return matches;
  }
  for (const std::string& directory : getEntries()) {
    // The platform judges what a match is; it looks at an absolute name by itself.
    if (const std::string file = find(join(directory, name)); !file.empty()) add(directory, file);
  }
  return matches;
}

std::vector<std::string> ConfigLocator::getEntries() {
  std::size_t count = 0;
  checkPlatformCall(cu_SearchPath_count(getConfigLocator(), &count));
  std::vector<std::string> entries;
  for (std::size_t index = 0; index < count; ++index) entries.push_back(getEntry(index));
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
