#include "Support.hpp"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

Text::Text(const char* value) {
  EXPECT_EQ(cu_String_new(&handle, 0), 0u);
  EXPECT_EQ(cu_String_set(handle, value), 0u);
}

Path::Path(const std::vector<std::string>& directories) {
  EXPECT_EQ(cu_SearchPath_new(&handle), 0u);
  for (const std::string& directory : directories) {
    EXPECT_EQ(cu_SearchPath_append(handle, directory.c_str()), 0u);
  }
}

bool Path::remove(const std::string& directory) {
  bool removed = false;
  EXPECT_EQ(cu_SearchPath_remove(handle, directory.c_str(), &removed), 0u);
  return removed;
}

std::vector<std::string> directoriesOf(cu_SearchPath* path) {
  std::size_t count = 0;
  EXPECT_EQ(cu_SearchPath_count(path, &count), 0u);
  std::vector<std::string> directories;
  for (std::size_t index = 0; index < count; ++index) {
    const Text directory;
    EXPECT_EQ(cu_SearchPath_get(path, index, directory), 0u);
    directories.push_back(directory.str());
  }
  return directories;
}

Outcome inChild(const std::function<bool()>& body) {
  int ends[2];
  if (::pipe(ends) != 0) throw std::runtime_error("pipe");
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
    ::dup2(ends[1], STDERR_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
    ::_exit(body() ? 0 : 1);
  }
  ::close(ends[1]);
  Outcome outcome{};
  char buffer[1000];
  for (ssize_t size; (size = ::read(ends[0], buffer, sizeof buffer)) > 0;) {
    outcome.errors.append(buffer, static_cast<std::size_t>(size));
  }
  ::close(ends[0]);
  ::waitpid(child, &outcome.status, 0);
  return outcome;
}

std::string writtenInChild(const std::function<bool()>& body) {
  const Outcome outcome = inChild(body);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  return outcome.errors;
}
