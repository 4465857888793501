// The elements of a document. Reads as plain/Cursor.hpp says.

#include "plain/read.hpp"

#include <algorithm>
#include <limits>

#include "plain/Markup.hpp"
#include "plain/characters.hpp"
#include "service/util/config/grammar/getGrammar.hpp"

namespace service::util::config::plain {

namespace {

using Element = Document::Element;
using Kind = Document::Kind;

// One level below this one, the XML library's way looks whether the stack suffices.
constexpr std::size_t maximumDepth = 63;

// Of attributes that the loader ignores.
constexpr std::size_t maximumOthers = 8;

// Of names and namespaces that the loader ignores, all together; the XML library's way bounds how
// many different ones there are.
constexpr std::size_t maximumOddities = 1000;

// How the namespaces begin that are not for use as a default.
constexpr std::string_view reservedNamespace = "http://www.w3.org/";

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

class Reader : private Markup {
 public:
  explicit Reader(Document& document) : Markup(document) {}

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
