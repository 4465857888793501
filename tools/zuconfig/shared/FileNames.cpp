#include "shared/FileNames.hpp"

#include <unistd.h>

#include <climits>
#include <filesystem>

#include "shared/text.hpp"

namespace zuconfig {

namespace {

constexpr const char* standardInputName = "<stdin>";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string currentDirectoryName() {
  char buffer[PATH_MAX];
  if (::getcwd(buffer, sizeof buffer) == nullptr) return "";
  return std::string(buffer) == "/" ? "/" : std::string(buffer) + "/";
}

}  // namespace

std::string normalised(const std::string& path) {
  if (path.find("/.") == path.npos) return path;
  std::string normal = std::filesystem::path(path).lexically_normal().string();
  if (normal.size() > 1 && normal.back() == '/') normal.pop_back();  // what "/." leaves
  std::error_code error;
  return std::filesystem::equivalent(path, normal, error) ? normal : path;
}

FileNames::FileNames() : currentDirectory(currentDirectoryName()) {}

std::string FileNames::nameOf(const std::string& path) const {
  if (!standardInput.empty() && path == standardInput) return standardInputName;
  const std::string normal = normalised(path);
  if (normal + "/" == currentDirectory) return ".";
  const bool isBelow = currentDirectory.size() > 1 && startsWith(normal, currentDirectory.c_str());
  return isBelow ? normal.substr(currentDirectory.size()) : normal;
}

std::string FileNames::shown(const std::string& path) const {
  return printable(nameOf(path));
}

std::string FileNames::shown(const Location& location) const {
  std::string text = shown(location.file);
  if (location.line > 0) {
    text += ":" + std::to_string(location.line) + ":" + std::to_string(location.column);
  }
  return text;
}

std::string FileNames::shown(const Origins::Origin& origin) const {
  if (origin.file == nullptr) return "unknown";
  return shown(Location{origin.file->path, origin.line, origin.column});
}

std::string FileNames::shownText(const std::string& text) const {
  if (standardInput.empty()) return text;
  std::error_code unknown;
  const auto directory =
      std::filesystem::canonical(standardInput.substr(0, standardInput.rfind('/')), unknown);
  return replaced(replaced(text, standardInput, standardInputName), directory.string() + ", ", "");
}

std::string FileNames::shortened(const std::string& text) const {
  return currentDirectory.size() > 1 ? replaced(text, currentDirectory, "") : text;
}

std::string shownArgument(const std::string& file) {
  return file == "-" ? standardInputName : printable(file);
}

}  // namespace zuconfig
