#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "TemporaryFolder.hpp"
#include "loader/LoaderState.hpp"
#include "placeholders.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace {

namespace fs = std::filesystem;
using service::util::locator::ConfigLocator;

TEST(FindAllTest, GivesTheMatchAndWhatItHides) {
  const TemporaryFolder folder;
  for (const char* name : {"a/x", "b/x", "c/sub/x", "a/sub/x", "here/x", "here/only"}) {
    folder.write(name, name);
  }
  fs::create_directories(folder.path / "d/x");
  fs::create_directories(folder.path / "linked");
  fs::create_symlink("../a/x", folder.path / "linked/x");
  const fs::path before = fs::current_path();
  fs::current_path(folder.path / "here");
  std::vector<std::string> entries = {"{T}/d",      "",     "{T}/a",    "{T}/a/",
                                      "{T}/linked", "../b", "{T}/here", "{T}/c"};
  for (std::string& entry : entries) entry = replaceAll(entry, "{T}", folder.path);
  setSearchPath(entries);
  EXPECT_EQ(ConfigLocator::getEntries(), entries);
  EXPECT_FALSE(ConfigLocator::remove("/none"));

  const struct {
    std::string name;
    const char* expected;
  } rows[] = {
      {"x", "'' {T}/here/x\n'{T}/a' {T}/a/x\n'../b' {T}/here/../b/x\n"},
      {"only", "'' {T}/here/only\n"},
      {"sub/x", "'{T}/a' {T}/a/sub/x\n'{T}/c' {T}/c/sub/x\n"},
      {"../b/x", "'{T}/d' {T}/d/../b/x\n"},
      {"{T}/b/x", "'' {T}/b/x\n"},
      {"{T}/d/x", ""},
      {"", ""},
      {std::string("only\0zz", 7), ""},
  };
  for (const auto& row : rows) {
    const std::string name = replaceAll(row.name, "{T}", folder.path);
    std::string actual;
    const auto matches = ConfigLocator::findAll(name);
    for (const auto& match : matches) actual += "'" + match.directory + "' " + match.file + "\n";
    EXPECT_EQ(replaceAll(actual, folder.path, "{T}"), row.expected) << row.name;
    EXPECT_EQ(ConfigLocator::find(name), matches.empty() ? "" : matches.front().file) << row.name;
  }
  fs::current_path(before);
}

// The path never holds anything else than the entries, or one more in front of them.
TEST(FindAllTest, ReadsThePathAtOneMoment) {
  std::vector<std::string> entries;
  for (int i = 0; i < 500; ++i) entries.push_back("/none/" + std::to_string(i));
  setSearchPath(entries);
  std::vector<std::string> longer = entries;
  longer.insert(longer.begin(), "/one");
  std::atomic<bool> isOver{false};
  std::thread other([&] {
    while (!isOver) {
      ConfigLocator::prepend("/one");
      ConfigLocator::remove("/one");
    }
  });
  for (int i = 0; i < 200; ++i) {
    const auto now = ConfigLocator::getEntries();
    EXPECT_TRUE(now == entries || now == longer);
  }
  isOver = true;
  other.join();
}

}  // namespace
