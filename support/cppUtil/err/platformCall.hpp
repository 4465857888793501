// Turns a failed call of the platform libraries into an exception. Hidden.
#ifndef CPPUTIL_ERR_PLATFORMCALL_HPP
#define CPPUTIL_ERR_PLATFORMCALL_HPP

#include <cstdint>

namespace cppUtil::err {

// Returns when result is 0. Otherwise throws an Exception with result as its code and everything
// else taken from the calling thread's error record.
void checkPlatformCall(std::uint32_t result);

}  // namespace cppUtil::err

#endif
