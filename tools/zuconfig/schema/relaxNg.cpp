// A grammar for editors. The content of a section is any number of a choice: equal element names
// may not stand in an interleave, and whether something required is there can only be told of all
// files together.
//
// Numbers are data of a numeric type, which editors explain best, except for what such types allow
// and programs refuse: blanks around, a plus sign, and words such as INF.
#include <set>

#include "schema/formats.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "shared/description.hpp"
#include "shared/text.hpp"
#include "write/xmlText.hpp"

namespace zuconfig {

namespace {

using namespace service::util::config;
using bind::internal::Kind;
using write::inXml;
using write::XmlPlace;

constexpr const char* afterBlanks = R"([\s+][\s\S]*|[\s\S]*\s)";

class Grammar {
 public:
  Grammar(std::ostream& out, const Outline& outline) : out(out), outline(outline) {}

  void write(const Entry& section) {
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    open(
        "grammar xmlns=\"http://relaxng.org/ns/structure/1.0\""
        " xmlns:a=\"http://relaxng.org/ns/compatibility/annotations/1.0\" ns=\"" +
        std::string(grammar::targetNamespace) +
        "\" datatypeLibrary=\"http://www.w3.org/2001/XMLSchema-datatypes\"");
    writeStart(section);
    writeContent(section);
    while (!wanted.empty()) {
      const Entry& next = *wanted.back();
      wanted.pop_back();
      writeContent(next);
    }
    if (needsAnything) writeAnything();
    close("grammar");
  }

 private:
  void writeStart(const Entry& section) {
    open("start");
    open("element name=\"config\"");
    line("<attribute name=\"name\"/>");
    line("<attribute name=\"version\"/>");
    line(
        "<optional><attribute name=\"schemaLocation\""
        " ns=\"http://www.w3.org/2001/XMLSchema-instance\"/></optional>");
    refer(section);
    close("element");
    close("start");
  }

  void writeContent(const Entry& section) {
    if (!written.insert(&section).second) return;
    openContent(nameOf(section));
    for (const Entry* entry : section.entries) writeEntry(*entry);
    if (section.isOpen) writeOthers(section);
    closeContent();
  }

  void writeEntry(const Entry& entry) {
    const Described& described = *entry.described;
    openElement(described.isSetting(), remarkOn(described));
    writeNames(entry);
    if (described.isSetting()) {
      writeValue(described);
    } else {
      refer(outline.contentOf(entry));
    }
    close("element");
  }

  void openElement(bool isSetting, const std::string& documentation) {
    open(isSetting ? "element name=\"property\"" : "element name=\"section\"");
    if (documentation.empty()) return;
    line("<a:documentation>" + inXml(documentation, XmlPlace::ELEMENT) + "</a:documentation>");
  }

  static std::string remarkOn(const Described& described) {
    std::string text = described.text.empty() ? "" : printable(described.text) + "; ";
    text += formOf(described);
    for (const std::string& remark : remarksOn(described)) text += "; " + remark;
    return text;
  }

  void writeNames(const Entry& entry) {
    open("attribute name=\"name\"");
    std::vector<std::string> names = {entry.name};
    const auto& former = entry.described->formerNames;
    names.insert(names.end(), former.begin(), former.end());
    writeChoice(names);
    close("attribute");
  }

  void writeValue(const Described& described) {
    switch (*described.type) {
      case Kind::BOOLEAN:
        return writeChoice({"true", "false", "yes", "no", "on", "off"});
      case Kind::ENUMERATION:
        return writeChoice({described.names.begin(), described.names.end()});
      case Kind::INTEGER:
        return writeNumber("integer", afterBlanks, bind::internal::boundsOf(described));
      case Kind::FLOATING:
        return writeNumber(described.bits == 32 ? "float" : "double",
                           std::string(afterBlanks) + "|-?INF|NaN",
                           {described.lowest, described.highest});
      case Kind::DURATION:
      case Kind::BYTES:
        return writeMeasure(described);
      default:
        return line("<text/>");
    }
  }

