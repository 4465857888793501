#include "service/util/config/visit.hpp"

#include <cutil/cutil.h>

#include <algorithm>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/Character.hpp"
#include "cppUtil/internal/text.hpp"
#include "service/util/config/internal/Config.hpp"

namespace service::util::config {

namespace {

using cppUtil::internal::Character;
using cppUtil::internal::isAlphanumeric;
using cppUtil::internal::isSafe;
using cppUtil::internal::unicodeEscape;
using internal::Config;

const Config& configOf(const IConfigPtr& config, const char* function) {
  const auto failure = [&](cu_GenericCode code, int line, const char* message) {
    return cppUtil::err::Exception(code, 0, "src/visit", function, line, message);
  };
  if (config == nullptr) {
    throw failure(CU_MISSING_ARGUMENT, __LINE__, "Configuration is missing!");
  }
  if (const auto* own = dynamic_cast<const Config*>(config.get())) return *own;
  throw failure(CU_INVALID_ARGUMENT, __LINE__, "Configuration does not tell its names!");
}

constexpr const char* visitSignature =
    "void service::util::config::visit(const IConfigPtr&, Visitor&)";

// A section that is being visited, and how far the visit has come in it.
struct Level {
  explicit Level(IConfigPtr section)
      : section(std::move(section)),
        names(configOf(this->section, visitSignature).getSectionNames()) {}

  IConfigPtr section;
  std::vector<std::string> names;  // of the sections below
  std::size_t name = 0;            // the one that the visit is at
  std::uint32_t index = 0;
  std::uint32_t count = 0;  // of that name, known from index 0 on
  std::size_t pathEnd = 0;  // where the path to this section ends
  bool selectable = true;   // all names of that path
};

// Appends name and, where it is needed, the index.
void extend(std::string& path, const std::string& name, std::uint32_t index, std::uint32_t count) {
  if (!path.empty()) path += '.';
  path += spellName(name);
  if (count > 1) path += "[" + std::to_string(index) + "]";
}

class Visit {
 public:
  explicit Visit(Visitor& visitor) : visitor(visitor) {}

  void run(const IConfigPtr& config) {
    enter(config, true);
    while (!levels.empty()) {
      Level& level = levels.back();
      if (level.name < level.names.size()) {
        visitSection(level);
      } else {
        leave();
      }
    }
  }

 private:
  void enter(const IConfigPtr& section, bool selectable) {
    Level level(section);
    level.pathEnd = path.size();
    level.selectable = selectable;
    visitProperties(level);
    levels.push_back(std::move(level));
  }

  void visitProperties(const Level& level) {
    std::string value;
    for (const std::string& name : getPropertyNames(level.section)) {
      const std::uint32_t count = level.section->getPropertyCount(name);
      const bool selectable = level.selectable && !path.empty() && isSelectable(name);
      for (std::uint32_t index = 0; index < count; ++index) {
        level.section->getProperty(name, value, index);
        extend(path, name, index, count);
        visitor.property({level.section, name, index, count, path, selectable}, value);
        path.resize(level.pathEnd);
      }
    }
  }

  // Enters the section that level is at.
  void visitSection(Level& level) {
    const std::string& name = level.names[level.name];
    if (level.index == 0) level.count = level.section->getSectionCount(name);
    extend(path, name, level.index, level.count);
    const Visited visited = visitedAt(level);
    const IConfigPtr section = level.section->getSection(name, level.index);
    if (visitor.enterSection(visited, section)) {
      enter(section, visited.selectable);
    } else {
      advance(level);
    }
  }

  void leave() {
    const IConfigPtr section = std::move(levels.back().section);
    levels.pop_back();
    if (levels.empty()) return;
    Level& parent = levels.back();
    visitor.leaveSection(visitedAt(parent), section);
    advance(parent);
  }

  // The section that level is at, with path leading there.
  Visited visitedAt(const Level& level) const {
    const std::string& name = level.names[level.name];
    return {level.section, name, level.index,
            level.count,   path, level.selectable && isSelectable(name)};
  }

  void advance(Level& level) {
    path.resize(level.pathEnd);
    if (++level.index < level.count) return;
    level.index = 0;
    ++level.name;
  }

  Visitor& visitor;
  std::vector<Level> levels;  // outermost first
  std::string path;
};

}  // namespace

Visitor::~Visitor() = default;

void Visitor::property(const Visited& /*visited*/, const std::string& /*value*/) {}

bool Visitor::enterSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) {
  return true;
}

void Visitor::leaveSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) {}

std::vector<std::string> getPropertyNames(const IConfigPtr& config) {
  return configOf(config,
                  "std::vector<std::string> "
                  "service::util::config::getPropertyNames(const IConfigPtr&)")
      .getPropertyNames();
}

std::vector<std::string> getSectionNames(const IConfigPtr& config) {
  return configOf(config,
                  "std::vector<std::string> "
                  "service::util::config::getSectionNames(const IConfigPtr&)")
      .getSectionNames();
}

bool isSelectable(const std::string& name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), isAlphanumeric);
}

std::string spellName(const std::string& name) {
  if (isSelectable(name)) return name;
  std::string spelled = "\"";
  for (std::size_t at = 0; at < name.size();) {
    const Character character(name.data() + at, name.size() - at);
    if (character.isValid() && !isSafe(character.code)) {
      spelled += unicodeEscape(character.code);
    } else {
      if (name[at] == '"' || name[at] == '\\') spelled += '\\';
      spelled.append(name, at, character.step());
    }
    at += character.step();
  }
  return spelled + '"';
}

std::string spellPath(std::string path, const std::string& name, std::uint32_t index,
                      std::uint32_t count) {
  extend(path, name, index, count);
  return path;
}

void visit(const IConfigPtr& config, Visitor& visitor) {
  Visit(visitor).run(config);
}

}  // namespace service::util::config
