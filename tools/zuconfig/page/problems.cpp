#include "page/html.hpp"
#include "page/sections.hpp"
#include "report/ProblemText.hpp"

namespace zuconfig {

namespace {

using service::util::config::report::nameOf;

// The line of the file with a mark below, and the includes on the way there.
std::string quoteOf(const Subject& subject, const Finding& finding) {
  const FileNames& names = subject.loader.getNames();
  service::util::config::report::Style style;
  style.place = [&](const Location& location) { return names.shown(location); };
  const std::string text =
      format(finding.problem, finding.range, subject.loader.getSources(), style);
  return text.substr(text.find('\n') + 1);
}

}  // namespace

void writeProblems(std::ostream& out, const Subject& subject) {
  openSection(out, subject, "problems", "Problems");
  out << "<ol class=\"problems\">\n";
  for (std::size_t i = 0; i < subject.findings.size(); ++i) {
    const Finding& finding = subject.findings[i];
    const char* kind = nameOf(finding.problem.severity);
    out << "<li id=\"-problem" << subject.suffix << "-" << i << "\" class=\"" << kind
        << "\"><p><strong>" << kind << "</strong> " << inHtml(finding.problem.message)
        << " <small>[" << inHtml(finding.problem.rule) << "]</small></p>\n<p class=\"at\">";
    if (!subject.elements[i].empty()) {
      out << "<a href=\"" << linkTo(subject.elements[i]) << "\">" << inHtml(subject.elements[i])
          << "</a> at ";
    }
    out << "<code>" << inHtml(subject.loader.getNames().shown(finding.range.start()))
        << "</code></p>\n";
    const std::string quote = quoteOf(subject, finding);
    if (!quote.empty()) out << "<pre tabindex=\"0\">" << inHtml(quote) << "</pre>\n";
  }
  out << "</ol>\n</section>\n";
}

}  // namespace zuconfig
