// One form for problems, whoever prints them: the library for programs, the command for the eye.
#ifndef SRC_REPORT_PROBLEMTEXT_HPP
#define SRC_REPORT_PROBLEMTEXT_HPP

#include <functional>
#include <string>

#include "report/SourceText.hpp"
#include "service/util/config/xml/check.hpp"

namespace service::util::config::report {

// What differs between those who print.
struct Style {
  // How a place is called: "file:line:column", or what of it is known. Safe to show.
  std::function<std::string(const Location&)> place;

  // What switches a terminal to a colour; nothing when there is none.
  const char* bold = "";
  const char* error = "";
  const char* warning = "";
  const char* mark = "";
  const char* off = "";
};

const char* nameOf(xml::Severity severity);

// The lines for one problem, as xml::format describes them. range: the part of a file to show.
std::string format(const xml::Problem& problem, const Range& range, SourceText& source,
                   const Style& style);

}  // namespace service::util::config::report

#endif
