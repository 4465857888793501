#include "cppUtil/internal/text.hpp"

#include <gtest/gtest.h>

namespace {

TEST(Text, EscapesWhatActsOrMisleads) {
  using namespace std::string_literals;
  const struct {
    std::string text;
    const char* expected;
  } rows[] = {
      {"plain gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80 \\",
       "plain gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80 \\"},
      {"\x1b[2J\x7f\0\n\r\t"s, "\\x1b[2J\\x7f\\x00\\n\\r\\t"},
      {"C1 \xC2\x80\xC2\x9F, not \xC2\xA0", "C1 \\u0080\\u009f, not \xC2\xA0"},
      {"\xD8\x9C\xE2\x80\x8E\xE2\x80\x8F\xE2\x80\xA8\xE2\x80\xAE",
       "\\u061c\\u200e\\u200f\\u2028\\u202e"},
      {"\xE2\x81\xA6\xE2\x81\xA9", "\\u2066\\u2069"},
      {"alone \x9B \xCA, cut \xE2\x80", "alone \\x9b \\xca, cut \\xe2\\x80"},
      {"spelled long \xE0\x82\x9B \xC0\x8A, surrogate \xED\xA0\x80",
       "spelled long \\xe0\\x82\\x9b \\xc0\\x8a, surrogate \\xed\\xa0\\x80"},
  };
  for (const auto& row : rows) EXPECT_EQ(cppUtil::internal::printable(row.text), row.expected);
  EXPECT_EQ(cppUtil::internal::escaped("\\n\n"), "\\\\n\\n");
}

}  // namespace
