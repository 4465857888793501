// The characters of a document, before anything else is looked at.
//
// Pure functions of bytes, for any thread.
#ifndef SRC_PLAIN_CHARACTERS_HPP
#define SRC_PLAIN_CHARACTERS_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace service::util::config::plain {

// What follows the byte order mark that a file may begin with. The mark counts no column.
std::string_view withoutByteOrderMark(std::string_view bytes);

enum class Characters {
  NOT_PLAIN,
  ASCII,
  UTF_8,  // some are not ASCII
};

// NOT_PLAIN unless bytes are characters of XML 1.0 in UTF-8, every line ends in a line feed, with
// or without a carriage return before it, and U+0085 and U+2028 are not among them: the XML library
// counts no column for those two where it looks at single characters.
Characters charactersOf(std::string_view bytes);

// Whether XML 1.0 has the character.
bool isXmlCharacter(std::uint32_t character);

// Appends an XML character in UTF-8.
void appendUtf8(std::uint32_t character, std::string& text);

// How many units of UTF-16 the UTF-8 text takes.
std::size_t utf16Length(std::string_view text);

}  // namespace service::util::config::plain

#endif
