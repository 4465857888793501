#include <locator/locator.h>
#include <sys/auxv.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr const char* currentDirectory = "";

struct DeleteSearchPath {
  void operator()(cu_SearchPath* path) const noexcept { cu_SearchPath_delete(&path); }
};
using SearchPathPtr = std::unique_ptr<cu_SearchPath, DeleteSearchPath>;

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
  const char* value = ::secure_getenv(name);
  return value == nullptr || *value == '\0' ? byDefault : value;
}

std::vector<std::string> initialDirectories() {
  if (const char* value = ::secure_getenv("ZU_CONFIG_PATH")) return split(value);

  const std::string home = nonEmptyVariable("HOME", "");
  std::vector<std::string> xdg = split(nonEmptyVariable("XDG_CONFIG_DIRS", "/etc/xdg"));
  // Without a home there is no default either: the empty text is dropped below.
  xdg.insert(xdg.begin(),
             nonEmptyVariable("XDG_CONFIG_HOME", home.empty() ? "" : home + "/.config"));

  std::vector<std::string> directories;
  if (::getauxval(AT_SECURE) == 0) directories.push_back(currentDirectory);
  for (std::string& directory : xdg) {
    if (directory[0] == '/') directories.push_back(std::move(directory));
  }
  directories.push_back("/etc");
  return directories;
}

SearchPathPtr makeInitialPath() {
  cu_SearchPath* handle = nullptr;
  if (cu_SearchPath_new(&handle) != CU_OK) throw std::bad_alloc();
  SearchPathPtr path(handle);
  for (const std::string& directory : initialDirectories()) {
    if (cu_SearchPath_append(handle, directory.c_str()) != CU_OK) throw std::bad_alloc();
  }
  return path;
}

// Constant-initialised and never destroyed: static destructors may still look up files. No lock, so
// that a child of fork finds none held.
std::atomic<cu_SearchPath*> processPath{nullptr};

}  // namespace

cu_SearchPath* getConfigLocator() {
  if (cu_SearchPath* path = processPath.load()) return path;
  try {
    SearchPathPtr made = makeInitialPath();
    cu_SearchPath* path = nullptr;
    // One that another thread has made meanwhile stays.
    return processPath.compare_exchange_strong(path, made.get()) ? made.release() : path;
  } catch (const std::bad_alloc&) {
    return cu_SearchPath_outOfMemory();
  }
}
