// The grammar of XML 1.0 as far as plain documents use it, from the characters up to the document.
//
// A function reads what its name says from `at` on and leaves `at` behind it; what it does not know
// ends the reading by giveUp(). All characters are checked before that. The bytes end in a NUL,
// which nothing takes, so no loop runs over the end.

#include "plain/read.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "plain/characters.hpp"
#include "service/util/config/grammar/getGrammar.hpp"

namespace service::util::config::plain {

namespace {

using Element = Document::Element;
using Kind = Document::Kind;
using Text = Document::Text;

struct NotPlain {};

[[noreturn]] void giveUp() {
  throw NotPlain();
}

// One level below this one, the XML library's way looks whether the stack suffices.
constexpr std::size_t maximumDepth = 63;

// Of attributes that the loader ignores.
constexpr std::size_t maximumOthers = 8;

// Of names and namespaces that the loader ignores, all together; the XML library's way bounds how
// many different ones there are.
constexpr std::size_t maximumOddities = 1000;

// How the namespaces begin that are not for use as a default.
constexpr std::string_view reservedNamespace = "http://www.w3.org/";

// ---- Classes of bytes

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
    const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    const bool isDigit = byte >= '0' && byte <= '9';
    classes[i] = static_cast<unsigned char>(
        (isLetter || byte == '_' ? NAME_START : 0) |
        (isLetter || isDigit || isOneOf("_-.") ? NAME : 0) | (isOneOf(" \t\r\n") ? SPACE : 0) |
        (isOneOf("<&]\r") ? 0 : TEXT) | (isOneOf("<&\"'\t\r\n") ? 0 : ATTRIBUTE));
  }
  return classes;
}

constexpr std::array<unsigned char, 256> byteClasses = classesOfBytes();

bool is(ByteClass wanted, char byte) {
  return (byteClasses[static_cast<unsigned char>(byte)] & wanted) != 0;
}

// Long texts are scanned in words. The tests below set the highest bit of the bytes that pass, and
// perhaps of some behind the first of them.
using Word = std::uint64_t;

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte is the lowest one");

constexpr Word inEachByte(unsigned char byte) {
  return ~Word{0} / 0xFF * byte;
}

Word areBelow(Word word, unsigned char limit) {
  return (word - inEachByte(limit)) & ~word & inEachByte(0x80);
}

Word areEqual(Word word, unsigned char byte) {
  return areBelow(word ^ inEachByte(byte), 1);
}

// All that are not of the class, and of attributes some that are.
template <ByteClass wanted>
Word areSpecial(Word word) {
  if (wanted == ATTRIBUTE) return areBelow(word, '\'' + 1) | areEqual(word, '<');
  return areEqual(word, '<') | areEqual(word, '&') | areEqual(word, ']') | areEqual(word, '\r');
}

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) {
  const auto equals = [](char a, char b) {
    return a == b || (a >= 'A' && a <= 'Z' && a + 32 == b);
  };
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(), equals);
}

std::uint32_t digitOf(char byte) {
  if (byte >= '0' && byte <= '9') return static_cast<std::uint32_t>(byte - '0');
  if (byte >= 'a' && byte <= 'f') return static_cast<std::uint32_t>(byte - 'a' + 10);
  if (byte >= 'A' && byte <= 'F') return static_cast<std::uint32_t>(byte - 'A' + 10);
  return std::numeric_limits<std::uint32_t>::max();
}

// The attributes of an element, as flags.
enum Attribute : unsigned int { NAMED = 1, VERSION = 2, NAMESPACE = 4, OTHER = 8 };

Attribute attributeOf(std::string_view name) {
  if (name == "name") return NAMED;
  if (name == "xmlns") return NAMESPACE;
  return name == "version" ? VERSION : OTHER;
}

// What the grammar asks for and allows, but for the namespace.
unsigned int requiredOf(Kind kind) {
  if (kind == Kind::CONFIG) return NAMED | VERSION;
  return kind == Kind::INCLUDE ? 0U : NAMED;
}

