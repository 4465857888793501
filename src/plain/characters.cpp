#include "plain/characters.hpp"

#include <algorithm>

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

// The number of bytes of a character, from the first one; 0 when none starts so.
std::size_t utf8Length(unsigned char first) {
  if (first < 0xC2) return 0;
  if (first < 0xE0) return 2;
  if (first < 0xF0) return 3;
  return first < 0xF5 ? 4 : 0;
}

// The number of bytes of the character at the start of text; 0 when it is not plain.
std::size_t plainLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80) {
    const bool isLineEnd = first == '\n' || (first == '\r' && text.substr(1, 1) == "\n");
    return first >= ' ' || first == '\t' || isLineEnd ? 1 : 0;
  }
  const std::size_t length = utf8Length(first);
  if (length == 0 || text.size() < length) return 0;
  std::uint32_t character = first & (0x7FU >> length);
  for (const char byte : text.substr(1, length - 1)) {
    if (!isContinuation(byte)) return 0;
    character = character << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isCounted = character != 0x85 && character != 0x2028;
  return character >= smallest[length] && isXmlCharacter(character) && isCounted ? length : 0;
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
      const std::size_t length = plainLength(bytes.substr(i));
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
