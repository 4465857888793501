#include <gtest/gtest.h>
#include <locator/locator.h>
#include <sys/stat.h>
#include <unistd.h>

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

// The directories of the process-wide path in brackets, as a process with these variables has them.
std::string directoriesWith(const Variables& variables) {
  return writtenInChild([&] {
    setVariables(variables);
    for (const std::string& directory : directoriesOf(getConfigLocator())) {
      ::dprintf(STDERR_FILENO, "[%s]", directory.c_str());
    }
    return true;
  });
}

}  // namespace

TEST(ConfigLocator, StartsFromTheEnvironment) {
  const struct {
    const char* name;
    Variables variables;
    const char* expected;
  } rows[] = {
      {"own path", {{"ZU_CONFIG_PATH", "/a:b:/c/"}, {"HOME", "/h"}}, "[/a][b][/c/]"},
      {"own path, empty parts", {{"ZU_CONFIG_PATH", ":/a::/b:"}, {"HOME", "/h"}}, "[][/a][][/b][]"},
      {"defaults", {{"HOME", "/h"}}, "[][/h/.config][/etc/xdg][/etc]"},
      {"no home", {}, "[][/etc/xdg][/etc]"},
      {"XDG home without home", {{"XDG_CONFIG_HOME", "/x"}}, "[][/x][/etc/xdg][/etc]"},
      {"XDG home empty",
       {{"HOME", "/h"}, {"XDG_CONFIG_HOME", ""}, {"XDG_CONFIG_DIRS", ""}},
       "[][/h/.config][/etc/xdg][/etc]"},
      {"XDG home relative", {{"HOME", "/h"}, {"XDG_CONFIG_HOME", "x"}}, "[][/etc/xdg][/etc]"},
      {"XDG directories relative", {{"XDG_CONFIG_DIRS", "x::/y:/z"}}, "[][/y][/z][/etc]"},
  };
  for (const auto& row : rows) EXPECT_EQ(directoriesWith(row.variables), row.expected) << row.name;
}

TEST(ConfigLocator, IsOnePathForTheProcess) {
  writtenInChild([] {
    setVariables({{"ZU_CONFIG_PATH", "/a"}});
    cu_SearchPath* path = getConfigLocator();
    setVariables({{"ZU_CONFIG_PATH", "/b"}});
    cu_SearchPath_append(path, "/c");
    return getConfigLocator() == path &&
           directoriesOf(path) == std::vector<std::string>{"/a", "/c"};
  });
}

TEST(ConfigLocator, TakesNothingFromTheCallerOfAPrivilegedProgram) {
#ifdef ZU_PRIVILEGED_PROGRAM
  namespace fs = std::filesystem;
  const TemporaryFolder temp;
  const fs::path program = temp.path / "program";
  fs::copy_file(ZU_PRIVILEGED_PROGRAM, program);
  constexpr gid_t nobody = 65534;
  if (::chown(program.c_str(), uid_t(-1), nobody) != 0) GTEST_SKIP() << "needs root";
  ::chmod(program.c_str(), 02755);
  const Outcome outcome = inChild([&] {
    setVariables({{"ZU_CONFIG_PATH", "/a"}, {"HOME", "/h"}, {"XDG_CONFIG_DIRS", "/x"}});
    ::setenv("ZU_LOG_LEVEL", "4", 1);
    ::execl(program.c_str(), "program", nullptr);
    return false;
  });
  EXPECT_EQ(outcome.errors, "2[/etc/xdg][/etc]");
#else
  GTEST_SKIP() << "an emulated program cannot be run by another one";
#endif
}
