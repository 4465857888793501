// The texts of the configuration module's error codes, apart from their registration so that they
// can be tested. Hidden. Any thread.
#ifndef SERVICE_UTIL_CONFIG_ERRORTEXTS_HPP
#define SERVICE_UTIL_CONFIG_ERRORTEXTS_HPP

#include <cstdint>

namespace service::util::config::internal {

// The texts of a code, static; any code outside the module's three gets a text that says so.
const char* errorName(std::uint32_t code);
const char* errorDescription(std::uint32_t code);

}  // namespace service::util::config::internal

#endif
