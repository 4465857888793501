// A call into the library that may fail: fills the calling thread's error record and keeps
// exceptions inside the C interface.
//
// Every entry point that can fail makes one Call and runs its body in guarded(). Filling the record
// allocates nothing, so that running out of memory can be reported.
#pragma once

#include <cutil/cutil.h>

#include <cstdint>

namespace cutil {

inline constexpr std::uint32_t success = CU_OK;

class Call {
 public:
  // file: the unit as the record names it ("platform/cutil/String"); function: the entry point.
  // Both must be static texts.
  Call(const char* file, const char* function) : file(file), function(function) {}

  // Fills the record and returns code. A description beyond the record's size is cut.
  std::uint32_t fail(cu_GenericCode code, const char* description, int systemError = 0,
                     int line = __builtin_LINE()) const noexcept;
  std::uint32_t missing(const char* argument, int line = __builtin_LINE()) const noexcept;
  std::uint32_t invalid(const char* argument, std::uint64_t value, const char* expectation,
                        int line = __builtin_LINE()) const noexcept;
  // To be called while an exception is being handled.
  std::uint32_t failWithCurrentException(int line) const noexcept;

 private:
  const char* file;
  const char* function;
};

template <class Body>
std::uint32_t guarded(const Call& call, const Body& body, int line = __builtin_LINE()) noexcept {
  try {
    return body();
  } catch (...) {
    return call.failWithCurrentException(line);
  }
}

}  // namespace cutil
