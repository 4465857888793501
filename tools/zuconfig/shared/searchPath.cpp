#include "shared/searchPath.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "cppUtil/fileName/getPath.hpp"
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

// How many entries of directories are still looked at: without a bound, many missing files beside
// as many others would take their product.
std::size_t entriesLeft = 100000;

// Calls see for each entry of directory; none when it cannot be read.
template <class See>
void forEachEntry(const std::string& directory, const See& see) {
  if (entriesLeft == 0) return;
  --entriesLeft;
  std::error_code error;
  std::filesystem::directory_iterator entry(directory.empty() ? "." : directory, error);
  const std::filesystem::directory_iterator end;
  for (; !error && entry != end && entriesLeft > 0; entry.increment(error), --entriesLeft) {
    see(*entry);
  }
}

// The regular files in directory, each with prefix before its name.
void addFiles(std::vector<std::string>& files, const std::string& directory,
              const std::string& prefix) {
  forEachEntry(directory, [&](const std::filesystem::directory_entry& entry) {
    std::error_code unknown;
    if (entry.is_regular_file(unknown)) files.push_back(prefix + entry.path().filename().string());
  });
}

// The file called name in the directories below directory, one level down.
void addFilesBelow(std::vector<std::string>& files, const std::string& directory,
                   const std::string& name) {
  forEachEntry(directory, [&](const std::filesystem::directory_entry& entry) {
    std::error_code unknown;
    if (std::filesystem::is_regular_file(entry.path() / name, unknown)) {
      files.push_back((entry.path().filename() / name).string());
    }
  });
}

// Why path, which is there, is not found. Empty when it is not there.
std::string whyUnusable(const std::string& path) {
  std::error_code unknown;
  const auto status = std::filesystem::status(path, unknown);
  if (!std::filesystem::exists(status)) return "";
  const char* reason = std::filesystem::is_directory(status)      ? " is a directory"
                       : std::filesystem::is_regular_file(status) ? " cannot be read"
                                                                  : " is not a regular file";
  return "; " + printable(path) + reason;
}

// The files in the directories that may have been meant by name.
std::vector<std::string> nearFiles(std::string name, const std::string& includer,
                                   std::vector<std::string> directories) {
  std::replace(name.begin(), name.end(), '\\', '/');
  const std::string prefix = name.substr(0, name.rfind('/') + 1);
  std::vector<std::string> files;
  if (!includer.empty() && prefix[0] != '/') {
    addFilesBelow(files, directories.front(), name);
    if (!files.empty()) return files;
  }
  for (const std::string& directory : directories) addFiles(files, directory + prefix, prefix);
  if (entriesLeft == 0) return {};  // not all were seen
  std::sort(files.begin(), files.end());
  files.erase(std::unique(files.begin(), files.end()), files.end());
  // Directories and endings are the same too often to say much.
  const std::size_t ending = std::min(name.rfind('.'), name.size());
  return nearest(name, files, ending > prefix.size() ? ending - prefix.size() : name.size());
}

}  // namespace

std::string hintForMissing(const std::string& name, const std::string& includer) {
  std::vector<std::string> directories = ConfigLocator::getEntries();
  if (!includer.empty()) {
    directories.insert(directories.begin(), cppUtil::fileName::getPath(includer));
  }
  for (std::string& directory : directories) {
    if (!directory.empty()) directory += '/';
  }
  if (name[0] == '/') directories = {""};
  for (const std::string& directory : directories) {
    std::string reason = whyUnusable(directory + name);
    if (!name.empty() && !reason.empty()) return reason;
  }
  return didYouMean(nearFiles(name, includer, directories));
}

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
