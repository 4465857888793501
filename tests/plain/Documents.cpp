#include "Documents.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

using namespace std::string_literals;

// Where the XML library fills its buffers anew, in characters and in bytes.
constexpr std::size_t blockSizes[] = {16UL * 1024, 48UL * 1024};

std::vector<std::string> split(std::string_view list) {
  std::vector<std::string> items(1);
  for (const char c : list) {
    if (c == '|') {
      items.emplace_back();
    } else {
      items.back() += c;
    }
  }
  return items;
}

const Documents::Choices declarations = {
    split("<?xml version=\"1.0\" encoding=\"UTF-8\"?>|<?xml version='1.0'?>|"
          "<?xml version='1.0' encoding='utf-8' standalone='yes' ?>|"
          "<?xml version='1.0' encoding='US-ASCII'?>|<?xml version='1.0' standalone=\"no\"?>|"
          "<?xml version=\"1.0\" encoding='ISO-8859-1'?>"),
    split("<?xml version = '1.0'?>|<?xml version='1.0'encoding='UTF-8'?>|<?xml version='1.1'?>|"
          "<?xml version='1.0' standalone='yes' encoding='UTF-8'?>|<?xml encoding='UTF-8'?>|"
          "<?xml version='1.0' encoding='UTF-16'?>|<?xml version='1.0' encoding='windows-1252'?>|"
          "<?xml version='1.0' encoding=''?>|<?xml version='1.0' standalone='maybe'?>|<?xml?>|"
          "<?xml\nversion='1.0'?>|<?xml\r\nversion='1.0'\n?>|<?xml\tversion='1.0'?>|"
          "<?xml version='1.0' more='1'?>|<?xml version='1.0'>|<?XML version='1.0'?>|"
          " <?xml version='1.0'?>|<!DOCTYPE config>|<!DOCTYPE config [<!ENTITY e 'text'>]>")};

// Of texts and of the values of attributes.
const Documents::Choices pieces = {
    split("value|10.0.0.1|/var/lib/x|true|a b| |-|]|]]|>|&amp;|&lt;|&gt;|&quot;|&apos;|]]&gt;|"
          "&#65;|&#x41;|&#9;|&#10;|&#xD;|&#xE9;|&#x1F600;|&#x85;|&#x2028;|&#x1FFFE;|"
          "&#00000000065;|\xC3\xA9|\xE2\x82\xAC|\xF0\x9F\x98\x80|\xEF\xBF\xBD|\xEF\xBB\xBF|"
          "\xF0\x9F\xBF\xBE|\x7F|\n|\t|\r\n"),
    split("\r|]]>|\"|'|<|&|&#;|&#x;|&#0;|&#xFFFE;|&#xD800;|&#x110000;|&#4294967361;|&#X41;|"
          "&#x4g;|&# 65;|&nbsp;|&e;|&amp|&Amp;|\xC2\x85|\xE2\x80\xA8|\xC2\xA0|\xEF\xBF\xBE|"
          "\xED\xA0\x80|\xC0\xAF|\xE0\x80\xAF|\xF4\x90\x80\x80|\xFF|\x80|\xC3|\x01|\x1F")};

const Documents::Choices markup = {
    split("<!-- c -->|<!---->|<!--\n\xC3\xA9 & < -->|<?pi?>|<?pi some \n data?>|<![CDATA[]]>|"
          "<![CDATA[a <&> b]]>|<![CDATA[ ]]>|<![CDATA[\r\n]]]]>|<?xml-style a?>"),
    split("<!-- a -- b -->|<!-- a --->|<!- a -->|<?xml?>|<?Xml a?>|<? a?>|<?a:b c?>|<?a>|<?a!b?>|"
          "<![CDATA[|<![CDATA [a]]>|<!ELEMENT a ANY>|<?\xC3\xA9?>|<!-- \xE2\x80\xA8 -->|"
          "<!-- \x01 -->|<?pi \xC2\x85?>|<![CDATA[\r]]>")};

const Documents::Choices elementNames = {
    split("property|property|property|section|section|include"),
    split("other|config|Property|properties|x.y-z_1|_|xml|xmlns|p:property|:a|a:|\xC3\xA9|1a|-a|"
          "a:b:c")};

const Documents::Choices attributeNames = {
    split("name|version|xmlns"),
    split("other|Name|a.b-c_1|xml|xmlnsa|xml:lang|xmlns:p|p:name|xsi:type|\xC3\xA9|1a|xml:space")};

const Documents::Choices namespaces = {
    split("urn:zu:util:config"),
    split("|urn:other|urn:zu&#58;util:config| urn:zu:util:config|http://www.w3.org/2000/xmlns/|"
          "http://www.w3.org/XML/1998/namespace|http://www.w3.org/2001/XMLSchema-instance")};

