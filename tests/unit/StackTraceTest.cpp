#include "cppUtil/err/StackTrace.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "cppUtil/err/internal/demangledFrame.hpp"
#include "cppUtil/export.hpp"

namespace unit {

using cppUtil::err::StackTrace;

// Exported and never inlined, so that frames show their names; the empty statements after the calls
// keep them from being tail calls.
ZU_EXPORT __attribute__((noinline)) void callWalker(StackTrace& trace, unsigned int depth) {
  trace.getTrace(depth);
  asm volatile("");
}

// Called with a number that the compiler cannot see: it would give it a copy of its own.
const volatile int deep = 3000;

ZU_EXPORT __attribute__((noinline)) void recurse(int levels, StackTrace& trace,
                                                 unsigned int depth) {
  if (levels == 0) {
    callWalker(trace, depth);
  } else {
    recurse(levels - 1, trace, depth);
  }
  asm volatile("");
}

}  // namespace unit

namespace {

using cppUtil::err::StackTrace;

#ifdef __SANITIZE_ADDRESS__
// AddressSanitizer stands between the walker and backtrace, as one more innermost frame.
constexpr std::size_t firstFrame = 1;
#else
constexpr std::size_t firstFrame = 0;
#endif

TEST(DemangledFrame, RewritesTheSymbolOnly) {
  const struct {
    const char* name;
    const char* frame;
    const char* expected;
  } rows[] = {
      {"C++ name", "lib.so.1(_ZN1a1bEi+0x5c) [0x8a5c]", "lib.so.1(a::b(int)+0x5c) [0x8a5c]"},
      {"C name that reads as a type", "app(f+0x1) [0x1]", "app(float+0x1) [0x1]"},
      {"no parenthesis", "app+0x1 [0x9000]", "app+0x1 [0x9000]"},
      {"the first parenthesis counts", "a(b(_Z1fv+0x1) [0x1]", "a(b(_Z1fv+0x1) [0x1]"},
      {"the last plus counts", "c++(_Z1fv+x+0x1) [0x1]", "c++(_Z1fv+x+0x1) [0x1]"},
      // The symbol then runs to the end of the text, and the tail starts at the plus.
      {"plus before the parenthesis", "c++(_Z1fv", "c++(f()+(_Z1fv"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(cppUtil::err::internal::demangledFrame(row.frame), row.expected) << row.name;
  }
}

TEST(StackTrace, AppendsToWhatItHolds) {
  StackTrace trace;
  unit::callWalker(trace, 5);
  auto expected = trace.getFrames();
  trace.getTrace(0);
  trace.getTrace(std::numeric_limits<unsigned int>::max());  // one more wraps to no slots at all
  EXPECT_EQ(trace.getFrames(), expected);
  unit::callWalker(trace, 3);
  ASSERT_EQ(trace.getFrames().size(), 8U);
  expected.insert(expected.end(), trace.getFrames().end() - 3, trace.getFrames().end());
  EXPECT_EQ(trace.getFrames(), expected);
}

// Around each size to which the walker's buffer grows.
TEST(StackTrace, StartsWithTheCallerAndStopsAtTheDepth) {
  for (const unsigned int depth : {1U, 127U, 128U, 255U, 256U, 2500U}) {
    StackTrace trace;
    unit::recurse(unit::deep, trace, depth);
    ASSERT_EQ(trace.getFrames().size(), depth);
    const char* expected = "(unit::callWalker(cppUtil::err::StackTrace&, unsigned int)+0x";
    for (std::size_t i = firstFrame; i < depth; ++i) {
      const std::string& frame = trace.getFrames()[i];
      ASSERT_NE(frame.find(expected), frame.npos) << depth << ", frame " << i << ": " << frame;
      expected = "(unit::recurse(";
    }
  }
}

}  // namespace
