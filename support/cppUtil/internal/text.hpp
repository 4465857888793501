// Text for the eye: safe to show, and near names. Internal to the library and its command, which
// are both built with it.
#ifndef CPPUTIL_INTERNAL_TEXT_HPP
#define CPPUTIL_INTERNAL_TEXT_HPP

#include <cstddef>
#include <string>
#include <vector>

namespace cppUtil::internal {

// The byte in two hexadecimal digits.
std::string inHexadecimal(char byte);

// text on one line, to be read only: line breaks, tabs and other control characters become \n, \t,
// \r and \xHH. All other characters stay, in UTF-8.
std::string printable(const std::string& text);

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
