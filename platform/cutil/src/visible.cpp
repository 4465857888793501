#include "visible.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace cutil {

namespace {

struct Character {
  std::uint32_t code;
  std::size_t size;  // 1 for a byte that is no UTF-8, which stands for itself
};

// The character at the front of text, which is not empty.
Character firstOf(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t size = lead < 0xC2   ? 1
                           : lead < 0xE0 ? 2
                           : lead < 0xF0 ? 3
                           : lead < 0xF5 ? 4
                                         : 1;
  if (size == 1 || size > text.size()) return {lead, 1};
  std::uint32_t code = lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0U) != 0x80) return {lead, 1};
    code = code << 6 | (byte & 0x3FU);
  }
  return {code, size};
}

bool isControl(std::uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) ||
         // Those of writing from right to left.
         code == 0x61C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

void appendEscape(std::string& line, const Character& character) {
  switch (character.code) {
    case '\n':
      line += "\\n";
      return;
    case '\t':
      line += "\\t";
      return;
    case '\r':
      line += "\\r";
      return;
    default:
      break;
  }
  char escape[8];
  std::snprintf(escape, sizeof escape, character.size == 1 ? "\\x%02x" : "\\u%04x",
                static_cast<unsigned>(character.code));
  line += escape;
}

}  // namespace

void appendVisible(std::string& line, std::string_view text) {
  while (!text.empty()) {
    const Character character = firstOf(text);
    if (isControl(character.code)) {
      appendEscape(line, character);
    } else {
      line += text.substr(0, character.size);
    }
    text.remove_prefix(character.size);
  }
}

}  // namespace cutil