class Reader {
 public:
  explicit Reader(Document& document)
      : document(document),
        begin(document.view().data()),
        end(begin + document.view().size()),
        at(withoutByteOrderMark(document.view()).data()) {}

  void readDocument() {
    readDeclaration();
    readMiscellaneous();
    expect('<');
    readElement();
    while (!open.empty()) readContent();
    readMiscellaneous();
    if (at != end) giveUp();
  }

 private:
  // An element whose content is being read, but for values.
  struct Open {
    std::string_view name;
    std::size_t element;  // its number in the table, or IGNORED
  };

  static constexpr std::size_t IGNORED = std::numeric_limits<std::size_t>::max();

  // ---- Pieces

  bool skip(char byte) {
    if (*at != byte) return false;
    ++at;
    return true;
  }

  bool skip(std::string_view literal) {
    if (rest().substr(0, literal.size()) != literal) return false;
    at += literal.size();
    return true;
  }

  template <class Piece>
  void expect(Piece piece) {
    if (!skip(piece)) giveUp();
  }

  template <ByteClass wanted>
  void skipAll() {
    while (is(wanted, at[0])) {
      if (!is(wanted, at[1])) {
        at += 1;
        return;
      }
      if (!is(wanted, at[2])) {
        at += 2;
        return;
      }
      if (!is(wanted, at[3])) {
        at += 3;
        return;
      }
      at += 4;
    }
  }

  // The same for TEXT and ATTRIBUTE, which go on for a while.
  template <ByteClass wanted>
  void skipLong() {
    skipWords<wanted>();
    for (; is(wanted, *at); skipWords<wanted>()) ++at;
  }

  // Up to the next special byte, or close to the end.
  template <ByteClass wanted>
  void skipWords() {
    Word word;
    for (; rest().size() >= sizeof word; at += sizeof word) {
      std::memcpy(&word, at, sizeof word);
      const Word special = areSpecial<wanted>(word);
      if (special == 0) continue;
      at += __builtin_ctzll(special) / 8;
      return;
    }
  }

  // Returns whether there is any white space.
  bool skipSpaces() {
    const char* start = at;
    skipAll<SPACE>();
    return at != start;
  }

  std::string_view rest() const { return {at, static_cast<std::size_t>(end - at)}; }

  std::string_view since(const char* start) const {
    return {start, static_cast<std::size_t>(at - start)};
  }

  std::string_view readName() {
    const char* start = at;
    if (!is(NAME_START, *at)) giveUp();
    skipAll<NAME>();
    return since(start);
  }

  // Most often the name is the usual one.
  std::string_view readName(std::string_view usual) {
    const char* start = at;
    if (skip(usual) && !is(NAME, *at)) return usual;
    at = start;
    return readName();
  }

  // Returns what stands before the next such literal, and skips that too.
  std::string_view readUpTo(std::string_view literal) {
    const std::string_view text = rest();
    const std::size_t size = text.find(literal);
    if (size == text.npos) giveUp();
    at += size + literal.size();
    return text.substr(0, size);
  }

  // ---- Texts

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
  void addResolved(std::string_view characters, Text& text) {
    const auto firstResolved = static_cast<std::uint32_t>(end - begin);
    if (text.begin < firstResolved) {
      const std::string_view before = document.view(text);
      text.begin = firstResolved + static_cast<std::uint32_t>(document.resolved.size());
      document.resolved += before;
    }
    document.resolved += characters;
    text.size += static_cast<std::uint32_t>(characters.size());
  }

  void readReference(Text& text) {
    expect('&');
    if (skip('#')) return readCharacterReference(text);
    constexpr std::pair<std::string_view, std::string_view> entities[] = {
        {"amp;", "&"}, {"lt;", "<"}, {"gt;", ">"}, {"quot;", "\""}, {"apos;", "'"}};
    for (const auto& [name, character] : entities) {
      if (skip(name)) return addResolved(character, text);
    }
    giveUp();
  }

