#include <unordered_map>
#include <unordered_set>

#include "page/html.hpp"
#include "page/sections.hpp"
#include "report/ProblemText.hpp"
#include "shared/description.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::spellPath;
using service::util::config::Visited;
using service::util::config::Visitor;
using service::util::config::report::nameOf;

// What a setting is about, and what it may be.
std::string inWords(const Described& described) {
  std::string text = printable(described.text);
  for (const std::string& line : linesOf(described)) text += (text.empty() ? "" : " · ") + line;
  return text;
}

constexpr std::size_t mostOpenValues = 1000;  // of more, the sections are closed at first

class TreeWriter : public Visitor {
 public:
  TreeWriter(std::ostream& out, const Subject& subject) : out(out), subject(subject) {
    std::unordered_set<std::string> known;
    std::size_t number = 0;
    for (const auto& file : subject.origins.getFiles()) {
      if (!known.insert(file.path).second) readAgain.emplace(&file, number);
      ++number;
    }
  }

  // End tags that HTML does not need are left out: there are many.
  void property(const Visited& visited, const std::string& value) override {
    const Origins::Origin origin = subject.originOf(visited, false);
    out << "<li id=\"" << inHtml(visited.path) << "\"" << readingOf(origin) << "><b>"
        << inHtml(spellPath("", visited.name, visited.index, visited.count)) << "</b> = <bdi>"
        << inHtml(escaped(subject.shown(visited.parent, visited.name, value))) << "</bdi> "
        << placeOf(subject, origin);
    if (const Described* described = subject.describedAt(visited.parent, visited.name)) {
      out << " <small>" << inHtml(inWords(*described)) << "</small>";
    }
    writeRemarks(origin);
    out << "\n";
  }

  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    const Origins::Origin origin = subject.originOf(visited, true);
    out << "<li class=\"section\"><details id=\"" << inHtml(visited.path) << ".\""
        << (subject.values <= mostOpenValues ? " open" : "") << "><summary><b>"
        << inHtml(spellPath("", visited.name, visited.index, visited.count)) << "</b> <i>"
        << inHtml(subject.loader.getNames().shown(origin)) << "</i>";
    writeRemarks(origin);
    out << "</summary><ul>\n";
    return true;
  }

  void leaveSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) override {
    out << "</ul></details>\n";
  }

 private:
  // Of a file that is read several times, which reading it was, unless it was the first.
  std::string readingOf(const Origins::Origin& origin) const {
    const auto found = readAgain.find(origin.file);
    if (found == readAgain.end()) return "";
    return " data-reading=\"" + std::to_string(found->second) + "\"";
  }

  void writeRemarks(const Origins::Origin& origin) const {
    for (const std::size_t number : subject.findingsAt(origin)) {
      const Problem& problem = subject.findings[number].problem;
      const char* kind = nameOf(problem.severity);
      out << " <em class=\"" << kind << "\"><strong>" << kind << "</strong> "
          << inHtml(problem.message) << "</em>";
    }
  }

  std::ostream& out;
  const Subject& subject;
  std::unordered_map<const Origins::File*, std::size_t> readAgain;  // and their numbers
};

}  // namespace

std::string filePrefix(const Subject& subject) {
  return "-file" + subject.suffix + "-";
}

std::string placeOf(const Subject& subject, const Origins::Origin& origin) {
  if (origin.file == nullptr) return "";
  const std::size_t number = subject.numberOf(origin.file->path);
  return "<a href=\"" + linkTo(filePrefix(subject) + std::to_string(number)) + "\">" +
         inHtml(subject.loader.getNames().shown(origin)) + "</a>";
}

void openSection(std::ostream& out, const Subject& subject, const char* id, const char* title) {
  const std::string full = "-" + (id + subject.suffix);
  out << "<section id=\"" << full << "\" aria-labelledby=\"" << full << "-title\">\n<h2 id=\""
      << full << "-title\">" << title;
  if (!subject.suffix.empty()) out << " of " << inHtml(subject.name);
  out << "</h2>\n";
}

void writeTree(std::ostream& out, const Subject& subject) {
  openSection(out, subject, "values", "Values");
  out << "<ul class=\"tree\">\n";
  TreeWriter writer(out, subject);
  service::util::config::visit(subject.config, writer);
  out << "</ul>\n</section>\n";
}

void writeUnset(std::ostream& out, const Subject& subject) {
  openSection(out, subject, "unset", "Not set");
  out << "<ul class=\"tree\">\n";
  for (const Surveyed* entry : subject.unset) {
    out << "<li><b>" << inHtml(entry->path) << "</b> <small>" << inHtml(inWords(*entry->described))
        << "</small>\n";
  }
  out << "</ul>\n</section>\n";
}

}  // namespace zuconfig
