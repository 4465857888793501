#include <gtest/gtest.h>

#include "Support.hpp"

extern "C" const char* usePlatformFromC(void);

TEST(Platform, IsUsableFromC) {
  // In a process of its own: it makes the process-wide search path.
  const Outcome outcome = inChild([] {
    const char* failure = usePlatformFromC();
    if (failure != nullptr) cu_Logger_log(CU_FATAL, failure);
    return failure == nullptr;
  });
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
}

TEST(Filename, GivesTheDirectoryPart) {
  const struct {
    const char* fileName;
    const char* expected;
  } rows[] = {
      {"/a/b", "/a"}, {"/a", "/"},   {"a/b/", "a"},        {"a", "."},         {"", "."},
      {"/", "/"},     {"a//b", "a"}, {"a/b/c//", "a/b"},   {"./a", "."},       {"../a", ".."},
      {"..", "."},    {"///", "/"},  {"/a b/c.d", "/a b"}, {"a/../b", "a/.."},
  };
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
  EXPECT_EQ(cu_String_set(path, cu_String_get(path) + 4), 0u);
  EXPECT_EQ(path.str(), "/two/three/four/five");
}
