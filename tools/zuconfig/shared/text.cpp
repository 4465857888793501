#include "shared/text.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>

namespace zuconfig {

namespace {

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

bool startsWith(const std::string& text, const char* start) {
  return text.rfind(start, 0) == 0;
}

std::string validUtf8(const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const Character c(text.data() + at, text.size() - at);
    result += c.isValid() ? text.substr(at, c.length) : replacementCharacter;
    at += c.step();
  }
  return result;
}

std::string printableLines(const std::string& text) {
  std::string result;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    result += (start > 0 ? "\n" : "") + printable(text.substr(start, end - start));
    start = end + 1;
  }
  return result;
}

std::string inJson(const std::string& text) {
  using json = nlohmann::json;
  return printableJson(json(text).dump(-1, ' ', false, json::error_handler_t::replace));
}

std::string printableJson(const std::string& document) {
  std::string result;
  for (std::size_t at = 0; at < document.size();) {
    const Character c(document.data() + at, document.size() - at);
    const bool isEscaped = c.code >= 0x7F && !isSafe(c.code);
    result += isEscaped ? unicodeEscape(c.code) : document.substr(at, c.step());
    at += c.step();
  }
  return result;
}

std::string indentation(std::size_t columns) {
  constexpr std::size_t most = 80;
  return std::string(std::min(columns, most), ' ');
}

std::string deeper(const std::string& indent, bool isLast) {
  constexpr std::size_t most = 80;
  return width(indent) < most ? indent + (isLast ? "    " : "│   ") : indent;
}

std::size_t width(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string counted(std::uint64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

Colours::Colours(int stream) {
  const char* terminal = std::getenv("TERM");
  const bool isDumb = terminal != nullptr && std::strcmp(terminal, "dumb") == 0;
  if (::isatty(stream) == 0 || isSet("NO_COLOR") || isDumb) return;
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
