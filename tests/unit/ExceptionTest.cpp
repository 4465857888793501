#include "cppUtil/err/Exception.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <iomanip>

#include "Failure.hpp"
#include "cppUtil/err/describe.hpp"

namespace {

using cppUtil::err::Exception;

TEST(Exception, MessageGrowsByInsertion) {
  using namespace std::string_literals;
  const struct {
    const char* name;
    std::function<void(Exception&)> insert;
    std::string message;
  } rows[] = {
      {"chained", [](Exception& e) { e << "a" << 5U << "b"s; }, "a5b"},
      {"null between texts",
       [](Exception& e) { e << "a" << static_cast<const char*>(nullptr) << "b"; }, "ab"},
      {"string with a NUL", [](Exception& e) { e << "a\0b"s; }, "a\0b"s},
      {"negative", [](Exception& e) { e << -2147483647 - 1; }, "-2147483648"},
      {"flags end with the value", [](Exception& e) { e << std::hex << std::setw(4) << 255; },
       "255"},
  };
  for (const auto& row : rows) {
    Exception e(1, 0, "", "", 0, "");
    row.insert(e);
    EXPECT_EQ(e.getMessage(), row.message) << row.name;
  }
}

TEST(Exception, IsDescribedOnOneLine) {
  const struct {
    Exception e;
    const char* expected;
  } rows[] = {
      {{0x3000001, 0, "src/config", "f()", 98, "no \"hall\""},
       "NOT_FOUND (0x3000001): no \"hall\" [src/config:98]"},
      {{6, 0, "src/xmlConfig", "f()", 7, "Report:\n\tERROR  a\x1b\n\tFATAL  b\n"},
       "EXCEPTION (0x6): Report: ERROR  a\\x1b FATAL  b [src/xmlConfig:7]"},
      {{1, 13, "x", "f()", 0, ""}, "MISSING_ARGUMENT (0x1): Permission denied [x:0]"},
  };
  for (const auto& row : rows) EXPECT_EQ(cppUtil::err::describe(row.e), row.expected);
}

// A thrown copy of a streamed temporary must tell where the temporary was built.
TEST(Exception, CopiesCarryEverythingAndTheStackOfTheConstruction) {
  Exception source(0x3000002, 13, "src/unit", "void f()", 7, "text");
  const auto& frames = source.getStackTrace().getFrames();
  ASSERT_GE(frames.size(), 2U);
  try {
    throw source << " and more";
  } catch (const Exception& thrown) {
    EXPECT_NE(&thrown, &source);
    EXPECT_EQ(unit::failureIn(thrown),
              unit::Failure(0x3000002, 13, "src/unit", "void f()", 7, "text and more"));
    EXPECT_EQ(thrown.getStackTrace().getFrames(), frames);
  }
}

}  // namespace
