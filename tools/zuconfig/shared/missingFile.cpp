#include "shared/missingFile.hpp"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "cppUtil/fileName/getPath.hpp"
#include "service/util/locator/ConfigLocator.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::locator::ConfigLocator;

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

std::string notFound(const std::string& name) {
  return printable(name) + ": not found on the search path, which \"zuconfig path\" shows" +
         hintForMissing(name, "");
}

}  // namespace zuconfig
