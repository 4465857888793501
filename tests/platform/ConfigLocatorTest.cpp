#include <locator/locator.h>
#include <sys/auxv.h>
#include <sys/stat.h>

#include <cstdlib>
#include <utility>

#include "../TemporaryFolder.hpp"
#include "Support.hpp"

namespace {

using Variables = std::vector<std::pair<const char*, const char*>>;

void setVariables(const Variables& variables) {
  for (const char* name : {"ZU_CONFIG_PATH", "HOME", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"}) {
    ::unsetenv(name);
  }
  for (const auto& [name, value] : variables) ::setenv(name, value, 1);
}

void writeDirectories() {
  ::dprintf(STDERR_FILENO, "%s", directoriesOf(getConfigLocator()).c_str());
}

}  // namespace

TEST(ConfigLocator, StartsFromTheEnvironmentAndStays) {
  const struct {
    const char* name;
    Variables variables;
    const char* expected;
  } rows[] = {
      {"own path", {{"ZU_CONFIG_PATH", ":/a::b:/c/:"}, {"HOME", "/h"}}, "[][/a][][b][/c/][]"},
      {"own path empty", {{"ZU_CONFIG_PATH", ""}}, "[]"},
      {"defaults", {{"HOME", "/h"}}, "[][/h/.config][/etc/xdg][/etc]"},
      {"no home", {}, "[][/etc/xdg][/etc]"},
      {"XDG home without home", {{"XDG_CONFIG_HOME", "/x"}}, "[][/x][/etc/xdg][/etc]"},
      {"XDG variables empty",
       {{"HOME", "/h"}, {"XDG_CONFIG_HOME", ""}, {"XDG_CONFIG_DIRS", ""}},
       "[][/h/.config][/etc/xdg][/etc]"},
      {"XDG variables relative",
       {{"HOME", "/h"}, {"XDG_CONFIG_HOME", "x"}, {"XDG_CONFIG_DIRS", "x::/y:/z"}},
       "[][/y][/z][/etc]"},
  };
  for (const auto& row : rows) {
    const std::string written = writtenInChild([&] {
      setVariables(row.variables);
      writeDirectories();
      cu_SearchPath* const path = getConfigLocator();
      setVariables({{"ZU_CONFIG_PATH", "/later"}});
      return getConfigLocator() == path;
    });
    EXPECT_EQ(written, row.expected) << row.name;
  }
}

// The test runs itself in such a program: a copy of this one that any user may run as a group.
TEST(ConfigLocator, TakesNothingFromTheCallerOfAPrivilegedProgram) {
  if (::getauxval(AT_SECURE) != 0) {
    ::dprintf(STDERR_FILENO, "%u", static_cast<unsigned>(cu_Logger_getThreshold()));
    writeDirectories();
    ::_exit(0);  // a leak check cannot look into such a program
  }
  if (ZU_EMULATED) GTEST_SKIP() << "an emulated program cannot be run by another one";
  const TemporaryFolder temp;
  const std::string copy = temp.path / "copy";
  std::filesystem::copy_file("/proc/self/exe", copy);
  constexpr gid_t nobody = 65534;
  if (::chown(copy.c_str(), uid_t(-1), nobody) != 0) GTEST_SKIP() << "needs root";
  ::chmod(copy.c_str(), 02755);
  const std::string written = writtenInChild([&] {
    setVariables({{"ZU_CONFIG_PATH", "/a"}, {"HOME", "/h"}, {"XDG_CONFIG_DIRS", "/x"}});
    ::setenv("ZU_LOG_LEVEL", "4", 1);
    ::execl(copy.c_str(), "copy", "--gtest_filter=*OfAPrivilegedProgram", nullptr);
    return false;
  });
  EXPECT_EQ(written, "2[/etc/xdg][/etc]");
}
