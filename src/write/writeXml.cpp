// White space is kept: in attributes it is written as references, because a parser makes blanks of
// it otherwise, and so are carriage returns everywhere.
#include "write/writeXml.hpp"

#include <algorithm>
#include <stdexcept>

#include "cppUtil/internal/Character.hpp"
#include "cppUtil/internal/text.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "service/util/config/visit.hpp"

namespace service::util::config::write {

namespace {

using cppUtil::internal::Character;
using cppUtil::internal::isSafe;
using cppUtil::internal::quoted;

bool isControl(char32_t c) {
  return c < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

// Whether some text holds control characters that only XML 1.1 has.
class ControlFinder : public Visitor {
 public:
  void property(const Visited& visited, const std::string& value) override {
    look(visited.name);
    look(value);
  }

  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    look(visited.name);
    return true;
  }

  bool hasControls = false;

 private:
  void look(const std::string& text) {
    for (const char c : text) hasControls |= isControl(static_cast<unsigned char>(c));
  }
};

class XmlWriter : public Visitor {
 public:
  explicit XmlWriter(std::ostream& out) : out(out) {}

  void start(const std::string& name, bool isVersion11) {
    out << "<?xml version=\"" << (isVersion11 ? "1.1" : "1.0") << "\" encoding=\"UTF-8\"?>\n"
        << "<config xmlns=\"" << grammar::targetNamespace << "\" name=\"";
    writeText(name, true);
    out << "\" version=\"1.0\">\n";
  }

  void finish() { out << "</config>\n"; }

  void property(const Visited& visited, const std::string& value) override {
    indent();
    out << "<property name=\"";
    writeText(visited.name, true);
    out << "\">";
    writeText(value, false);
    out << "</property>\n";
  }

  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    indent();
    out << "<section name=\"";
    writeText(visited.name, true);
    out << "\">\n";
    ++depth;
    return true;
  }

  void leaveSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) override {
    --depth;
    indent();
    out << "</section>\n";
  }

 private:
  // What is nested deeply would consist of blanks otherwise.
  void indent() { out << std::string(std::min<std::size_t>(2 * depth, 80), ' '); }

  void writeText(const std::string& text, bool isAttribute) {
    for (std::size_t at = 0; at < text.size();) {
      const Character c(text.data() + at, text.size() - at);
      if (c.length == 0 || c.code == 0 || c.code == 0xFFFE || c.code == 0xFFFF) {
        throw std::runtime_error("XML cannot hold the text " + quoted(text));
      }
      writeCharacter(c, text.data() + at, isAttribute);
      at += c.length;
    }
  }

  void writeCharacter(const Character& c, const char* bytes, bool isAttribute) {
    if (c.code == '&') {
      out << "&amp;";
    } else if (c.code == '<') {
      out << "&lt;";
    } else if (c.code == '>') {
      out << "&gt;";
    } else if (c.code == '"' && isAttribute) {
      out << "&quot;";
    } else if (needsReference(c.code, isAttribute)) {
      out << "&#" << static_cast<std::uint32_t>(c.code) << ";";
    } else {
      out.write(bytes, static_cast<std::streamsize>(c.length));
    }
  }

  static bool needsReference(char32_t c, bool isAttribute) {
    if (c == '\n' || c == '\t') return isAttribute;
    return !isSafe(c);
  }

  std::ostream& out;
  std::size_t depth = 1;
};

}  // namespace

void writeXml(std::ostream& out, const IConfigPtr& config, const std::string& name) {
  ControlFinder finder;
  visit(config, finder);
  XmlWriter writer(out);
  writer.start(name, finder.hasControls);
  visit(config, writer);
  writer.finish();
}

}  // namespace service::util::config::write
