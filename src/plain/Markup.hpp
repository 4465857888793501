// What stands between the tags of a document and in them: texts, comments, processing instructions
// and the declaration. Reads as Cursor says. What runs for every element is here, all else in the
// source file.
#ifndef SRC_PLAIN_MARKUP_HPP
#define SRC_PLAIN_MARKUP_HPP

#include <cstdint>
#include <optional>
#include <string_view>

#include "plain/Cursor.hpp"
#include "plain/Document.hpp"

namespace service::util::config::plain {

class Markup : protected Cursor {
 protected:
  using Text = Document::Text;

  // Kept by reference. Starts behind a byte order mark.
  explicit Markup(Document& document);

  void readDeclaration();
  // What may stand before and behind the root element.
  void readMiscellaneous();

  // From behind what they begin with.
  void readComment();
  void readInstruction();
  void readCdata(Text& text);

  // Up to the next markup. Of a line end, the line feed stays.
  void readText(Text& text) {
    while (true) {
      const char* start = at;
      skipLong<TEXT>();
      addBytes(since(start), text);
      switch (*at) {
        case '&':
          readReference(text);
          break;
        case ']':
          if (skip("]]>")) giveUp();
          addBytes({at++, 1}, text);
          break;
        case '\r':
          ++at;
          break;
        default:
          return;
      }
    }
  }

  // Other white space than blanks becomes blanks, a line end a single one.
  Text readAttributeValue() {
    const char quote = *at;
    if (!skip('"') && !skip('\'')) giveUp();
    Text value;
    while (true) {
      const char* start = at;
      skipLong<ATTRIBUTE>();
      addBytes(since(start), value);
      switch (*at) {
        case '&':
          readReference(value);
          break;
        case '"':
        case '\'':
          if (*at++ == quote) return value;
          addBytes({at - 1, 1}, value);
          break;
        case '\n':
        case '\t':
          addResolved(" ", value);
          [[fallthrough]];
        case '\r':
          ++at;
          break;
        default:
          giveUp();
      }
    }
  }

  Document& document;

 private:
  // Adds what stands in the bytes. While it follows on what the text has, the text stays a range.
  void addBytes(std::string_view bytes, Text& text) {
    if (bytes.empty()) return;
    const auto offset = static_cast<std::uint32_t>(bytes.data() - begin);
    if (text.size == 0) text.begin = offset;
    if (text.begin + text.size != offset) return addResolved(bytes, text);
    text.size += static_cast<std::uint32_t>(bytes.size());
  }

  // Adds what does not follow in the bytes, which makes the text a resolved one. No other text is
  // resolved before this one is complete.
  void addResolved(std::string_view characters, Text& text);

  void readReference(Text& text);
  void readCharacterReference(Text& text);
  void skipBlanks();
  std::optional<std::string_view> readPseudoAttribute(std::string_view name);
};

}  // namespace service::util::config::plain

#endif
