#include "cppUtil/internal/stackLeft.hpp"

#include <pthread.h>

#include <cstdint>
#include <limits>

namespace cppUtil::internal {

namespace {

using Address = std::uintptr_t;

struct Stack {
  Address end = 0;    // the lowest address that may be used
  Address begin = 0;  // one above the highest
};

// Where the system does not tell, as without /proc, a modest stack below here is assumed.
constexpr std::size_t assumedSize = 512UL * 1024;

Stack stackOf(pthread_t thread, Address here) {
  pthread_attr_t attributes;
  if (pthread_getattr_np(thread, &attributes) != 0) return {here - assumedSize, here + assumedSize};
  void* lowest = nullptr;
  std::size_t size = 0;
  std::size_t guard = 0;
  pthread_attr_getstack(&attributes, &lowest, &size);
  pthread_attr_getguardsize(&attributes, &guard);
  pthread_attr_destroy(&attributes);
  const auto end = reinterpret_cast<Address>(lowest);
  return {end + guard, end + size};
}

}  // namespace

std::size_t stackLeft() {
  const auto here = reinterpret_cast<Address>(__builtin_frame_address(0));
  thread_local const Stack stack = stackOf(pthread_self(), here);
  if (here >= stack.begin) return std::numeric_limits<std::size_t>::max();
  // Below the end by less than a guard is still this stack; further away it is another one.
  if (here < stack.end) {
    return stack.end - here < assumedSize ? 0 : std::numeric_limits<std::size_t>::max();
  }
  return here - stack.end;
}

}  // namespace cppUtil::internal
