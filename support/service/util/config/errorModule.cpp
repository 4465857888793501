#include "service/util/config/errorModule.hpp"

#include <cutil/cutil.h>

#include "service/util/config/errorTexts.hpp"

namespace service::util::config::internal {

namespace {

constexpr std::uint32_t moduleNumber = 3;
constexpr std::uint32_t localBits = 24;

// The doubled word is part of the text.
constexpr const char* unknownCode = "Unknown Error error code";

cu_Resolver resolver = {"serviceUtilConfig", errorName, errorDescription};

// Registered by a static initialiser, so before any operation of the library can be called, and
// never undone. A failure cannot be told to anybody here; what() then names an unknown module.
[[maybe_unused]] const std::uint32_t registration =
    cu_SetResolver(moduleNumber, resolver, localBits);

}  // namespace

const char* errorName(std::uint32_t code) {
  switch (code) {
    case INVALID_SELECT:
      return "INVALID_SELECT";
    case NOT_FOUND:
      return "NOT_FOUND";
    case DUPLICATE_SECTION:
      return "DUPLICATE_SECTION";
    default:
      return unknownCode;
  }
}

const char* errorDescription(std::uint32_t code) {
  switch (code) {
    case INVALID_SELECT:
      return "Ivalid configuration property select string!";  // spelled so; tools match it
    case NOT_FOUND:
      return "Requested configuration property not found!";
    case DUPLICATE_SECTION:
      return "Duplicated configuration section!";
    default:
      return unknownCode;
  }
}

}  // namespace service::util::config::internal
