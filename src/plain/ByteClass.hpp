// What a byte may be in a document, asked for one byte or for a word of them. Any thread.
#ifndef SRC_PLAIN_BYTECLASS_HPP
#define SRC_PLAIN_BYTECLASS_HPP

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "cppUtil/internal/text.hpp"

namespace service::util::config::plain {

enum ByteClass : unsigned char {
  NAME_START = 1,
  NAME = 2,
  SPACE = 4,
  TEXT = 8,        // stands for itself in content
  ATTRIBUTE = 16,  // stands for itself in the value of an attribute
};

constexpr std::array<unsigned char, 256> classesOfBytes() {
  std::array<unsigned char, 256> classes = {};
  for (std::size_t i = 1; i < classes.size(); ++i) {
    const char byte = static_cast<char>(i);
    const auto isOneOf = [byte](std::string_view bytes) { return bytes.find(byte) != bytes.npos; };
    const bool isAlphanumeric = cppUtil::internal::isAlphanumeric(byte);
    const bool isLetter = isAlphanumeric && !cppUtil::internal::isDigit(byte);
    classes[i] = static_cast<unsigned char>(
        (isLetter || byte == '_' ? NAME_START : 0) | (isAlphanumeric || isOneOf("_-.") ? NAME : 0) |
        (isOneOf(" \t\r\n") ? SPACE : 0) | (isOneOf("<&]\r") ? 0 : TEXT) |
        (isOneOf("<&\"'\t\r\n") ? 0 : ATTRIBUTE));
  }
  return classes;
}

inline constexpr std::array<unsigned char, 256> byteClasses = classesOfBytes();

inline bool is(ByteClass wanted, char byte) {
  return (byteClasses[static_cast<unsigned char>(byte)] & wanted) != 0;
}

// Long texts are scanned in words. The tests below set the highest bit of the bytes that pass, and
// perhaps of some behind the first of them.
using Word = std::uint64_t;

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte is the lowest one");

constexpr Word inEachByte(unsigned char byte) {
  return ~Word{0} / 0xFF * byte;
}

inline Word areBelow(Word word, unsigned char limit) {
  return (word - inEachByte(limit)) & ~word & inEachByte(0x80);
}

inline Word areEqual(Word word, unsigned char byte) {
  return areBelow(word ^ inEachByte(byte), 1);
}

// All that are not of the class, and of attributes some that are.
template <ByteClass wanted>
Word areSpecial(Word word) {
  if (wanted == ATTRIBUTE) return areBelow(word, '\'' + 1) | areEqual(word, '<');
  return areEqual(word, '<') | areEqual(word, '&') | areEqual(word, ']') | areEqual(word, '\r');
}

}  // namespace service::util::config::plain

#endif
