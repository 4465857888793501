#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <string>

#include "Call.hpp"
#include "String.hpp"

namespace {

using cutil::Call;
using cutil::guarded;

constexpr const char* unit = "platform/cutil/SearchPath";

// Guards the entries of all paths: one mutex can be held during a fork, so that the child has paths
// that are whole and a mutex that is free. Constant-initialised and never destroyed.
std::mutex mutex;

[[maybe_unused]] const int forkHandlers =
    ::pthread_atfork([] { mutex.lock(); }, [] { mutex.unlock(); }, [] { mutex.unlock(); });

struct Entry {
  std::string directory;
  // How many prepends of an equal directory failed while this was the first such entry, and wait
  // for their remove. The count needs no memory at the moment when there is none.
  std::size_t failedPrepends;
};

using Entries = std::deque<Entry>;

Entries::iterator findEntry(Entries& entries, const char* directory) noexcept {
  return std::find_if(entries.begin(), entries.end(),
                      [&](const Entry& entry) { return entry.directory == directory; });
}

const char* separatorAfter(const std::string& directory) noexcept {
  return directory.empty() || directory.back() == '/' ? "" : "/";
}

std::string join(const std::string& directory, const char* name) {
  return directory + separatorAfter(directory) + name;
}

bool isReadableFile(const std::string& file) noexcept {
  struct stat status;
  return ::stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::faccessat(AT_FDCWD, file.c_str(), R_OK, AT_EACCESS) == 0;
}

// The empty name needs no case of its own: joined to a directory it names no regular file.
std::optional<std::string> search(const Entries& entries, const char* name) {
  if (name[0] == '/') {
    std::string file = name;
    return isReadableFile(file) ? std::optional(std::move(file)) : std::nullopt;
  }
  const std::size_t length = std::strlen(name);
  for (const Entry& entry : entries) {
    // The kernel opens no longer name. Files that include each other through ".." fill the path
    // with thousands of directories as long as that.
    if (entry.directory.size() + std::strlen(separatorAfter(entry.directory)) + length >= PATH_MAX)
      continue;
    std::string file = join(entry.directory, name);
    if (isReadableFile(file)) return file;
  }
  return std::nullopt;
}

// Nothing on failure, with errno set.
std::optional<std::string> currentDirectory() {
  char buffer[PATH_MAX];  // the kernel gives no longer name
  if (::getcwd(buffer, sizeof buffer) == nullptr) return std::nullopt;
  return buffer;
}

}  // namespace

struct cu_SearchPath {
  Entries entries;  // guarded by mutex
};

namespace {

// Stands for a path that could not be made.
alignas(cu_SearchPath) char noMemory;

std::uint32_t checkPath(const Call& call, const cu_SearchPath* path) {
  if (path == nullptr) return call.missing("path");
  if (path == cu_SearchPath_outOfMemory()) throw std::bad_alloc();
  return cutil::success;
}

}  // namespace

cu_SearchPath* cu_SearchPath_outOfMemory() {
  return reinterpret_cast<cu_SearchPath*>(&noMemory);
}

uint32_t cu_SearchPath_new(cu_SearchPath** path) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (path == nullptr) return call.missing("path");
    *path = new cu_SearchPath;
    return cutil::success;
  });
}

uint32_t cu_SearchPath_copy(cu_SearchPath* path, cu_SearchPath** copy) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (const auto code = checkPath(call, path)) return code;
    if (copy == nullptr) return call.missing("copy");
    auto created = std::make_unique<cu_SearchPath>();
    {
      const std::lock_guard lock(mutex);
      created->entries = path->entries;
    }
    for (Entry& entry : created->entries) entry.failedPrepends = 0;  // nobody's, on this one
    *copy = created.release();
    return cutil::success;
  });
}

uint32_t cu_SearchPath_delete(cu_SearchPath** path) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (path == nullptr) return call.missing("path");
    if (*path == nullptr) return call.missing("*path");
    checkPath(call, *path);
    delete *path;
    *path = nullptr;
    return cutil::success;
  });
}

uint32_t cu_SearchPath_find(cu_SearchPath* path, const char* name, bool* found, cu_String* file) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (const auto code = checkPath(call, path)) return code;
    if (name == nullptr) return call.missing("name");
    if (found == nullptr) return call.missing("found");
    if (file == nullptr) return call.missing("file");

    const std::lock_guard lock(mutex);
    std::optional<std::string> match = search(path->entries, name);
    if (match && match->front() != '/') {
      const auto directory = currentDirectory();
      if (!directory) {
        const int systemError = errno;
        const std::string description =
            "Argument \"name\" was found as \"" + *match +
            "\", but the current directory has no name to make that absolute!";
        return call.fail(CU_SYSTEM_FAILURE, description.c_str(), systemError);
      }
      match = join(*directory, match->c_str());
    }
    if (match) file->value = std::move(*match);
    *found = match.has_value();
    return cutil::success;
  });
}

uint32_t cu_SearchPath_prepend(cu_SearchPath* path, const char* directory) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (const auto code = checkPath(call, path)) return code;
    if (directory == nullptr) return call.missing("directory");

    const std::lock_guard lock(mutex);
    try {
      path->entries.push_front({directory, 0});
    } catch (...) {
      const auto entry = findEntry(path->entries, directory);
      if (entry != path->entries.end()) ++entry->failedPrepends;
      throw;
    }
    return cutil::success;
  });
}

uint32_t cu_SearchPath_append(cu_SearchPath* path, const char* directory) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (const auto code = checkPath(call, path)) return code;
    if (directory == nullptr) return call.missing("directory");

    const std::lock_guard lock(mutex);
    path->entries.push_back({directory, 0});
    return cutil::success;
  });
}

uint32_t cu_SearchPath_remove(cu_SearchPath* path, const char* directory, bool* removed) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (const auto code = checkPath(call, path)) return code;
    if (directory == nullptr) return call.missing("directory");
    if (removed == nullptr) return call.missing("removed");

    const std::lock_guard lock(mutex);
    const auto entry = findEntry(path->entries, directory);
    *removed = entry != path->entries.end() && entry->failedPrepends == 0;
    if (*removed) {
      path->entries.erase(entry);
    } else if (entry != path->entries.end()) {
      --entry->failedPrepends;
    }
    return cutil::success;
  });
}

uint32_t cu_SearchPath_clear(cu_SearchPath* path) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (const auto code = checkPath(call, path)) return code;
    const std::lock_guard lock(mutex);
    path->entries.clear();
    return cutil::success;
  });
}

uint32_t cu_SearchPath_count(cu_SearchPath* path, size_t* count) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (const auto code = checkPath(call, path)) return code;
    if (count == nullptr) return call.missing("count");
    const std::lock_guard lock(mutex);
    *count = path->entries.size();
    return cutil::success;
  });
}

uint32_t cu_SearchPath_get(cu_SearchPath* path, size_t index, cu_String* directory) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (const auto code = checkPath(call, path)) return code;
    if (directory == nullptr) return call.missing("directory");
    const std::lock_guard lock(mutex);
    if (index >= path->entries.size()) return call.invalid("index", index, "below the count");
    directory->value = path->entries[index].directory;
    return cutil::success;
  });
}
