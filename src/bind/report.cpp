#include <cutil/cutil.h>

#include "bind/Path.hpp"
#include "bind/Reported.hpp"
#include "cppUtil/err/Exception.hpp"

namespace service::util::config::bind {

namespace {

void add(internal::Reported& reported, xml::Severity severity, const std::string& field,
         const std::string& message) {
  if (field.empty()) {
    return reported.findings.add(severity, "refused", reported.path, message, reported.place);
  }
  const auto* name = reported.description.find(true, field);
  if (name == nullptr) name = reported.description.find(false, field);
  if (name == nullptr) {
    throw cppUtil::err::Exception(CU_INVALID_ARGUMENT, 0, "src/bind",
                                  "void service::util::config::bind::Report::error(const "
                                  "std::string&, const std::string&)",
                                  __LINE__, "")
        << "a check reports about \"" << field << "\", which is no field of the struct";
  }
  reported.findings.add(severity, "refused", internal::extended(reported.path, field), message,
                        reported.places[name->row]);
}

}  // namespace

void Report::error(const std::string& field, const std::string& message) {
  add(reported, xml::Severity::ERROR, field, message);
}

void Report::warning(const std::string& field, const std::string& message) {
  add(reported, xml::Severity::WARNING, field, message);
}

}  // namespace service::util::config::bind
