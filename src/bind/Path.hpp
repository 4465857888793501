// The way to one setting: a selector that may also name a property of the configuration itself and
// may have names in quotes, as JSON writes them.
#ifndef SRC_BIND_PATH_HPP
#define SRC_BIND_PATH_HPP

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace service::util::config::bind::internal {

struct PathPart {
  std::string name;
  std::optional<std::uint32_t> index;  // as written
};

using Path = std::vector<PathPart>;  // not empty; the last is the setting

// Throws INVALID_SELECT, with the fault and its place in text.
Path parsePath(const std::string& text);

// path extended by name; with index when there is more than one of it.
std::string extended(const std::string& path, const std::string& name);
std::string extended(const std::string& path, const std::string& name, std::uint32_t index,
                     std::uint32_t count);

}  // namespace service::util::config::bind::internal

#endif
