// Text for the eye and for scripts: escapes, selectors, colours, near names.
#ifndef TOOLS_ZUCONFIG_SHARED_TEXT_HPP
#define TOOLS_ZUCONFIG_SHARED_TEXT_HPP

#include <cstdint>
#include <string>
#include <vector>

#include "cppUtil/internal/Character.hpp"
#include "cppUtil/internal/text.hpp"

namespace zuconfig {

using cppUtil::internal::Character;
using cppUtil::internal::didYouMean;
using cppUtil::internal::escaped;
using cppUtil::internal::inHexadecimal;
using cppUtil::internal::isAlphanumeric;
using cppUtil::internal::isDigit;
using cppUtil::internal::isSafe;
using cppUtil::internal::nearest;
using cppUtil::internal::printable;
using cppUtil::internal::quoted;
using cppUtil::internal::unicodeEscape;

bool startsWith(const std::string& text, const char* start);

// U+FFFD.
constexpr const char* replacementCharacter = "\xEF\xBF\xBD";

// text with U+FFFD in place of every byte that is no UTF-8.
std::string validUtf8(const std::string& text);

// printable for a text of several lines.
std::string printableLines(const std::string& text);

// text as a string of JSON; bytes that are no UTF-8 are replaced.
std::string inJson(const std::string& text);

// document, which is JSON, with all that JSON leaves as it is and printable does not escaped.
std::string printableJson(const std::string& document);

// So many blanks, but no more than keep a line readable: what is nested deeply would consist of
// blanks otherwise.
std::string indentation(std::size_t columns);

// The same for a tree that is drawn: what stands before the children of an entry that stands behind
// indent, and that is the last one of its parent or not.
std::string deeper(const std::string& indent, bool isLast);

// As many columns as text takes, with one for each character.
std::size_t width(const std::string& text);

// "1 value", "2 values".
std::string counted(std::uint64_t count, const std::string& noun);

// Terminal colours; all are empty when the stream, a file descriptor, is no terminal or NO_COLOR is
// set.
struct Colours {
  explicit Colours(int stream = 1);

  const char* name = "";
  const char* value = "";
  const char* dim = "";
  const char* good = "";
  const char* bad = "";
  const char* warning = "";
  const char* bold = "";
  const char* off = "";
};

}  // namespace zuconfig

#endif
