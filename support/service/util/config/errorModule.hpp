// The configuration module's error codes, module 3 "serviceUtilConfig". Their names and
// descriptions are registered with the C utility library's error registry when the library is
// loaded, and are asked for there.
#ifndef SERVICE_UTIL_CONFIG_ERRORMODULE_HPP
#define SERVICE_UTIL_CONFIG_ERRORMODULE_HPP

#include <cstdint>

namespace service::util::config {

// What Exception::getCode answers for the failures of this module.
enum ErrorCode : std::uint32_t {
  INVALID_SELECT = 0x3000000,     // a selector string is malformed
  NOT_FOUND = 0x3000001,          // a required section or property is not there
  DUPLICATE_SECTION = 0x3000002,  // internal::Section: the parent has a child of that name
};

}  // namespace service::util::config

#endif
