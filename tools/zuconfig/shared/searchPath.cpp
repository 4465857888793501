#include "shared/searchPath.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "service/util/locator/ConfigLocator.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::locator::ConfigLocator;

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

void addAll(std::vector<PathEntry>& entries, const std::string& directories, const char* source,
            bool isAbsoluteOnly) {
  for (std::size_t start = 0; start <= directories.size();) {
    const std::size_t end = std::min(directories.find(':', start), directories.size());
    const std::string directory = directories.substr(start, end - start);
    if (!isAbsoluteOnly || directory[0] == '/') entries.push_back({directory, source});
    start = end + 1;
  }
}

// What the locator library starts with in this environment.
std::vector<PathEntry> expectedEntries() {
  std::vector<PathEntry> entries;
  if (std::getenv("ZU_CONFIG_PATH") != nullptr) {
    addAll(entries, variable("ZU_CONFIG_PATH"), "ZU_CONFIG_PATH", false);
    return entries;
  }
  entries.push_back({"", "default"});
  if (const std::string home = variable("XDG_CONFIG_HOME"); !home.empty()) {
    if (home[0] == '/') entries.push_back({home, "XDG_CONFIG_HOME"});
  } else if (variable("HOME")[0] == '/') {
    entries.push_back({variable("HOME") + "/.config", "default, from HOME"});
  }
  if (const std::string shared = variable("XDG_CONFIG_DIRS"); !shared.empty()) {
    addAll(entries, shared, "XDG_CONFIG_DIRS", true);
  } else {
    entries.push_back({"/etc/xdg", "default"});
  }
  entries.push_back({"/etc", "default"});
  return entries;
}

}  // namespace

std::vector<PathEntry> getSearchPath(const std::vector<PathEntry>& prepended) {
  std::vector<PathEntry> expected = prepended;
  const std::vector<PathEntry> initial = expectedEntries();
  expected.insert(expected.end(), initial.begin(), initial.end());
  std::vector<PathEntry> entries;
  for (const std::string& directory : ConfigLocator::getEntries()) {
    const std::size_t i = entries.size();
    const bool isExpected = i < expected.size() && expected[i].directory == directory;
    entries.push_back({directory, isExpected ? expected[i].source : "locator"});
  }
  return entries;
}

std::string whyNoDirectory(const std::string& directory) {
  std::error_code unknown;
  const auto status = std::filesystem::status(directory.empty() ? "." : directory, unknown);
  if (std::filesystem::is_directory(status)) return "";
  return std::filesystem::exists(status) ? "not a directory" : "no such directory";
}

std::string shownDirectory(const std::string& directory) {
  return directory.empty() ? "the current directory" : printable(directory);
}

}  // namespace zuconfig
