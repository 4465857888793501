// The settings of a program for its manual: as a table, and as a manual page.
#include <algorithm>

#include "schema/formats.hpp"
#include "shared/description.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::bind::internal::Kind;

// Every entry below section, each section before what is in it.
template <class Write>
void forAll(const Entry& section, const Write& write) {
  for (const Entry* entry : section.entries) {
    write(*entry->described);
    forAll(*entry, write);
  }
}

std::string capitalised(std::string text) {
  if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 32);
  return text;
}

std::string sentences(const Described& described) {
  std::string text;
  const auto add = [&](const std::string& remark) {
    text += (text.empty() ? "" : " ") + capitalised(remark) + ".";
  };
  if (!described.text.empty()) add(printable(described.text));
  for (const std::string& remark : remarksOn(described)) add(remark);
  return text;
}

// Behind a backslash each character that marks would act on.
std::string backslashed(const std::string& text, const char* marks) {
  std::string escaped;
  for (const char c : text) {
    if (std::string(marks).find(c) != std::string::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

std::string inMarkdown(const std::string& text) {
  return backslashed(text, "\\`*_[]<>&|");
}

// A span of code, fenced by more backquotes than text has in a row.
std::string asCode(const std::string& text) {
  std::size_t longest = 0;
  for (std::size_t at = 0, row = 0; at < text.size(); ++at) {
    row = text[at] == '`' ? row + 1 : 0;
    longest = std::max(longest, row);
  }
  const std::string fence(longest + 1, '`');
  const char* margin = longest > 0 ? " " : "";
  return fence + margin + backslashed(printable(text), "|") + margin + fence;
}

std::string defaultInMarkdown(const Described& described) {
  if (described.isRequired) return "**required**";
  std::string text;
  for (const std::string& value : described.defaults) {
    if (!text.empty()) text += ", ";
    text += value.empty() ? "empty" : asCode(value);
  }
  return text;
}

// text for roff. A dot or a quote at the start of a line would be a request.
std::string inRoff(const std::string& text) {
  std::string escaped = !text.empty() && (text[0] == '.' || text[0] == '\'') ? "\\&" : "";
  for (const char c : text) {
    if (c == '\\') {
      escaped += "\\e";
    } else {
      escaped += c == '-' ? "\\-" : std::string(1, c);
    }
  }
  return escaped;
}

std::string defaultInRoff(const Described& described) {
  if (described.isRequired) return "Required.";
  std::string text;
  for (const std::string& value : described.defaults) {
    text += (text.empty() ? "The default is " : ", ") + inRoff(quoted(value));
  }
  return text.empty() ? "" : text + ".";
}

}  // namespace

void writeMarkdown(std::ostream& out, const Outline& outline, const std::string& program) {
  out << "# Settings of " << inMarkdown(printable(program)) << "\n\n"
      << "| setting | value | default | meaning |\n| --- | --- | --- | --- |\n";
  forAll(outline.section(""), [&](const Described& described) {
    out << "| " << asCode(described.path) << " | " << inMarkdown(formOf(described)) << " | "
        << defaultInMarkdown(described) << " | " << inMarkdown(sentences(described)) << " |\n";
  });
}

void writeManual(std::ostream& out, const Outline& outline, const std::string& program) {
  const std::string name = inRoff(printable(program));
  out << ".TH \"" << backslashed(name, "\"") << "\" 5\n.SH NAME\n"
      << name << " \\- settings\n.SH DESCRIPTION\n"
      << "The settings of " << name << " stand in files that\n.BR zuconfig\\-format (5)\n"
      << "describes. A dot leads into a section.\n.SH SETTINGS\n";
  forAll(outline.section(""), [&](const Described& described) {
    out << ".TP\n.B " << inRoff(described.path) << "\n"
        << capitalised(inRoff(formOf(described))) << ".\n";
    for (const std::string& text : {inRoff(sentences(described)), defaultInRoff(described)}) {
      if (!text.empty()) out << text << "\n";
    }
  });
  out << ".SH SEE ALSO\n.BR zuconfig (1),\n.BR zuconfig\\-format (5)\n";
}

}  // namespace zuconfig
