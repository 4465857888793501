// How much stack the calling thread has left, for recursion that follows foreign input. Internal to
// the library.
#ifndef CPPUTIL_INTERNAL_STACKLEFT_HPP
#define CPPUTIL_INTERNAL_STACKLEFT_HPP

#include <cstddef>

namespace cppUtil::internal {

// Bytes from the caller's frame to the end of the thread's stack. The largest number when the
// caller does not run on the stack that the thread was made with. The first call on a thread asks
// the system, which takes some ten microseconds, and so does one after the limit on the stack of
// the initial thread was changed; others compare addresses.
std::size_t stackLeft();

}  // namespace cppUtil::internal

#endif
