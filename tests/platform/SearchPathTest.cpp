#include <cerrno>

#include "../TemporaryFolder.hpp"
#include "Support.hpp"

namespace fs = std::filesystem;

namespace {

// Puts root in the place of a leading "@".
std::string expand(const std::string& text, const fs::path& root) {
  return !text.empty() && text[0] == '@' ? root.string() + text.substr(1) : text;
}

// What the target holds afterwards: "before" when nothing is found.
std::string find(cu_SearchPath* path, const std::string& name) {
  bool found = false;
  const Text file("before");
  EXPECT_EQ(cu_SearchPath_find(path, name.c_str(), &found, file), 0u);
  EXPECT_EQ(found, file.str() != "before");
  return file.str();
}

}  // namespace

TEST(SearchPath, FindsTheFirstReadableRegularFile) {
  const TemporaryFolder temp;
  const fs::path& root = temp.path;
  for (const char* file : {"top", "a/file", "b/file", "b/only"}) temp.write(file);
  fs::create_symlink("b/only", root / "link");
  fs::current_path(root);

  const struct {
    const char* name;
    std::vector<std::string> directories;
    std::string file;
    const char* expected;
  } rows[] = {
      {"first entry", {"@/a", "@/b"}, "file", "@/a/file"},
      {"later entry", {"@/a", "@/b"}, "only", "@/b/only"},
      {"entry ends in a slash", {"@/a/"}, "file", "@/a/file"},
      {"link is followed, not resolved", {"@"}, "link", "@/link"},
      {"directory part goes up", {"@/a"}, "../b/only", "@/a/../b/only"},
      {"current directory", {""}, "top", "@/top"},
      {"dot is kept", {"."}, "top", "@/./top"},
      {"absolute name", {}, "@/a/file", "@/a/file"},
      {"absolute name of a device", {}, "/dev/null", "before"},
      {"absolute name is not joined", {"@"}, "/a/file", "before"},
      {"empty name", {"@/a", "", "@/a/file"}, "", "before"},
      {"name too long", {"@/a"}, std::string(5000, 'n'), "before"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> directories;
    for (const std::string& entry : row.directories) directories.push_back(expand(entry, root));
    const Path path(directories);
    EXPECT_EQ(find(path, expand(row.file, root)), expand(row.expected, root)) << row.name;
  }
  fs::current_path("/");
}

// What counts is the effective user, who opens the file.
TEST(SearchPath, PassesOverUnreadableFiles) {
  const TemporaryFolder temp;
  temp.write("a/file");
  temp.write("b/file");
  fs::permissions(temp.path / "a/file", fs::perms::none);
  const Path path({temp.path / "a", temp.path / "b"});

  writtenInChild([&] {
    if (::geteuid() == 0 && ::seteuid(65534) != 0) return false;
    return find(path, "file") == temp.path / "b/file";
  });
}

TEST(SearchPath, TellsWhenTheCurrentDirectoryHasNoName) {
  const TemporaryFolder temp;
  temp.write("top");
  fs::create_directory(temp.path / "gone");
  const Path path({".."});
  const Text file("before");
  bool found = true;
  fs::current_path(temp.path / "gone");
  fs::remove(temp.path / "gone");
  EXPECT_EQ(failed(cu_SearchPath_find(path, "top", &found, file)),
            "4 platform/cutil/SearchPath cu_SearchPath_find: Argument \"name\" was found as "
            "\"../top\", but the current directory has no name to make that absolute! (" +
                std::to_string(ENOENT) + ")");
  EXPECT_TRUE(found);
  EXPECT_EQ(file.str(), "before");
  fs::current_path("/");
}

TEST(SearchPath, KeepsOrderAndDuplicates) {
  const Path path({"/a", "/b"});
  EXPECT_EQ(cu_SearchPath_prepend(path, "/b"), 0u);
  EXPECT_EQ(cu_SearchPath_prepend(path, ""), 0u);
  EXPECT_EQ(directoriesOf(path), "[][/b][/a][/b]");
  cu_SearchPath* copy = nullptr;
  EXPECT_EQ(cu_SearchPath_copy(path, &copy), 0u);
  EXPECT_TRUE(removeFrom(path, "/b"));
  EXPECT_EQ(directoriesOf(path), "[][/a][/b]");
  EXPECT_FALSE(removeFrom(path, "/a/"));
  EXPECT_TRUE(removeFrom(path, ""));
  EXPECT_TRUE(removeFrom(path, "/b"));
  EXPECT_FALSE(removeFrom(path, "/b"));
  EXPECT_EQ(directoriesOf(path), "[/a]");
  EXPECT_EQ(cu_SearchPath_clear(path), 0u);
  EXPECT_EQ(directoriesOf(path), "");
  EXPECT_EQ(directoriesOf(copy), "[][/b][/a][/b]");
  EXPECT_EQ(cu_SearchPath_delete(&copy), 0u);
  EXPECT_EQ(copy, nullptr);
}
