#include "report/ProblemText.hpp"

#include <algorithm>
#include <climits>

#include "cppUtil/internal/text.hpp"

namespace service::util::config::report {

namespace {

using xml::Problem;
using xml::Severity;

// In columns, with one for each character.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

// The line in which range begins, and marks below it.
std::string quote(const Range& range, SourceText& source, const Style& style) {
  const Excerpt excerpt = source.excerpt(range.start());
  if (excerpt.characters.empty()) return "";
  const int end = range.endLine == range.line ? range.endColumn : INT_MAX;
  std::string indent;
  std::size_t width = 0;
  for (const auto& [text, column] : excerpt.characters) {
    if (column < range.column) indent.append(text == "\t" ? text : std::string(widthOf(text), ' '));
    if (column >= range.column && column < end) width += widthOf(text);
  }
  const std::string number = std::to_string(range.line);
  const std::string margin(std::max<std::size_t>(number.size(), 5), ' ');
  return margin.substr(number.size()) + number + " | " + excerpt.text() + "\n" + margin + " | " +
         indent + style.mark + "^" + std::string(width > 1 ? width - 1 : 0, '~') + style.off + "\n";
}

}  // namespace

const char* nameOf(Severity severity) {
  return severity == Severity::ERROR ? "error" : "warning";
}

std::string format(const Problem& problem, const Range& range, SourceText& source,
                   const Style& style) {
  const char* colour = problem.severity == Severity::ERROR ? style.error : style.warning;
  std::string text = style.bold + style.place(range.start()) + ": " + style.off + colour +
                     nameOf(problem.severity) + ": " + style.off +
                     cppUtil::internal::printable(problem.message) + " [" + problem.rule + "]\n";
  text += quote(range, source, style);
  for (const Location& include : problem.includes) {
    text += style.place(source.rangeOf(include).start()) + ": note: included from here\n";
  }
  return text;
}

}  // namespace service::util::config::report
