#include "cppUtil/internal/stackLeft.hpp"

#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace cppUtil::internal {

namespace {

using Address = std::uintptr_t;

// What is known of a thread's stack; nothing as long as begin is 0.
struct Stack {
  Address begin;   // one above the highest address
  Address end;     // the lowest address that may be used
  Address lowest;  // the lowest that end has been
  rlim_t limit;    // of the process, when end was found
  bool isInitial;  // of the thread that the process began with, whose end follows the limit
};

// Without constructor, and in the room that each thread has from the start: to use it takes no
// memory.
[[gnu::tls_model("initial-exec")]] thread_local Stack stack;

// Where the system does not tell, as without /proc, a modest stack below here is assumed.
constexpr std::size_t assumedSize = 512UL * 1024;

void findBounds(Address here) {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
    stack.end = here - assumedSize;
    stack.begin = here + assumedSize;
    return;
  }
  void* lowest = nullptr;
  std::size_t size = 0;
  std::size_t guard = 0;
  pthread_attr_getstack(&attributes, &lowest, &size);
  pthread_attr_getguardsize(&attributes, &guard);
  pthread_attr_destroy(&attributes);
  stack.end = reinterpret_cast<Address>(lowest) + guard;
  stack.begin = reinterpret_cast<Address>(lowest) + size;
}

void updateBounds(Address here) {
  const bool isKnown = stack.begin != 0;
  if (isKnown && !stack.isInitial) return;
  rlimit limit = {};
  ::getrlimit(RLIMIT_STACK, &limit);
  if (isKnown && stack.limit == limit.rlim_cur) return;
  if (!isKnown) stack.isInitial = ::syscall(SYS_gettid) == ::getpid();
  stack.limit = limit.rlim_cur;
  findBounds(here);
  stack.lowest = isKnown ? std::min(stack.lowest, stack.end) : stack.end;
}

}  // namespace

std::size_t stackLeft() {
  const auto here = reinterpret_cast<Address>(__builtin_frame_address(0));
  updateBounds(here);
  if (here >= stack.begin) return std::numeric_limits<std::size_t>::max();
  if (here >= stack.end) return here - stack.end;
  // Below the end by less than a guard is still this stack; further away it is another one.
  const bool isBelow = here >= stack.lowest || stack.lowest - here < assumedSize;
  return isBelow ? 0 : std::numeric_limits<std::size_t>::max();
}

}  // namespace cppUtil::internal
