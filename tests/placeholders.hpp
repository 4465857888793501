// Placeholders for what differs from run to run in messages, so that they can be compared whole.
#ifndef TESTS_PLACEHOLDERS_HPP
#define TESTS_PLACEHOLDERS_HPP

#include <string>

inline std::string replaceAll(std::string text, const std::string& what, const std::string& with) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
  return text;
}

// {POINTER} in the place of each address.
inline std::string withoutPointers(std::string text) {
  for (auto at = text.find("0x"); at != std::string::npos; at = text.find("0x", at)) {
    const auto end = text.find_first_not_of("0123456789abcdef", at + 2);
    text.replace(at, (end == std::string::npos ? text.size() : end) - at, "{POINTER}");
  }
  return text;
}

#endif
