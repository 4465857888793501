// One character of UTF-8. Internal to the library and its command, which are both built with it.
#ifndef CPPUTIL_INTERNAL_CHARACTER_HPP
#define CPPUTIL_INTERNAL_CHARACTER_HPP

#include <cstddef>

namespace cppUtil::internal {

// The character at the front of a text of size bytes, at least one.
struct Character {
  Character(const char* text, std::size_t size);

  bool isValid() const { return length > 0; }
  // Bytes to go on by: a byte that begins no character stands for itself.
  std::size_t step() const { return isValid() ? length : 1; }
  // As UTF-16, and the XML library, count.
  int units() const { return isValid() && code > 0xFFFF ? 2 : 1; }

  char32_t code;       // the byte itself when no character begins here
  std::size_t length;  // in bytes; 0 then
};

}  // namespace cppUtil::internal

#endif