  void writeNumber(const std::string& type, const std::string& except,
                   const std::pair<std::string, std::string>& bounds) {
    open("data type=\"" + type + "\"");
    if (!bounds.first.empty()) {
      line("<param name=\"minInclusive\">" + bounds.first + "</param>");
      line("<param name=\"maxInclusive\">" + bounds.second + "</param>");
    }
    line("<except><data type=\"string\"><param name=\"pattern\">" + except +
         "</param></data></except>");
    close("data");
  }

  // Its range cannot be said, for the unit may be any.
  void writeMeasure(const Described& described) {
    std::string units;
    for (const std::string& unit : bind::internal::unitsOf(described)) {
      units += (units.empty() ? "" : "|") + unit;
    }
    const std::string number =
        described.isFloating ? "([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+\\-]?[0-9]+)?" : "[0-9]+";
    line("<data type=\"string\"><param name=\"pattern\">-?" + number + "(" + units + ")" +
         (described.bareUnit.empty() ? "" : "?") + "</param></data>");
  }

  // What an open section may hold besides.
  void writeOthers(const Entry& section) {
    needsAnything = true;
    for (const bool isSetting : {true, false}) {
      openElement(isSetting, "");
      open("attribute name=\"name\"");
      writeOtherNames(section, isSetting);
      close("attribute");
      line(isSetting ? "<text/>" : "<ref name=\"anything\"/>");
      close("element");
    }
  }

  void writeOtherNames(const Entry& section, bool isSetting) {
    std::vector<std::string> names;
    for (const Entry* entry : section.entries) {
      if (entry->described->isSetting() != isSetting) continue;
      names.push_back(entry->name);
      const auto& former = entry->described->formerNames;
      names.insert(names.end(), former.begin(), former.end());
    }
    if (names.empty()) return line("<text/>");
    open("data type=\"string\"");
    open("except");
    writeChoice(names);
    close("except");
    close("data");
  }

  void writeAnything() {
    openContent("anything");
    line("<element name=\"property\"><attribute name=\"name\"/><text/></element>");
    line("<element name=\"section\"><attribute name=\"name\"/><ref name=\"anything\"/></element>");
    closeContent();
  }

  void openContent(const std::string& name) {
    open("define name=\"" + name + "\"");
    open("zeroOrMore");
    open("choice");
    line("<element name=\"include\"><text/></element>");
  }

  void closeContent() {
    close("choice");
    close("zeroOrMore");
    close("define");
  }

  void writeChoice(const std::vector<std::string>& texts) {
    if (texts.size() > 1) open("choice");
    for (const std::string& text : texts) {
      line("<value type=\"string\">" + inXml(text, XmlPlace::ELEMENT) + "</value>");
    }
    if (texts.size() > 1) close("choice");
  }

  void refer(const Entry& content) {
    line("<ref name=\"" + nameOf(content) + "\"/>");
    wanted.push_back(&content);
  }

  // "content.hall.pump": a name of XML, which a path need not be.
  static std::string nameOf(const Entry& section) {
    std::string name = "content";
    if (section.described == nullptr) return name;
    name += ".";
    for (const char c : section.described->path) {
      const bool isPlain = isAlphanumeric(c) || c == '.';
      name += isPlain ? std::string(1, c) : "_" + inHexadecimal(c);
    }
    return name;
  }

  void open(const std::string& tag) {
    line("<" + tag + ">");
    ++depth;
  }
  void close(const std::string& name) {
    --depth;
    line("</" + name + ">");
  }
  void line(const std::string& text) { out << indentation(2 * depth) << text << "\n"; }

  std::ostream& out;
  const Outline& outline;
  std::vector<const Entry*> wanted;
  std::set<const Entry*> written;
  bool needsAnything = false;
  std::size_t depth = 0;
};

}  // namespace

void writeRelaxNg(std::ostream& out, const Outline& outline, const Entry& section) {
  Grammar(out, outline).write(outline.contentOf(section));
}

}  // namespace zuconfig
