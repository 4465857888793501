#include "searchPath.hpp"

#include <algorithm>
#include <cstdlib>

#include "service/util/locator/ConfigLocator.hpp"
#include "text.hpp"

namespace zuconfig {

namespace {

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

std::vector<PathEntry> getSearchPath(std::size_t given) {
  const std::vector<PathEntry> expected = expectedEntries();
  const auto directories = service::util::locator::ConfigLocator::getEntries();
  std::vector<PathEntry> entries;
  for (std::size_t i = 0; i < directories.size(); ++i) {
    const bool isExpected = i >= given && i - given < expected.size() &&
                            expected[i - given].directory == directories[i];
    entries.push_back({directories[i], i < given    ? "-I"
                                       : isExpected ? expected[i - given].source
                                                    : "locator"});
  }
  return entries;
}

std::string shownDirectory(const std::string& directory) {
  return directory.empty() ? "the current directory" : printable(directory);
}

}  // namespace zuconfig
