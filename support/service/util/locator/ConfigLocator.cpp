#include "service/util/locator/ConfigLocator.hpp"

#include <cutil/cutil.h>
#include <locator/locator.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_set>

#include "cppUtil/err/platformCall.hpp"

namespace service::util::locator {

namespace {

using cppUtil::err::checkPlatformCall;

// The absolute name that a look-up of name in directory arrives at; the empty one, which is never
// found, when the current directory is gone.
std::string join(const std::string& directory, const std::string& name) {
  const bool needsSlash = !directory.empty() && directory.back() != '/';
  std::string joined = directory + (needsSlash ? "/" : "") + name;
  if (!joined.empty() && joined.front() == '/') return joined;
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
  const auto look = [&](const std::string& directory, const std::string& absoluteName) {
    const std::string file = find(absoluteName);
    const auto isSame = [&](const Match& match) {
      std::error_code ignored;
      return std::filesystem::equivalent(match.file, file, ignored);
    };
    if (file.empty() || std::any_of(matches.begin(), matches.end(), isSame)) return;
    matches.push_back({directory, file});
  };
  if (name.empty()) return matches;
  if (name.front() == '/') {
    look("", name);
    return matches;
  }
  std::unordered_set<std::string> seen;  // nested files put the same directories on the path often
  for (const std::string& directory : getEntries()) {
    // The platform judges what a match is; it looks at an absolute name by itself.
    if (seen.insert(directory).second) look(directory, join(directory, name));
  }
  return matches;
}

std::vector<std::string> ConfigLocator::getEntries() {
  std::size_t count = 0;
  checkPlatformCall(cu_SearchPath_count(getConfigLocator(), &count));
  std::vector<std::string> entries;
  cu_String* text = nullptr;
  checkPlatformCall(cu_String_new(&text, 0));
  for (std::size_t index = 0; index < count; ++index) {
    checkPlatformCall(cu_SearchPath_get(getConfigLocator(), index, text));
    entries.emplace_back(cu_String_get(text));
  }
  checkPlatformCall(cu_String_delete(&text));
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
