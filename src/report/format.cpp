#include "service/util/config/xml/format.hpp"

#include "cppUtil/internal/text.hpp"
#include "report/ProblemText.hpp"

namespace service::util::config::xml {

namespace {

std::string placeOf(const Location& location) {
  std::string text = cppUtil::internal::printable(location.file);
  if (location.line > 0) {
    text += ":" + std::to_string(location.line) + ":" + std::to_string(location.column);
  }
  return text;
}

}  // namespace

std::string format(const Problem& problem) {
  return format(std::vector<Problem>{problem});
}

std::string format(const std::vector<Problem>& problems) {
  report::SourceText source;
  report::Style style;
  style.place = placeOf;
  std::string text;
  for (const Problem& problem : problems) {
    text += report::format(problem, source.rangeOf(problem.location), source, style);
  }
  return text;
}

}  // namespace service::util::config::xml
