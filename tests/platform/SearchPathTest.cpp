#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "../TemporaryFolder.hpp"
#include "Support.hpp"

namespace fs = std::filesystem;

namespace {

class WorkingDirectory {
 public:
  explicit WorkingDirectory(const fs::path& directory) { fs::current_path(directory); }
  ~WorkingDirectory() { fs::current_path(previous); }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  fs::path previous = fs::current_path();
};

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
  for (const char* file : {"top", "a/file", "b/file", "b/only", "b/sub/deep"}) {
    temp.write(file);
  }
  for (const char* directory : {"fifo", "link", "dangling"}) {
    fs::create_directories(root / directory);
  }
  ASSERT_EQ(::mkfifo((root / "fifo/file").c_str(), 0644), 0);
  fs::create_symlink("../b/only", root / "link/file");
  fs::create_symlink("nowhere", root / "dangling/file");
  const WorkingDirectory here(root);

  const std::string longName(5000, 'n');
  const struct {
    const char* name;
    std::vector<std::string> directories;
    std::string file;
    std::string expected;
  } rows[] = {
      {"first entry", {"@/a", "@/b"}, "file", "@/a/file"},
      {"later entry", {"@/a", "@/b"}, "only", "@/b/only"},
      {"nowhere", {"@/a", "@/b"}, "other", "before"},
      {"entry is a file", {"@/a/file", "@/b"}, "file", "@/b/file"},
      {"entry ends in a slash", {"@/a/"}, "file", "@/a/file"},
      {"entry is the root directory", {"/"}, root.string().substr(1) + "/top", "@/top"},
      {"FIFO", {"@/fifo", "@/a"}, "file", "@/a/file"},
      {"dangling link", {"@/dangling", "@/a"}, "file", "@/a/file"},
      {"link is followed, not resolved", {"@/link"}, "file", "@/link/file"},
      {"directory part", {"@/a", "@/b"}, "sub/deep", "@/b/sub/deep"},
      {"directory part goes up", {"@/b/sub"}, "../only", "@/b/sub/../only"},
      {"current directory", {""}, "top", "@/top"},
      {"dot is kept", {"."}, "top", "@/./top"},
      {"absolute name", {}, "@/a/file", "@/a/file"},
      {"absolute name of a device", {}, "/dev/null", "before"},
      {"absolute name is not joined", {"@"}, "/a/file", "before"},
      {"empty name", {"@/a", "", "@/a/file"}, "", "before"},
      {"name too long", {"@/a"}, longName, "before"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> directories;
    for (const std::string& entry : row.directories) directories.push_back(expand(entry, root));
    const Path path(directories);
    EXPECT_EQ(find(path, expand(row.file, root)), expand(row.expected, root)) << row.name;
  }
}

// What counts is the effective user, who opens the file.
TEST(SearchPath, PassesOverUnreadableFiles) {
  const TemporaryFolder temp;
  temp.write("a/file");
  temp.write("b/file");
  const std::string readable = temp.path / "b/file";
  fs::permissions(temp.path / "a/file", fs::perms::none);
  const Path path({temp.path / "a", temp.path / "b"});

  constexpr uid_t nobody = 65534;
  using SetUser = int (*)(uid_t);
  for (const SetUser setUser : {SetUser(::setuid), SetUser(::seteuid)}) {
    writtenInChild([&] {
      if (::geteuid() == 0 && setUser(nobody) != 0) return false;
      return find(path, "file") == readable;
    });
  }
}

TEST(SearchPath, TellsWhenTheCurrentDirectoryHasNoName) {
  const TemporaryFolder temp;
  temp.write("top");
  fs::create_directory(temp.path / "gone");
  const Path path({".."});
  const Text file("before");
  bool found = true;
  std::uint32_t code;
  {
    const WorkingDirectory here(temp.path / "gone");
    fs::remove(temp.path / "gone");
    code = cu_SearchPath_find(path, "top", &found, file);
  }
  EXPECT_EQ(code, CU_SYSTEM_FAILURE);
  EXPECT_EQ(cu_Error_getSystemErrorCode(cu_getErrorLocation()), ENOENT);
  EXPECT_STREQ(cu_Error_getDescription(cu_getErrorLocation()),
               "Argument \"name\" was found as \"../top\", but the current directory has no name "
               "to make that absolute!");
  EXPECT_TRUE(found);
  EXPECT_EQ(file.str(), "before");
}

TEST(SearchPath, KeepsOrderAndDuplicates) {
  using Directories = std::vector<std::string>;
  Path path({"/a", "/b"});
  EXPECT_EQ(cu_SearchPath_prepend(path, "/b"), 0u);
  EXPECT_EQ(cu_SearchPath_prepend(path, ""), 0u);
  EXPECT_EQ(directoriesOf(path), (Directories{"", "/b", "/a", "/b"}));
  cu_SearchPath* copy = nullptr;
  EXPECT_EQ(cu_SearchPath_copy(path, &copy), 0u);
  EXPECT_TRUE(path.remove("/b"));
  EXPECT_EQ(directoriesOf(path), (Directories{"", "/a", "/b"}));
  EXPECT_FALSE(path.remove("/a/"));
  EXPECT_FALSE(path.remove("/c"));
  EXPECT_TRUE(path.remove(""));
  EXPECT_TRUE(path.remove("/b"));
  EXPECT_FALSE(path.remove("/b"));
  EXPECT_EQ(directoriesOf(path), Directories{"/a"});
  EXPECT_EQ(cu_SearchPath_clear(path), 0u);
  EXPECT_EQ(directoriesOf(path), Directories{});
  EXPECT_EQ(directoriesOf(copy), (Directories{"", "/b", "/a", "/b"}));
  EXPECT_EQ(cu_SearchPath_delete(&copy), 0u);
}

TEST(SearchPath, IsUsedByTwoThreads) {
  const TemporaryFolder temp;
  temp.write("file");
  Path path({temp.path});
  const std::string expected = temp.path / "file";
  std::thread other([&] {
    for (int i = 0; i < 2000; ++i) {
      cu_SearchPath_prepend(path, "/a/directory/that/does/not/exist");
      path.remove("/a/directory/that/does/not/exist");
    }
  });
  int wrong = 0;
  for (int i = 0; i < 2000; ++i) {
    if (find(path, "file") != expected) ++wrong;
  }
  other.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(directoriesOf(path), std::vector<std::string>{temp.path});
}
