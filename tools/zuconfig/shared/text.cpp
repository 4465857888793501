#include "shared/text.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <numeric>

#include "service/util/config/visit.hpp"

namespace zuconfig {

namespace {

// How many edits (a character more, less or different, two exchanged) lead from one name to the
// other, whatever the case of letters.
std::size_t distance(const std::string& from, const std::string& to) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  const auto isSame = [&](std::size_t i, std::size_t j) {
    return lower(from[i - 1]) == lower(to[j - 1]);
  };
  std::vector<std::size_t> beforeLast;
  std::vector<std::size_t> last(to.size() + 1);
  std::iota(last.begin(), last.end(), 0);
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::vector<std::size_t> row(to.size() + 1, i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (isSame(i, j) ? 0 : 1)});
      if (i > 1 && j > 1 && isSame(i, j - 1) && isSame(i - 1, j)) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
    }
    beforeLast = std::move(last);
    last = std::move(row);
  }
  return last[to.size()];
}

std::string withoutControls(const std::string& text, bool isReversible) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\\' && isReversible) {
      result += "\\\\";
    } else if (c == '\n') {
      result += "\\n";
    } else if (c == '\t') {
      result += "\\t";
    } else if (c == '\r') {
      result += "\\r";
    } else if (byte < 0x20 || byte == 0x7F) {
      result += "\\x" + inHexadecimal(c);
    } else {
      result += c;
    }
  }
  return result;
}

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isAlphanumeric(char c) {
  return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool startsWith(const std::string& text, const char* start) {
  return text.rfind(start, 0) == 0;
}

std::string inHexadecimal(char byte) {
  static const char* digits = "0123456789abcdef";
  const auto bits = static_cast<unsigned char>(byte);
  return {digits[bits >> 4], digits[bits & 15]};
}

std::string escaped(const std::string& text) {
  return withoutControls(text, true);
}

std::string printable(const std::string& text) {
  return withoutControls(text, false);
}

std::string quoted(const std::string& text) {
  return '"' + printable(text) + '"';
}

Character::Character(const char* text, std::size_t size) : length(0) {
  const auto lead = static_cast<unsigned char>(*text);
  code = lead;
  if (lead < 0x80) {
    length = 1;
    return;
  }
  if (lead < 0xC2 || lead > 0xF4) return;
  const std::size_t expected = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (expected > size) return;
  code = lead & (0x7FU >> expected);
  for (std::size_t i = 1; i < expected; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) return;
    code = code << 6 | (byte & 0x3F);
  }
  length = expected;
}

std::string validUtf8(const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const Character c(text.data() + at, text.size() - at);
    result += c.length == 0 ? replacementCharacter : text.substr(at, c.length);
    at += c.length == 0 ? 1 : c.length;
  }
  return result;
}

std::size_t width(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::size_t utf16Units(const std::string& text) {
  return width(text) + static_cast<std::size_t>(std::count_if(
                           text.begin(), text.end(), [](char c) { return (c & 0xF8) == 0xF0; }));
}

std::string joined(const std::string& path, const std::string& name, std::uint32_t index,
                   std::uint32_t count) {
  std::string result = path.empty() ? "" : path + ".";
  result += service::util::config::spellName(name);
  if (count > 1) result += "[" + std::to_string(index) + "]";
  return result;
}

std::string counted(std::uint64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::vector<std::string> nearest(const std::string& name,
                                 const std::vector<std::string>& candidates, std::size_t size) {
  constexpr std::size_t longest = 200;
  if (name.size() > longest) return {};
  const std::size_t bound = std::max<std::size_t>(1, std::min(size, name.size()) / 3);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& candidate : candidates) {
    if (candidate.size() > longest) continue;
    const std::size_t edits = distance(name, candidate);
    if (edits <= bound) near.emplace_back(edits, candidate);
  }
  std::sort(near.begin(), near.end());
  if (near.size() > 3) near.resize(3);
  std::vector<std::string> names;
  names.reserve(near.size());
  for (auto& [edits, candidate] : near) names.push_back(std::move(candidate));
  return names;
}

std::string didYouMean(const std::vector<std::string>& names) {
  if (names.empty()) return "";
  std::string text = "; did you mean ";
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " or " : ", ";
    text += quoted(names[i]);
  }
  return text + "?";
}

Colours::Colours() {
  const char* terminal = std::getenv("TERM");
  const bool isDumb = terminal != nullptr && std::strcmp(terminal, "dumb") == 0;
  if (::isatty(STDOUT_FILENO) == 0 || isSet("NO_COLOR") || isDumb) return;
  name = "\033[1;34m";
  value = "\033[32m";
  dim = "\033[2m";
  good = "\033[32m";
  bad = "\033[31m";
  warning = "\033[35m";
  bold = "\033[1m";
  off = "\033[0m";
}

}  // namespace zuconfig
