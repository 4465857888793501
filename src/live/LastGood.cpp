#include "live/LastGood.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

#include "bind/Path.hpp"
#include "service/util/config/internal/Config.hpp"
#include "write/writeXml.hpp"

namespace service::util::config::live {

namespace {

// Made if need be.
IConfigPtr sectionAt(IConfigPtr config, const bind::internal::Path& path) {
  for (const auto& [name, index] : path) {
    while (config->getSectionCount(name) <= index.value_or(0)) config->addSection(name);
    config = config->getSection(name, index.value_or(0));
  }
  return config;
}

// What the files gave, as the program counts.
void fill(const IConfigPtr& config, const bind::internal::Survey& survey) {
  for (const auto& entry : survey.entries) {
    bind::internal::Path path = bind::internal::parsePath(entry.path);
    const std::string name = path.back().name;
    if (entry.isSetting) path.pop_back();
    for (const auto& given : entry.inForce) {
      if (given.part == nullptr) continue;
      const IConfigPtr part = sectionAt(config, path);
      if (entry.isSetting) part->addProperty(name, given.text);
    }
  }
}

std::string documentOf(const Reading& reading) {
  IConfigPtr config = reading.config;
  if (reading.object != reading.config) {
    config = std::make_shared<config::internal::Config>();
    fill(config, reading.survey);
  }
  std::ostringstream document;
  write::writeXml(document, config, "last good");
  return document.str();
}

bool holds(const std::string& path, const std::string& content) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  std::ifstream file(path, std::ios::binary);
  return file.good() && std::string(std::istreambuf_iterator<char>(file), {}) == content;
}

[[noreturn]] void fail(const std::string& path) {
  throw std::system_error(errno, std::generic_category(), path);
}

// A file that is gone with the object unless it was given its name; nobody else may read it.
class NewFile {
 public:
  explicit NewFile(const std::string& path)
      : name(path + ".XXXXXX"), number(::mkostemp(name.data(), O_CLOEXEC)) {
    if (number < 0) fail(path);
  }
  ~NewFile() {
    ::close(number);
    if (!name.empty()) ::unlink(name.c_str());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void write(const std::string& content) const {
    for (std::size_t at = 0; at < content.size();) {
      const ssize_t count = ::write(number, content.data() + at, content.size() - at);
      if (count < 0 && errno != EINTR) fail(name);
      if (count > 0) at += static_cast<std::size_t>(count);
    }
    if (::fsync(number) != 0) fail(name);
  }

  void rename(const std::string& path) {
    if (::rename(name.c_str(), path.c_str()) != 0) fail(path);
    name.clear();
  }

 private:
  std::string name;
  const int number;
};

}  // namespace

LastGood::LastGood(const std::string& path)
    : path(path.empty() ? "" : std::filesystem::absolute(path).string()) {}

void LastGood::store(const Reading& reading) const {
  if (path.empty()) return;
  const std::string document = documentOf(reading);
  if (holds(path, document)) return;
  NewFile file(path);
  file.write(document);
  file.rename(path);
}

}  // namespace service::util::config::live
