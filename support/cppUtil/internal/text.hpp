// Text for the eye: safe to show, and near names. Internal to the library and its command, which
// are both built with it.
#ifndef CPPUTIL_INTERNAL_TEXT_HPP
#define CPPUTIL_INTERNAL_TEXT_HPP

#include <cstddef>
#include <string>
#include <vector>

namespace cppUtil::internal {

// Of ASCII, whatever the locale.
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

constexpr bool isAlphanumeric(char c) {
  return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The byte in two hexadecimal digits.
std::string inHexadecimal(char byte);

// Whether the character neither acts on a terminal nor misleads the eye.
bool isSafe(char32_t code);

// "\uHHHH", as C++, JSON and others spell a character of the first 65,536.
std::string unicodeEscape(char32_t code);

// text on one line, with nothing in it that acts on a terminal or misleads the eye; whatever people
// see of files, names and other libraries passes through here. Line breaks and tabs become \n, \r
// and \t, other control characters of ASCII and bytes that are no UTF-8 \xHH, those beyond ASCII,
// line separators and what changes the direction of writing \uHHHH.
std::string printable(const std::string& text);

// The same with backslashes doubled, so that nothing is lost.
std::string escaped(const std::string& text);

// printable, in double quotes.
std::string quoted(const std::string& text);

// Those of the candidates that name may be a misspelling of, the nearest first, three at most.
// size: how many of the characters count for that; all of them unless it is given.
std::vector<std::string> nearest(const std::string& name,
                                 const std::vector<std::string>& candidates,
                                 std::size_t size = std::string::npos);

// "; did you mean "a" or "b"?", or nothing.
std::string didYouMean(const std::vector<std::string>& names);

}  // namespace cppUtil::internal

#endif
