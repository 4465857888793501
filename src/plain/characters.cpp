#include "plain/characters.hpp"

#include <algorithm>

#include "cppUtil/internal/Character.hpp"

namespace service::util::config::plain {

namespace {

constexpr std::size_t blockSize = 64;

// Whether a block is ASCII without control characters but the line feed, as nearly all are. Written
// so that compilers use vector instructions, on bytes.
bool isSimple(const char* block) {
  unsigned char others = 0;
  for (std::size_t i = 0; i < blockSize; ++i) {
    const auto byte = static_cast<signed char>(block[i]);
    const auto isControl = static_cast<unsigned char>(byte < ' ');
    const auto isOther = static_cast<unsigned char>(byte != '\n');
    others = static_cast<unsigned char>(others | (isControl & isOther));
  }
  return others == 0;
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

// The number of bytes of the character at the start of text, which is none of ASCII from the blank
// on; 0 when it is not plain.
std::size_t plainLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80) {
    const bool isLineEnd = first == '\n' || (first == '\r' && text.substr(1, 1) == "\n");
    return first == '\t' || isLineEnd ? 1 : 0;
  }
  const cppUtil::internal::Character character(text.data(), text.size());
  const bool isCounted = character.code != 0x85 && character.code != 0x2028;
  return isXmlCharacter(character.code) && isCounted ? character.length : 0;
}

}  // namespace

std::string_view withoutByteOrderMark(std::string_view bytes) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  return bytes.substr(0, mark.size()) == mark ? bytes.substr(mark.size()) : bytes;
}

Characters charactersOf(std::string_view bytes) {
  Characters result = Characters::ASCII;
  for (std::size_t i = 0; i < bytes.size();) {
    const std::size_t blockEnd = std::min(i + blockSize, bytes.size());
    if (blockEnd == i + blockSize && isSimple(&bytes[i])) i = blockEnd;
    while (i < blockEnd) {
      const bool isUsual = static_cast<signed char>(bytes[i]) >= ' ';
      const std::size_t length = isUsual ? 1 : plainLength(bytes.substr(i));
      if (length == 0) return Characters::NOT_PLAIN;
      if (length > 1) result = Characters::UTF_8;
      i += length;
    }
  }
  return result;
}

bool isXmlCharacter(std::uint32_t character) {
  if (character < ' ') return character == '\t' || character == '\n' || character == '\r';
  return character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) ||
         (character > 0xFFFF && character < 0x110000);
}

void appendUtf8(std::uint32_t character, std::string& text) {
  const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
  const auto appendSixBits = [&](unsigned int shift) {
    append(0x80U | (character >> shift & 0x3FU));
  };
  if (character < 0x80) return append(character);
  if (character < 0x800) {
    append(0xC0U | character >> 6);
  } else {
    if (character < 0x10000) {
      append(0xE0U | character >> 12);
    } else {
      append(0xF0U | character >> 18);
      appendSixBits(12);
    }
    appendSixBits(6);
  }
  appendSixBits(0);
}

std::size_t utf16Length(std::string_view text) {
  std::size_t length = 0;
  for (const char byte : text) {
    if (!isContinuation(byte)) length += static_cast<unsigned char>(byte) < 0xF0 ? 1 : 2;
  }
  return length;
}

}  // namespace service::util::config::plain
