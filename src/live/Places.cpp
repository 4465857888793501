#include "live/Places.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <ctime>
#include <deque>
#include <filesystem>
#include <system_error>

namespace service::util::config::live {

namespace {

constexpr int mostLinks = 40;  // as the kernel follows

std::string join(const std::string& directory, const std::string& name) {
  return directory == "/" ? "/" + name : directory + "/" + name;
}

// Puts the parts of path in front of rest, and answers whether it starts at the root.
bool prepend(const std::string& path, std::deque<std::string>& rest) {
  std::size_t end = path.size();
  while (end > 0) {
    const std::size_t slash = path.rfind('/', end - 1);
    const std::size_t start = slash == path.npos ? 0 : slash + 1;
    if (end > start) rest.push_front(path.substr(start, end - start));
    if (slash == path.npos) break;
    end = slash;
  }
  return path[0] == '/';
}

std::string targetOf(const std::string& link) {
  std::array<char, PATH_MAX> target{};
  const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
  return length <= 0 ? "" : std::string(target.data(), static_cast<std::size_t>(length));
}

bool isEqual(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// Whether time is as good as now. A clock that was set back leaves times in the future, which say
// nothing.
bool isNow(const timespec& time) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  const auto age = std::chrono::seconds(now.tv_sec - time.tv_sec) +
                   std::chrono::nanoseconds(now.tv_nsec - time.tv_nsec);
  return age < Places::newness && age > -Places::newness;
}

}  // namespace

Identity Identity::of(const std::string& path) {
  struct stat status;
  if (::lstat(path.c_str(), &status) != 0) return {};
  if (S_ISDIR(status.st_mode)) return {status.st_mode, status.st_dev, status.st_ino};
  return {status.st_mode, status.st_dev,  status.st_ino,
          status.st_size, status.st_mtim, status.st_ctim};
}

bool Identity::operator==(const Identity& other) const {
  return mode == other.mode && device == other.device && inode == other.inode &&
         size == other.size && isEqual(modified, other.modified) && isEqual(changed, other.changed);
}

bool Places::add(const std::string& path) {
  if (path.empty() || path.find('\0') != path.npos) return false;
  std::deque<std::string> rest;
  std::string at = "/";
  std::error_code error;
  if (!prepend(path, rest)) prepend(std::filesystem::current_path(error).string(), rest);
  for (int links = 0; !rest.empty();) {
    const std::string name = rest.front();
    rest.pop_front();
    if (name == ".") continue;
    if (name == "..") {
      at.resize(std::max<std::size_t>(at.rfind('/'), 1));
      continue;
    }
    const mode_t mode = note(at, name).mode;
    const std::string here = join(at, name);
    if (S_ISLNK(mode) && ++links <= mostLinks) {
      if (prepend(targetOf(here), rest)) at = "/";
    } else if (S_ISDIR(mode)) {
      at = here;
    } else {
      return rest.empty() && S_ISREG(mode) &&
             ::faccessat(AT_FDCWD, here.c_str(), R_OK, AT_EACCESS) == 0;
    }
  }
  return false;
}

const Identity& Places::note(const std::string& directory, const std::string& name) {
  const std::string path = join(directory, name);
  const auto [place, isFirst] = identities.try_emplace(path);
  if (!isFirst) return place->second;
  place->second = Identity::of(path);
  const mode_t mode = place->second.mode;
  Directory& holder = directories[directory];
  holder.names.insert(name);
  holder.hasFiles |= !S_ISDIR(mode) && !S_ISLNK(mode);
  if (mode != 0 && !S_ISDIR(mode)) {
    isNew |= isNow(place->second.modified) || isNow(place->second.changed);
  }
  return place->second;
}

std::vector<Identity> Places::look() const {
  std::vector<Identity> now;
  now.reserve(identities.size());
  for (const auto& place : identities) now.push_back(Identity::of(place.first));
  return now;
}

std::vector<Identity> Places::noted() const {
  std::vector<Identity> then;
  then.reserve(identities.size());
  for (const auto& place : identities) then.push_back(place.second);
  return then;
}

}  // namespace service::util::config::live
