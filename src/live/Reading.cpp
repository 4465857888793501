#include "live/Reading.hpp"

#include <cutil/cutil.h>

#include <algorithm>

#include "bind/Reader.hpp"
#include "cppUtil/err/Exception.hpp"

namespace service::util::config::live {

using cppUtil::err::Exception;

xml::Problem caught(const char* rule, const std::string& prefix) {
  std::string text = "something that is no exception";
  try {
    throw;
  } catch (const Exception& e) {
    text = e.getMessage().empty() ? e.what() : e.getMessage();
  } catch (const std::exception& e) {
    text = e.what();
  } catch (...) {  // has no text
  }
  return {xml::Severity::ERROR, rule, prefix + text, "", {}, {}};
}

Reading::Reading(const internal::Followed& type, const Source& source,
                 const bind::Overrides& overrides) {
  load(source);
  if (config == nullptr) return;
  if (type.structure == nullptr) {
    object = config;
    settings = settingsOf(config, *origins);
    isGood = true;
    return;
  }
  try {
    bind(type, overrides);
  } catch (...) {
    failure = std::current_exception();
    problems.push_back(caught("refused", ""));
    isGood = false;
  }
}

// A load ends with the first mistake; a check tells all, and looks into files that the load did not
// come to.
void Reading::load(const Source& source) {
  try {
    config = xml::create(source.file, source.schemes, source.validate, *origins);
    return;
  } catch (...) {
    failure = std::current_exception();
    problems.push_back(caught("unloadable", ""));
    problems.back().location.file = source.file;
  }
  try {
    std::vector<xml::Problem> all =
        xml::check(source.file, source.schemes, source.validate, *origins);
    const auto isWarning = [](const xml::Problem& problem) {
      return problem.severity == xml::Severity::WARNING;
    };
    all.erase(std::remove_if(all.begin(), all.end(), isWarning), all.end());
    if (!all.empty()) problems = std::move(all);
  } catch (const Exception&) {  // the failure of the load is told
  }
}

void Reading::bind(const internal::Followed& type, const bind::Overrides& overrides) {
  object = type.make();
  const auto& description = type.structure->fields().get();
  bind::internal::requireSound(*type.structure, object.get());
  bind::internal::Request request = {description, object.get(), config, origins.get(), overrides};
  request.survey = &survey;
  const bind::internal::Precedence precedence(origins.get());
  bind::internal::Findings findings(precedence);
  bind::internal::Reader(request, precedence, findings).read();
  isGood = findings.take(problems);
  if (isGood) settings = settingsOf(description, object.get(), survey);
}

void Reading::refuse() const {
  if (failure != nullptr) std::rethrow_exception(failure);
  std::string message;
  for (const xml::Problem& problem : problems) {
    message += (message.empty() ? "" : "\n") + bind::toText(problem);
  }
  throw Exception(
      CU_INVALID_ARGUMENT, 0, "src/live",
      "service::util::config::Live<S>::Live(const std::string&, const SchemeList&, bool)", __LINE__,
      message);
}

}  // namespace service::util::config::live
