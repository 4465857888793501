#include "cppUtil/err/StackTrace.hpp"

#include <cxxabi.h>
#include <execinfo.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

#include "cppUtil/err/internal/demangledFrame.hpp"

namespace cppUtil::err {

namespace {

constexpr unsigned int initialSlots = 128;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

}  // namespace

namespace internal {

std::string demangledFrame(const std::string& frame) {
  const auto open = frame.find('(');
  const auto plus = frame.rfind('+');
  if (open == std::string::npos || plus == std::string::npos) return frame;

  // When the last '+' stands before the first '(' the length wraps and the symbol runs to the end
  // of the text. Callers know these texts; they stay as they are.
  std::string name = frame.substr(open + 1, plus - 1 - open);
  int status = 0;
  const std::unique_ptr<char, Free> demangled(
      abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status));
  if (status == 0) name = demangled.get();
  return frame.substr(0, open) + "(" + name + frame.substr(plus);
}

}  // namespace internal

// The walker must have a frame of its own, and call backtrace from it: frame 0 is skipped as this
// function.
__attribute__((noinline)) void StackTrace::getTrace(unsigned int depth) {
  const unsigned int limit = depth + 1;  // one more for the walker; wraps to 0 at the largest depth
  if (limit == 0) return;
  std::vector<void*> addresses(std::min(limit, initialSlots));
  unsigned int count = 0;
  for (;;) {
    count =
        static_cast<unsigned int>(backtrace(addresses.data(), static_cast<int>(addresses.size())));
    if (count < addresses.size() || addresses.size() == limit) break;
    addresses.assign(std::min<std::size_t>(2 * addresses.size(), limit), nullptr);
  }
  if (count < 2) return;

  const std::unique_ptr<char*, Free> symbols(
      backtrace_symbols(addresses.data(), static_cast<int>(count)));
  if (!symbols) throw std::bad_alloc();
  for (unsigned int i = 1; i < count; ++i) {
    frames.push_back(internal::demangledFrame(symbols.get()[i]));
  }
}

}  // namespace cppUtil::err
