// A file to begin with. What is not in force is a comment, line by line, so that each can be taken
// into force alone.
#include "schema/formats.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "shared/description.hpp"
#include "shared/text.hpp"
#include "write/xmlText.hpp"

namespace zuconfig {

namespace {

using namespace service::util::config;
using bind::internal::Holder;
using bind::internal::Kind;
using write::inXml;
using write::XmlPlace;

// A value that is accepted, or nothing when only the program knows one.
std::optional<std::string> sampleOf(const Described& described) {
  if (!described.sample.empty()) return described.sample;
  const auto& defaults = described.defaults;
  if (!defaults.empty() && !defaults.front().empty()) return defaults.front();
  if (!described.lowest.empty()) return described.lowest;
  switch (*described.type) {
    case Kind::BOOLEAN:
      return "false";
    case Kind::ENUMERATION:
      if (described.names.empty()) return std::nullopt;
      return described.names.front();
    case Kind::INTEGER:
    case Kind::FLOATING:
      return "0";
    case Kind::DURATION:
    case Kind::BYTES:
      return "0" + bind::internal::unitsOf(described).front();
    case Kind::CUSTOM:
      return std::nullopt;
    default:
      return "...";
  }
}

class Example {
 public:
  Example(std::ostream& out, const Outline& outline) : out(out), outline(outline) {}

  std::vector<std::string> write(const Entry& section, const std::string& program) {
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        << "<config xmlns=\"" << grammar::targetNamespace << "\" name=\""
        << inXml(program, XmlPlace::ATTRIBUTE) << "\" version=\"1.0\">\n";
    writeEntries(outline.contentOf(section), true);
    out << "</config>\n";
    return unknown;
  }

 private:
  void writeEntries(const Entry& section, bool isInForce) {
    for (const Entry* entry : section.entries) {
      if (entry != section.entries.front()) out << "\n";
      if (entry->described->isSetting()) {
        const bool isKey = section.described != nullptr && section.described->key == entry->name;
        writeSetting(*entry, isInForce, isKey || entry->described->isRequired);
      } else {
        writeSection(*entry, isInForce);
      }
    }
  }

  void writeSetting(const Entry& entry, bool isInForce, bool isRequired) {
    const Described& described = *entry.described;
    remark(described, isRequired);
    const auto sample = sampleOf(described);
    const bool isNeeded = isInForce && (isRequired || described.least > 0);
    if (isNeeded && !sample) unknown.push_back(described.path);
    if (isNeeded && sample) {
      for (std::uint32_t i = 0; i < std::max(1U, described.least); ++i) {
        line(property(entry.name, *sample), true);
      }
    } else if (described.sample.empty() && !described.defaults.empty()) {
      for (const std::string& value : described.defaults) {  // no file can have an empty one
        line(property(entry.name, value.empty() ? "..." : value), false);
      }
    } else {
      line(property(entry.name, sample.value_or("...")), false);
    }
  }

  void writeSection(const Entry& entry, bool isInForce) {
    const Described& described = *entry.described;
    remark(described, described.isRequired);
    const bool isPlain = described.form == Holder::SECTION && !described.isOptional;
    const bool isNeeded = isInForce && (isPlain || described.isRequired || described.least > 0);
    const std::uint32_t count = isNeeded ? std::max(1U, described.least) : 1;
    if (count > 1 && !described.key.empty()) unknown.push_back(described.path);
    for (std::uint32_t i = 0; i < count; ++i) {
      line("<section name=\"" + inXml(entry.name, XmlPlace::ATTRIBUTE) + "\">", isNeeded);
      ++depth;
      writeEntries(entry, isNeeded);
      --depth;
      line("</section>", isNeeded);
    }
  }

  void remark(const Described& described, bool isRequired) {
    if (!described.text.empty()) remark(printable(described.text));
    std::string text = formOf(described);
    if (isRequired) text += "; required";
    for (const std::string& more : remarksOn(described)) text += "; " + more;
    if (text != "section") remark(text);
  }

  void remark(const std::string& text) {
    out << indentation(4 * depth) << "<!-- " << withoutRows(text, " -") << " -->\n";
  }

  static std::string property(const std::string& name, const std::string& value) {
    return "<property name=\"" + inXml(name, XmlPlace::ATTRIBUTE) + "\">" +
           inXml(value, XmlPlace::ELEMENT) + "</property>";
  }

  void line(const std::string& element, bool isInForce) {
    out << indentation(4 * depth)
        << (isInForce ? element : "<!-- " + withoutRows(element, "&#45;") + " -->") << "\n";
  }

  // A comment of XML holds no two hyphens in a row: where one follows another, it becomes what is
  // given for it.
  static std::string withoutRows(const std::string& text, const char* instead) {
    std::string safe;
    bool isHyphen = false;
    for (const char c : text) {
      safe += isHyphen && c == '-' ? instead : std::string(1, c);
      isHyphen = c == '-';
    }
    return safe;
  }

  std::ostream& out;
  const Outline& outline;
  std::vector<std::string> unknown;
  std::size_t depth = 1;
};

}  // namespace

std::vector<std::string> writeExample(std::ostream& out, const Outline& outline,
                                      const Entry& section, const std::string& program) {
  return Example(out, outline).write(section, program);
}

}  // namespace zuconfig
