#include "bind/Findings.hpp"

#include <cutil/cutil.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <tuple>

#include "cppUtil/err/Exception.hpp"
#include "service/util/config/bind.hpp"

namespace service::util::config::bind {

namespace internal {

std::string alreadyThere(const Place& first) {
  const int line = first.location.line;
  return line > 0 ? "is there already, in line " + std::to_string(line) : "is there already";
}

void refuse(const std::vector<xml::Problem>& problems, const char* function) {
  std::string message;
  for (const xml::Problem& problem : problems) {
    message += (message.empty() ? "" : "\n") + toText(problem);
  }
  throw cppUtil::err::Exception(CU_INVALID_ARGUMENT, 0, "src/bind", function, __LINE__, message);
}

void Findings::add(xml::Severity severity, const char* rule, const std::string& path,
                   const std::string& message, const Place& place) {
  if (severity == xml::Severity::ERROR) ++errorCount;
  std::vector<xml::Location> includes;
  for (const auto* file = place.file; file != nullptr && file->includer != nullptr;
       file = file->includer) {
    includes.push_back(file->include);
  }
  const bool isElsewhere = place.file == nullptr && !place.location.file.empty();
  const std::size_t order = isElsewhere ? SIZE_MAX : precedence.order(place.file);
  found.push_back({order,
                   {severity, rule, (path.empty() ? "" : path + ": ") + message, path,
                    place.location, std::move(includes)}});
}

bool Findings::take(std::vector<xml::Problem>& problems) {
  const auto key = [](const Found& one) {
    return std::make_tuple(one.order, one.problem.location.line, one.problem.location.column);
  };
  std::stable_sort(found.begin(), found.end(),
                   [&](const Found& a, const Found& b) { return key(a) < key(b); });
  for (Found& one : found) {
    problems.push_back(std::move(one.problem));
  }
  found.clear();
  return errorCount == 0;
}

}  // namespace internal

namespace {

// As seen from the current directory, where file is below it; a service often stands in the root.
std::string shortened(const std::string& file) {
  std::error_code error;
  const auto current = std::filesystem::current_path(error).string() + "/";
  std::string path = std::filesystem::path(file).lexically_normal();
  if (error || current == "//" || path.rfind(current, 0) != 0) return path;
  return path.substr(current.size());
}

}  // namespace

std::string toText(const xml::Problem& problem) {
  const xml::Location& at = problem.location;
  std::string text;
  if (!at.file.empty()) {
    text = at.file.front() == '/' ? shortened(at.file) : at.file;
    if (at.line > 0) text += ":" + std::to_string(at.line) + ":" + std::to_string(at.column);
    text += ": ";
  }
  text += problem.severity == xml::Severity::ERROR ? "error: " : "warning: ";
  return text + problem.message + " [" + problem.rule + "]";
}

}  // namespace service::util::config::bind
