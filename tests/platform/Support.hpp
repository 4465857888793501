// What the platform tests share: handles that delete themselves, failures as text, and processes of
// their own.
#pragma once

#include <cutil/cutil.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

template <class Type, std::uint32_t (*deleteHandle)(Type**)>
struct Handle {
  Handle() = default;
  ~Handle() { deleteHandle(&handle); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  operator Type*() const { return handle; }

  Type* handle = nullptr;
};

struct Text : Handle<cu_String, cu_String_delete> {
  explicit Text(const char* value = "") {
    EXPECT_EQ(cu_String_new(&handle, 0), 0u);
    EXPECT_EQ(cu_String_set(handle, value), 0u);
  }
  std::string str() const { return cu_String_get(handle); }
};

struct Path : Handle<cu_SearchPath, cu_SearchPath_delete> {
  explicit Path(const std::vector<std::string>& directories) {
    EXPECT_EQ(cu_SearchPath_new(&handle), 0u);
    for (const std::string& each : directories) {
      EXPECT_EQ(cu_SearchPath_append(handle, each.c_str()), 0u);
    }
  }
};

// As cu_SearchPath_remove answers.
inline bool removeFrom(cu_SearchPath* path, const std::string& directory) {
  bool removed = false;
  EXPECT_EQ(cu_SearchPath_remove(path, directory.c_str(), &removed), 0u);
  return removed;
}

// "[/a][b]"
inline std::string directoriesOf(cu_SearchPath* path) {
  std::size_t count = 0;
  EXPECT_EQ(cu_SearchPath_count(path, &count), 0u);
  std::string directories;
  for (std::size_t index = 0; index < count; ++index) {
    const Text directory;
    EXPECT_EQ(cu_SearchPath_get(path, index, directory), 0u);
    directories += "[" + directory.str() + "]";
  }
  return directories;
}

// "file function: description (system error)", of the thread's record unless another is given.
inline std::string recordText(const cu_ErrorLocation* record = cu_getErrorLocation()) {
  return std::string(cu_Error_getFileName(record)) + " " + cu_Error_getFunctionName(record) + ": " +
         cu_Error_getDescription(record) + " (" +
         std::to_string(cu_Error_getSystemErrorCode(record)) + ")";
}

// What a failed call with this code left behind: "code record".
inline std::string failed(std::uint32_t code) {
  EXPECT_GT(cu_Error_getLineNumber(cu_getErrorLocation()), 0);
  return std::to_string(code) + " " + recordText();
}

struct Outcome {
  int status;          // as waitpid gives it: 0 when body returned true
  std::string errors;  // what the process wrote to standard error
};

// Runs body in a forked process. Whatever reads the environment on first use, the logger and the
// process-wide path, is tested in such processes only, so that each of them is the first.
inline Outcome inChild(const std::function<bool()>& body) {
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

// What body writes to standard error in such a process, in which it must return true.
inline std::string writtenInChild(const std::function<bool()>& body) {
  const Outcome outcome = inChild(body);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  return outcome.errors;
}
