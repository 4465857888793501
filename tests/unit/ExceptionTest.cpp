#include "cppUtil/err/Exception.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <iomanip>

#include "Failure.hpp"

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

TEST(Exception, WhatNamesTheCodeWhateverTheMessage) {
  EXPECT_STREQ(Exception(0x3000003, 0, "", "", 0, "text").what(), "Unknown Error error code");
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
