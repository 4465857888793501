#include "Support.hpp"

// The source and the target may be the same text object.
TEST(Filename, GivesTheDirectoryPart) {
  const std::pair<const char*, const char*> rows[] = {
      {"/one/two three/four/five.xml", "/one/two three/four"},
      {"/a", "/"},
      {"a/b//", "a"},
      {"a", "."},
      {"", "."}};
  for (const auto& [fileName, expected] : rows) {
    const Text path(fileName);
    EXPECT_EQ(cu_Filename_getPath(cu_String_get(path), path), 0u);
    EXPECT_EQ(path.str(), expected);
  }
}
