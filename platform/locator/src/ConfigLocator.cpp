#include <locator/locator.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr const char* currentDirectory = "";

struct DeleteSearchPath {
  void operator()(cu_SearchPath* path) const noexcept { cu_SearchPath_delete(&path); }
};

std::vector<std::string> split(std::string_view text) {
  std::vector<std::string> parts;
  for (;;) {
    const std::size_t colon = text.find(':');
    parts.emplace_back(text.substr(0, colon));
    if (colon == std::string_view::npos) return parts;
    text.remove_prefix(colon + 1);
  }
}

std::string nonEmptyVariable(const char* name, const std::string& byDefault) {
  const char* value = std::getenv(name);
  return value == nullptr || *value == '\0' ? byDefault : value;
}

std::vector<std::string> initialDirectories() {
  if (const char* value = std::getenv("ZU_CONFIG_PATH")) return split(value);

  const std::string home = nonEmptyVariable("HOME", "");
  std::vector<std::string> xdg = split(nonEmptyVariable("XDG_CONFIG_DIRS", "/etc/xdg"));
  // Without a home there is no default either: the empty text is dropped below.
  xdg.insert(xdg.begin(),
             nonEmptyVariable("XDG_CONFIG_HOME", home.empty() ? "" : home + "/.config"));

  std::vector<std::string> directories = {currentDirectory};
  for (std::string& directory : xdg) {
    if (directory[0] == '/') directories.push_back(std::move(directory));
  }
  directories.push_back("/etc");
  return directories;
}

// Null when there is no memory.
cu_SearchPath* makeInitialPath() {
  cu_SearchPath* handle = nullptr;
  if (cu_SearchPath_new(&handle) != CU_OK) return nullptr;
  std::unique_ptr<cu_SearchPath, DeleteSearchPath> path(handle);
  for (const std::string& directory : initialDirectories()) {
    if (cu_SearchPath_append(handle, directory.c_str()) != CU_OK) return nullptr;
  }
  return path.release();
}

// Both are constant-initialised and never destroyed: static destructors may still look up files.
std::mutex mutex;
cu_SearchPath* processPath = nullptr;  // guarded by mutex

}  // namespace

cu_SearchPath* getConfigLocator() {
  try {
    const std::lock_guard lock(mutex);
    if (processPath == nullptr) processPath = makeInitialPath();
    return processPath;
  } catch (...) {
    return nullptr;
  }
}