  void readCharacterReference(Text& text) {
    const std::uint32_t base = skip('x') ? 16 : 10;
    std::uint32_t character = 0;
    do {
      const std::uint32_t digit = digitOf(*at++);
      if (digit >= base) giveUp();
      character = character * base + digit;
      if (character > 0x10FFFF) giveUp();
    } while (!skip(';'));
    if (!isXmlCharacter(character)) giveUp();
    if (character >= 0x80) document.isAscii = false;
    std::string characters;
    appendUtf8(character, characters);
    addResolved(characters, text);
  }

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

  void readCdata(Text& text) {
    std::string_view rest = readUpTo("]]>");
    for (std::size_t i; (i = rest.find('\r')) != rest.npos; rest.remove_prefix(i + 1)) {
      addBytes(rest.substr(0, i), text);
    }
    addBytes(rest, text);
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

  // ---- Around the root element

  void readDeclaration() {
    if (!skip("<?xml ")) return;
    if (readPseudoAttribute("version") != "1.0") giveUp();
    if (const auto encoding = readPseudoAttribute("encoding")) {
      const bool isForAscii =
          equalsIgnoringCase(*encoding, "us-ascii") || equalsIgnoringCase(*encoding, "iso-8859-1");
      if (!equalsIgnoringCase(*encoding, "utf-8") && !(isForAscii && document.isAscii)) giveUp();
    }
    if (const auto standalone = readPseudoAttribute("standalone")) {
      if (*standalone != "yes" && *standalone != "no") giveUp();
    }
    skipBlanks();
    expect("?>");
  }

  void skipBlanks() {
    while (*at == ' ') ++at;
  }

  // The value of the attribute, if it comes next.
  std::optional<std::string_view> readPseudoAttribute(std::string_view name) {
    skipBlanks();
    if (at[-1] != ' ' || !skip(name)) return std::nullopt;
    expect('=');
    const char* quote = at;
    if (!skip('"') && !skip('\'')) giveUp();
    return readUpTo({quote, 1});
  }

  void readMiscellaneous() {
    while (true) {
      skipSpaces();
      if (skip("<!--")) {
        readComment();
      } else if (skip("<?")) {
        readInstruction();
      } else {
        return;
      }
    }
  }

  void readComment() {
    readUpTo("--");
    expect('>');
  }

  void readInstruction() {
    if (equalsIgnoringCase(readName(), "xml")) giveUp();
    if (skip("?>")) return;
    if (!skipSpaces()) giveUp();
    readUpTo("?>");
  }

  // ---- Elements

  // An element from behind its '<' on: a value with its content, of others the start tag.
  void readElement() {
    if (open.size() == maximumDepth) giveUp();
    const std::string_view name = readName("property");
    const std::optional<Kind> kind = kindOf(name);
    if (!kind) {
      document.isValid = false;
      countOddity();
    }
    Element element = {kind.value_or(Kind::SECTION), 0, 0, {}, {}};
    readAttributes(element);
    if ((kind == Kind::PROPERTY || kind == Kind::SECTION) && element.name.size == 0) giveUp();
    const bool isEmpty = skip('/');
    expect('>');
    if (!isEmpty) element.tagEnd = static_cast<std::uint32_t>(at - begin);
    const bool isValue = element.kind == Kind::PROPERTY || element.kind == Kind::INCLUDE;
    if (isValue && isEmpty) giveUp();
    if (isValue) element.text = readValue(name);
    const std::size_t number = kind ? document.elements.size() : IGNORED;
    if (kind) document.elements.push_back(element);
    if (isValue || isEmpty) {
      close(number);
    } else {
      open.push_back({name, number});
    }
  }

  // Nothing for an element that the loader ignores.
  std::optional<Kind> kindOf(std::string_view name) const {
    if (open.empty()) {
      if (name != "config") giveUp();
      return Kind::CONFIG;
    }
    if (open.back().element == IGNORED) return std::nullopt;
    if (name == "property") return Kind::PROPERTY;
    if (name == "section") return Kind::SECTION;
    if (name == "include") return Kind::INCLUDE;
    return std::nullopt;
  }

  // The content of an element that is to have a text, and its end tag.
  Text readValue(std::string_view name) {
    Text text;
    for (readText(text), expect('<'); !skip('/'); readText(text), expect('<')) {
      if (skip('?')) {
        readInstruction();
      } else if (skip("!--")) {
        readComment();
      } else {
        expect("![CDATA[");
        readCdata(text);
      }
    }
    readEndTag(name);
    if (text.size == 0) giveUp();
    return text;
  }

  void readAttributes(Element& element) {
    unsigned int seen = 0;
    others.clear();
    while (skipSpaces() && *at != '>' && *at != '/') {
      const std::string_view name = readName("name");
      const Attribute attribute = attributeOf(name);
      if (attribute == OTHER) {
        requireNew(name);
      } else if ((seen & attribute) != 0) {
        giveUp();
      }
      seen |= attribute;
      skipSpaces();
      expect('=');
      skipSpaces();
      const Text value = readAttributeValue();
      if (attribute == NAMED) element.name = value;
      if (attribute == NAMESPACE) checkNamespace(document.view(value));
    }
    const bool lacksNamespace = open.empty() && (seen & NAMESPACE) == 0;
    if ((seen & ~NAMESPACE) != requiredOf(element.kind) || lacksNamespace) document.isValid = false;
  }

  void requireNew(std::string_view name) {
    const bool isKnown = std::find(others.begin(), others.end(), name) != others.end();
    if (isKnown || others.size() == maximumOthers) giveUp();
    others.push_back(name);
    countOddity();
  }

  void countOddity() {
    if (++oddities > maximumOddities) giveUp();
  }

  void checkNamespace(std::string_view name) {
    if (name.substr(0, reservedNamespace.size()) == reservedNamespace) giveUp();
    if (!open.empty()) countOddity();
    if (name != grammar::targetNamespace) document.isValid = false;
  }

  // What comes next in an element that is to have no text.
  void readContent() {
    Text unused;
    if (skipSpaces(); *at != '<') {
      document.isValid = false;
      readText(unused);
    }
    expect('<');
    switch (*at) {
      case '/':
        ++at;
        readEndTag(open.back().name);
        close(open.back().element);
        open.pop_back();
        return;
      case '?':
        ++at;
        return readInstruction();
      case '!':
        if (skip("!--")) return readComment();
        expect("![CDATA[");
        document.isValid = false;
        return readCdata(unused);
      default:
        return readElement();
    }
  }

  void readEndTag(std::string_view name) {
    expect(name);
    skipSpaces();
    expect('>');
  }

  // Everything in the element has been read.
  void close(std::size_t element) {
    if (element == IGNORED) return;
    document.elements[element].end = static_cast<std::uint32_t>(document.elements.size());
  }

  Document& document;
  const char* begin;
  const char* end;
  const char* at;
  std::size_t oddities = 0;
  std::vector<Open> open;                // from the root element inwards
  std::vector<std::string_view> others;  // attributes of the element that is being read
};

}  // namespace

std::optional<Document> read(Bytes bytes) {
  constexpr std::size_t usualElement = 64;
  if (bytes.size > maximumSize) return std::nullopt;
  Document document(std::move(bytes));
  const Characters characters = charactersOf(withoutByteOrderMark(document.view()));
  if (characters == Characters::NOT_PLAIN) return std::nullopt;
  document.isAscii = characters == Characters::ASCII;
  document.elements.reserve(document.view().size() / usualElement + 1);
  try {
    Reader(document).readDocument();
  } catch (const NotPlain&) {
    return std::nullopt;
  }
  return document;
}

}  // namespace service::util::config::plain
