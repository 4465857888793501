#include <gtest/gtest.h>
#include <locator/locator.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

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
  const Outcome outcome = inChild([&] {
    setVariables(variables);
    for (const std::string& directory : directoriesOf(getConfigLocator())) {
      ::dprintf(STDERR_FILENO, "[%s]", directory.c_str());
    }
    return true;
  });
  EXPECT_EQ(outcome.status, 0);
  return outcome.errors;
}

}  // namespace

TEST(ConfigLocator, StartsFromTheEnvironment) {
  const struct {
    const char* name;
    Variables variables;
    const char* expected;
  } rows[] = {
      {"own path", {{"ZU_CONFIG_PATH", "/a:b:/c/"}, {"HOME", "/h"}}, "[/a][b][/c/]"},
      {"own path, empty parts", {{"ZU_CONFIG_PATH", ":/a::/b:"}}, "[][/a][][/b][]"},
      {"own path, empty", {{"ZU_CONFIG_PATH", ""}, {"HOME", "/h"}}, "[]"},
      {"defaults", {{"HOME", "/h"}}, "[][/h/.config][/etc/xdg][/etc]"},
      {"no home", {}, "[][/etc/xdg][/etc]"},
      {"relative home", {{"HOME", "h"}}, "[][/etc/xdg][/etc]"},
      {"XDG home without home", {{"XDG_CONFIG_HOME", "/x"}}, "[][/x][/etc/xdg][/etc]"},
      {"XDG home empty",
       {{"HOME", "/h"}, {"XDG_CONFIG_HOME", ""}},
       "[][/h/.config][/etc/xdg][/etc]"},
      {"XDG home relative", {{"HOME", "/h"}, {"XDG_CONFIG_HOME", "x"}}, "[][/etc/xdg][/etc]"},
      {"XDG directories empty", {{"XDG_CONFIG_DIRS", ""}}, "[][/etc/xdg][/etc]"},
      {"XDG directories relative", {{"XDG_CONFIG_DIRS", "x::/y:/z"}}, "[][/y][/z][/etc]"},
  };
  for (const auto& row : rows) EXPECT_EQ(directoriesWith(row.variables), row.expected) << row.name;
}

TEST(ConfigLocator, IsOnePathForTheProcess) {
  const Outcome outcome = inChild([] {
    setVariables({{"ZU_CONFIG_PATH", "/a"}});
    cu_SearchPath* path = getConfigLocator();
    setVariables({{"ZU_CONFIG_PATH", "/b"}});
    cu_SearchPath_append(path, "/c");
    return getConfigLocator() == path &&
           directoriesOf(path) == std::vector<std::string>{"/a", "/c"};
  });
  EXPECT_EQ(outcome.status, 0);
}
