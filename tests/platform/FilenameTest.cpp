#include <gtest/gtest.h>

#include "Support.hpp"

TEST(Filename, GivesTheDirectoryPart) {
  const struct {
    const char* fileName;
    const char* expected;
  } rows[] = {{"/a/b", "/a"}, {"/a", "/"},  {"a/b/c//", "a/b"},  {"a", "."},
              {"", "."},      {"///", "/"}, {"/a b/c.d", "/a b"}};
  for (const auto& row : rows) {
    const Text path("before");
    EXPECT_EQ(cu_Filename_getPath(row.fileName, path), 0u);
    EXPECT_EQ(path.str(), row.expected) << row.fileName;
  }
}

// The source and the target may be the same text object.
TEST(Filename, TakesItsArgumentFromTheTextThatItFills) {
  const Text path("/one/two/three/four/five/six");
  EXPECT_EQ(cu_Filename_getPath(cu_String_get(path), path), 0u);
  EXPECT_EQ(path.str(), "/one/two/three/four/five");
}
