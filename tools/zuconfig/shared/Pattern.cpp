#include "shared/Pattern.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "service/util/config/visit.hpp"
#include "shared/Failure.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::getPropertyNames;
using service::util::config::getSectionNames;
using service::util::config::spellPath;

bool isNameCharacter(char c) {
  return isAlphanumeric(c) || c == '*';
}

class PatternReader {
 public:
  PatternReader(const std::string& text, Pattern& pattern) : text(text), pattern(pattern) {}

  void read() {
    for (;;) {
      pattern.parts.push_back(readPart());
      if (at == text.size()) return;
      if (text[at] != '.') fail("expected \".\" or \"[\" or the end");
      ++at;
      if (at == text.size() && pattern.wanted != Wanted::PROPERTIES) {
        pattern.wanted = Wanted::SECTIONS;
        return;
      }
    }
  }

 private:
  Part readPart() {
    Part part;
    if (peek() == '"') {
      part.name = readQuoted();
    } else {
      const std::size_t start = at;
      while (isNameCharacter(peek())) ++at;
      part.name = text.substr(start, at - start);
      if (!isAtPartEnd()) fail("a name with other characters than letters and digits needs quotes");
      if (part.name.empty()) fail("expected a name");
      part.isGlob = part.name.find('*') != part.name.npos;
    }
    if (peek() == '[') readIndex(part);
    if (part.isGlob && !part.hasIndex) part.isEveryIndex = true;
    return part;
  }

  std::string readQuoted() {
    const std::size_t start = at++;
    while (at < text.size() && text[at] != '"') at += text[at] == '\\' ? 2 : 1;
    if (at >= text.size()) {
      at = start;
      fail("this quote is not closed");
    }
    ++at;
    const auto name = nlohmann::json::parse(text.substr(start, at - start), nullptr, false);
    if (name.is_discarded() || name.get_ref<const std::string&>().empty()) {
      at = start;
      fail(name.is_discarded() ? "not a text in quotes, as in JSON" : "expected a name");
    }
    return name;
  }

  void readIndex(Part& part) {
    ++at;
    part.hasIndex = true;
    if (peek() == '*') {
      ++at;
      part.isEveryIndex = true;
    } else {
      part.index = readNumber();
    }
    if (peek() != ']') fail("expected \"]\"");
    ++at;
  }

  std::uint32_t readNumber() {
    const std::size_t start = at;
    std::uint64_t number = 0;
    for (; isDigit(peek()); ++at) {
      number = number * 10 + static_cast<std::uint64_t>(peek() - '0');
      if (number > UINT32_MAX) {
        at = start;
        fail("no index is that large");
      }
    }
    if (at == start) fail("expected an index or \"*\"");
    return static_cast<std::uint32_t>(number);
  }

  char peek() const { return at < text.size() ? text[at] : '\0'; }
  bool isAtPartEnd() const { return at == text.size() || peek() == '.' || peek() == '['; }

  [[noreturn]] void fail(const std::string& reason) const {
    throw Failure(USAGE, "malformed selector: " + reason + "\n  " + printable(text) + "\n  " +
                             std::string(width(printable(text.substr(0, at))), ' ') + "^");
  }

  const std::string& text;
  Pattern& pattern;
  std::size_t at = 0;
};

// Whether text matches glob, in which "*" stands for any characters.
bool matchesGlob(const std::string& glob, const std::string& text) {
  std::size_t inGlob = 0;
  std::size_t inText = 0;
  std::size_t afterStar = glob.npos;
  std::size_t retry = 0;
  while (inText < text.size()) {
    if (inGlob < glob.size() && glob[inGlob] == '*') {
      afterStar = ++inGlob;
      retry = inText;
    } else if (inGlob < glob.size() && glob[inGlob] == text[inText]) {
      ++inGlob;
      ++inText;
    } else if (afterStar != glob.npos) {
      inGlob = afterStar;
      inText = ++retry;
    } else {
      return false;
    }
  }
  return glob.find_first_not_of('*', inGlob) == glob.npos;
}

// The names that part may mean; a plain name costs no enumeration.
template <class GetNames>
std::vector<std::string> namesFor(const Part& part, const IConfigPtr& config,
                                  const GetNames& getNames) {
  if (!part.isGlob) return {part.name};
  std::vector<std::string> names = getNames(config);
  names.erase(std::remove_if(names.begin(), names.end(),
                             [&](const std::string& name) { return !part.matches(name); }),
              names.end());
  return names;
}

class Matcher {
 public:
  Matcher(const Pattern& pattern, Wanted wanted, const std::function<void(const Match&)>& found)
      : parts(pattern.parts), wanted(wanted), found(found) {}

  void matchFrom(std::size_t at, const IConfigPtr& config, const std::string& path) const {
    const bool isLast = at + 1 == parts.size();
    if (isLast && wanted != Wanted::SECTIONS) matchProperties(parts[at], config, path);
    if (!isLast || wanted != Wanted::PROPERTIES) matchSections(at, config, path);
  }

 private:
  void matchProperties(const Part& part, const IConfigPtr& config, const std::string& path) const {
    for (const std::string& name : namesFor(part, config, getPropertyNames)) {
      const std::uint32_t count = config->getPropertyCount(name);
      for (std::uint32_t index = part.first(); index < part.last(count); ++index) {
        found({config, name, index, spellPath(path, name, index, count), nullptr});
      }
    }
  }

  void matchSections(std::size_t at, const IConfigPtr& config, const std::string& path) const {
    const Part& part = parts[at];
    for (const std::string& name : namesFor(part, config, getSectionNames)) {
      const std::uint32_t count = config->getSectionCount(name);
      for (std::uint32_t index = part.first(); index < part.last(count); ++index) {
        const IConfigPtr section = config->getSection(name, index);
        const std::string below = spellPath(path, name, index, count);
        if (at + 1 < parts.size()) {
          matchFrom(at + 1, section, below);
        } else {
          found({config, name, index, below, section});
        }
      }
    }
  }

  const std::vector<Part>& parts;
  Wanted wanted;
  const std::function<void(const Match&)>& found;
};

}  // namespace

bool Part::matches(const std::string& other) const {
  return isGlob ? matchesGlob(name, other) : name == other;
}

std::uint32_t Part::last(std::uint32_t count) const {
  return isEveryIndex || index >= count ? count : index + 1;
}

Pattern::Pattern(const std::string& text, Wanted wanted) : wanted(wanted) {
  PatternReader(text, *this).read();
}

bool Pattern::isSingle() const {
  return std::all_of(parts.begin(), parts.end(), [](const Part& part) { return part.isSingle(); });
}

std::string Match::value() const {
  std::string value;
  if (section == nullptr) parent->getProperty(name, value, index);
  return value;
}

void match(const IConfigPtr& config, const Pattern& pattern, Wanted wanted,
           const std::function<void(const Match&)>& found) {
  Matcher(pattern, wanted, found).matchFrom(0, config, "");
}

std::optional<Match> matchSingle(const IConfigPtr& config, const Pattern& pattern, Wanted wanted) {
  std::optional<Match> only;
  match(config, pattern, wanted, [&](const Match& match) {
    if (!only) only = match;
  });
  return only;
}

}  // namespace zuconfig
