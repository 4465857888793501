#include "write/writeXml.hpp"

#include <algorithm>

#include "service/util/config/grammar/getGrammar.hpp"
#include "service/util/config/visit.hpp"
#include "write/xmlText.hpp"

namespace service::util::config::write {

namespace {

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
        << "<config xmlns=\"" << grammar::targetNamespace << "\" name=\""
        << inXml(name, XmlPlace::ATTRIBUTE) << "\" version=\"1.0\">\n";
  }

  void finish() { out << "</config>\n"; }

  void property(const Visited& visited, const std::string& value) override {
    indent();
    out << "<property name=\"" << inXml(visited.name, XmlPlace::ATTRIBUTE) << "\">"
        << inXml(value, XmlPlace::ELEMENT) << "</property>\n";
  }

  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    indent();
    out << "<section name=\"" << inXml(visited.name, XmlPlace::ATTRIBUTE) << "\">\n";
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
