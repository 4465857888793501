#include "cppUtil/internal/text.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

#include "cppUtil/internal/Character.hpp"

namespace cppUtil::internal {

namespace {

// How many edits (a character more, less or different, two exchanged) lead from one name to the
// other, whatever the case of letters; any number above bound when they are more than bound. Only
// the cells so near to the diagonal are worked out, and only the rows that leave hope.
std::size_t distance(const std::string& from, const std::string& to, std::size_t bound) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  const auto isSame = [&](std::size_t i, std::size_t j) {
    return lower(from[i - 1]) == lower(to[j - 1]);
  };
  if (from.size() > to.size() + bound || to.size() > from.size() + bound) return bound + 1;
  std::vector<std::size_t> beforeLast(to.size() + 1, bound + 1);
  std::vector<std::size_t> last(to.size() + 1);
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(last.begin(), last.end(), 0);
  for (std::size_t i = 1; i <= from.size(); ++i) {
    const std::size_t first = i > bound ? i - bound : 1;
    const std::size_t end = std::min(to.size(), i + bound) + 1;
    row[first - 1] = first == 1 ? i : bound + 1;
    std::size_t least = row[first - 1];
    for (std::size_t j = first; j < end; ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (isSame(i, j) ? 0 : 1)});
      if (i > 1 && j > 1 && isSame(i, j - 1) && isSame(i - 1, j)) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
      least = std::min(least, row[j]);
    }
    if (least > bound) return least;
    if (end < row.size()) row[end] = bound + 1;
    std::swap(beforeLast, last);
    std::swap(last, row);
  }
  return last[to.size()];
}

std::string escapeOf(const Character& character, char byte) {
  switch (byte) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  if (character.length < 2) return "\\x" + inHexadecimal(byte);
  return unicodeEscape(character.code);
}

std::string safe(const std::string& text, bool isReversible) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Character character(text.data() + at, text.size() - at);
    if (!character.isValid() || !isSafe(character.code)) {
      result += escapeOf(character, text[at]);
    } else {
      if (isReversible && character.code == '\\') result += '\\';
      result.append(text, at, character.length);
    }
    at += character.step();
  }
  return result;
}

}  // namespace

std::string inHexadecimal(char byte) {
  static const char* digits = "0123456789abcdef";
  const auto bits = static_cast<unsigned char>(byte);
  return {digits[bits >> 4], digits[bits & 15]};
}

bool isSafe(char32_t code) {
  const auto isIn = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
  return code >= 0x20 && !isIn(0x7F, 0x9F) && code != 0x061C && !isIn(0x200E, 0x200F) &&
         !isIn(0x2028, 0x202E) && !isIn(0x2066, 0x2069);
}

std::string unicodeEscape(char32_t code) {
  return "\\u" + inHexadecimal(static_cast<char>(code >> 8)) +
         inHexadecimal(static_cast<char>(code & 0xFF));
}

std::string printable(const std::string& text) {
  return safe(text, false);
}

std::string escaped(const std::string& text) {
  return safe(text, true);
}

std::string quoted(const std::string& text) {
  return '"' + printable(text) + '"';
}

std::vector<std::string> nearest(const std::string& name,
                                 const std::vector<std::string>& candidates, std::size_t size) {
  // More is no slip of the hand, and would take long where there are many long names.
  constexpr std::size_t longest = 80;
  constexpr std::size_t mostEdits = 6;
  if (name.size() > longest) return {};
  const std::size_t bound = std::clamp<std::size_t>(std::min(size, name.size()) / 3, 1, mostEdits);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& candidate : candidates) {
    const std::size_t edits = distance(name, candidate, bound);
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

}  // namespace cppUtil::internal
