#include "shared/Programs.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "cppUtil/err/Exception.hpp"
#include "shared/Failure.hpp"
#include "shared/Pattern.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using cppUtil::err::Exception;
using service::util::config::bind::internal::describedBy;
using service::util::config::bind::internal::Kind;

std::string variableOr(const char* name, const std::string& byDefault) {
  const char* value = std::getenv(name);
  return value == nullptr || *value == '\0' ? byDefault : value;
}

// Where programs leave the descriptions of their settings, the foremost first.
std::vector<std::string> descriptionDirectories() {
  std::vector<std::string> directories;
  const auto add = [&](const std::string& directory) {
    if (directory[0] != '/') return;  // relative ones are not valid
    const std::string full =
        std::filesystem::path(directory + "/zu/settings").lexically_normal().string();
    if (std::find(directories.begin(), directories.end(), full) == directories.end()) {
      directories.push_back(full);
    }
  };
  add(variableOr("XDG_DATA_HOME", variableOr("HOME", "") + "/.local/share"));
  const std::string shared = variableOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
  for (std::size_t start = 0; start <= shared.size();) {
    const std::size_t end = std::min(shared.find(':', start), shared.size());
    add(shared.substr(start, end - start));
    start = end + 1;
  }
  std::error_code error;
  const auto command = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) add((command.parent_path().parent_path() / "share").string());
  return directories;
}

std::vector<std::string> namesIn(const std::vector<std::string>& directories) {
  std::vector<std::string> names;
  std::error_code error;
  for (const std::string& directory : directories) {
    for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
      if (entry.path().extension() == ".xml") names.push_back(entry.path().stem().string());
    }
  }
  return names;
}

// The file that describes the settings of program.
std::string fileOf(const std::string& program) {
  const std::filesystem::path path = program;
  if (program.find('/') != program.npos || path.extension() == ".xml") return program;
  const auto directories = descriptionDirectories();
  std::string places;
  for (const std::string& directory : directories) {
    std::string file = std::filesystem::path(directory) / (program + ".xml");
    std::error_code error;
    if (std::filesystem::exists(file, error)) return file;
    places += (places.empty() ? "" : ", ") + directory;
  }
  throw Failure(NOT_LOADED, "--for " + program + ": there is no " + program + ".xml in " + places +
                                didYouMean(nearest(program, namesIn(directories))));
}

Settings loaded(const std::string& program) {
  const std::string file = fileOf(program);
  try {
    return Settings::load(file);
  } catch (const Exception& e) {
    const std::string& message = e.getMessage();
    throw Failure(NOT_LOADED, "--for " + program + ": " + file + " describes no settings: " +
                                  std::string(e.what()) + (message.empty() ? "" : ": " + message));
  }
}

}  // namespace

bool isSecret(const Described& described) {
  return described.type == Kind::SECRET;
}

std::string lastName(const std::string& path) {
  return Pattern(path, Wanted::PROPERTIES).parts.back().name;
}

Programs::Programs(const ProgramOptions& options) {
  for (const std::string& program : options.programs) {
    programs.push_back({std::filesystem::path(program).stem().string(), loaded(program)});
  }
  for (const std::string& assignment : options.assignments) {
    try {
      overrides.add(assignment);
    } catch (const Exception& e) {
      throw Failure(USAGE, "--set " + assignment + ": " + e.getMessage());
    }
  }
  if (options.showSecrets) return;
  for (const Program& program : programs) {
    for (const Described& described : describedBy(program.settings).settings) {
      if (!isSecret(described)) continue;
      secrets.push_back(lastName(described.path));
      secrets.insert(secrets.end(), described.formerNames.begin(), described.formerNames.end());
    }
  }
}

std::string Programs::names() const {
  std::string names;
  for (const Program& program : programs) {
    const bool isLast = &program == &programs.back();
    names += (names.empty() ? "" : isLast ? " and " : ", ") + printable(program.name);
  }
  return names;
}

Judgement Programs::judge(const IConfigPtr& config, const Origins& origins) const {
  std::vector<Settings> settings;
  for (const Program& program : programs) settings.push_back(program.settings);
  Judgement judgement;
  judgement.isFine = service::util::config::bind::internal::judge(
      settings, config, origins, overrides, {}, judgement.problems, judgement.surveys);
  return judgement;
}

std::string Programs::leftToThem() const {
  std::string left;
  for (const Program& program : programs) {
    const auto& exported = describedBy(program.settings);
    bool hasChecks = exported.hasChecks;
    std::string texts;
    for (const Described& described : exported.settings) {
      hasChecks = hasChecks || described.hasChecks;
      if (described.type == Kind::CUSTOM) texts += (texts.empty() ? "" : ", ") + described.path;
    }
    std::string all = hasChecks ? "checks across settings" : "";
    if (!texts.empty()) all.append(all.empty() ? "" : "; ").append("the texts of ").append(texts);
    if (!all.empty()) left += (left.empty() ? "left to " : "; to ") + program.name + ": " + all;
  }
  return left;
}

}  // namespace zuconfig
