#include "live/Choices.hpp"

#include <cutil/cutil.h>

#include "cppUtil/err/Exception.hpp"

namespace service::util::config::live::internal {

Choices::Choices() : held(std::make_shared<Held>()) {}
Choices::Choices(const Choices&) = default;
Choices& Choices::operator=(const Choices&) = default;
Choices::~Choices() = default;

void Choices::keepLastGood(const std::string& path) {
  held->lastGood = path;
}

void Choices::overrides(const bind::Overrides& overrides) {
  held->overrides = overrides;
}

void Choices::slowPoll(std::chrono::nanoseconds time) {
  if (time.count() <= 0) {
    throw cppUtil::err::Exception(
        CU_INVALID_ARGUMENT, 0, "src/live",
        "Options& service::util::config::Live<S>::Options::slowPoll(nanoseconds)", __LINE__,
        "the time between two looks at the files must be more than none");
  }
  held->slowPoll = time;
}

void Choices::onCheck(Check check) {
  held->checks.push_back(std::move(check));
}

}  // namespace service::util::config::live::internal