const Documents::Choices files = {split("part.xml"), split("missing.xml|wrong.xml|sub/part.xml")};

const Documents::Choices fillings = {split(" |a|\n|\r\n|\xC3\xA9|\xF0\x9F\x98\x80"), split("\r")};

}  // namespace

std::string Documents::next() {
  constexpr std::size_t oddities[] = {30, 300, 10000};
  oddity = oddities[below(std::size(oddities))];
  std::string document;
  if (oneIn(20)) document += "\xEF\xBB\xBF";
  if (!oneIn(3)) document += choice(declarations);
  while (oneIn(3)) document += oneIn(2) ? space() : choice(markup);
  if (oneIn(50)) document += filler();
  document += element(isOdd() ? oneOf(elementNames.odd) : "config", 0);
  while (oneIn(2)) document += oneIn(2) ? space() : choice(markup);
  if (isOdd()) document += oneIn(2) ? "\0"s : oneOf(pieces.odd);
  return oneIn(5) ? mutated(document) : document;
}

std::string Documents::space() {
  if (isOdd()) return "\r";
  if (oneIn(10)) return "\r\n  ";
  return oneIn(3) ? " " : "\n" + std::string(2 * below(4), oneIn(10) ? '\t' : ' ');
}

// Text to stand in quotes, or in content when there are none.
std::string Documents::characters(const std::string& quote) {
  std::string text;
  do {
    const std::string piece = choice(pieces);
    if (quote.empty() || piece.find(quote) == piece.npos || isOdd()) text += piece;
    if (quote.empty() && oneIn(10)) text += choice(markup);
    if (oneIn(400)) text += filler();
  } while (!oneIn(2));
  return text;
}

std::string Documents::attribute(const std::string& name) {
  const std::string quote = oneIn(3) ? "'" : "\"";
  const std::string value = name == "xmlns" ? choice(namespaces) : characters(quote);
  const std::string before = isOdd() ? "" : oneIn(10) ? space() : " ";
  const std::string equals = isOdd()     ? oneOf(pieces.odd)
                             : oneIn(10) ? space() + "=" + space()
                                         : "=";
  return before + name + equals + quote + value + quote;
}

std::string Documents::attributes(const std::string& element) {
  std::vector<std::string> names;
  if (element == "config") names = {"xmlns", "name", "version"};
  if (element == "property" || element == "section") names = {"name"};
  std::shuffle(names.begin(), names.end(), random);
  while (!names.empty() && isOdd()) names.pop_back();
  while (isOdd()) names.push_back(oneOf(attributeNames.odd));
  if (!names.empty() && isOdd()) names.push_back(names[below(names.size())]);
  std::string result;
  for (const std::string& name : names) result += attribute(name);
  return result + (oneIn(20) ? space() : "");
}

std::string Documents::element(const std::string& name, std::size_t depth) {
  const std::string start = "<" + name + attributes(name);
  if (name == "section" ? oneIn(10) : isOdd()) return start + (isOdd() ? "/ >" : "/>");
  const std::string end = isOdd() ? oneOf(elementNames.odd) : name;
  return start + ">" + content(name, depth) + "</" + end + (oneIn(20) ? space() : "") + ">";
}

std::string Documents::content(const std::string& name, std::size_t depth) {
  if (isOdd()) return "";
  if (name == "include" && !oneIn(10)) return choice(files);
  if (name == "property" || name == "include") {
    return characters("") + (isOdd() ? element(oneOf(elementNames.odd), depth) : "");
  }
  std::string result = space();
  for (std::size_t count = below(depth == 0 ? 12 : 5); count > 0; --count) {
    if (depth < 4 && !oneIn(3)) {
      result += element(choice(elementNames), depth + 1);
    } else if (oneIn(6)) {
      result += choice(markup);
    } else if (isOdd()) {
      result += oneIn(2) ? characters("") : "&#32;";
    }
    result += oneIn(200) ? filler() : space();
  }
  return result;
}

// Pushes what follows to about where a block of the XML library ends.
std::string Documents::filler() {
  const std::string unit = choice(fillings);
  const std::size_t size = blockSizes[below(2)] - below(40) * below(40);
  std::string result;
  while (result.size() < size) result += unit;
  return result;
}

std::string Documents::mutated(std::string document) {
  do {
    const std::size_t at = below(document.size() + 1);
    switch (below(5)) {
      case 0:
        document.erase(at, 1 + below(3));
        break;
      case 1:
        document.insert(at, oneOf(pieces.odd));
        break;
      case 2:
        document.insert(at, oneOf(markup.odd));
        break;
      case 3:
        document.insert(at, document.substr(below(document.size() + 1), below(30)));
        break;
      default:
        if (at < document.size()) document[at] = static_cast<char>(below(256));
    }
  } while (oneIn(2));
  return document;
}
