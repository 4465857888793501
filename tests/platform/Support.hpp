// What the platform tests share: handles that delete themselves, and processes of their own.
#pragma once

#include <cutil/cutil.h>

#include <functional>
#include <string>
#include <vector>

class Text {
 public:
  explicit Text(const char* value = "");
  ~Text() { cu_String_delete(&handle); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  operator cu_String*() const { return handle; }
  std::string str() const { return cu_String_get(handle); }

 private:
  cu_String* handle = nullptr;
};

class Path {
 public:
  explicit Path(const std::vector<std::string>& directories = {});
  ~Path() { cu_SearchPath_delete(&handle); }
  Path(const Path&) = delete;
  Path& operator=(const Path&) = delete;
  operator cu_SearchPath*() const { return handle; }
  // As cu_SearchPath_remove answers.
  bool remove(const std::string& directory);

 private:
  cu_SearchPath* handle = nullptr;
};

std::vector<std::string> directoriesOf(cu_SearchPath* path);

struct Outcome {
  int status;          // as waitpid gives it: 0 when body returned true
  std::string errors;  // what the process wrote to standard error
};

// Runs body in a forked process. Whatever reads the environment on first use, the logger and the
// process-wide path, is tested in such processes only, so that each of them is the first.
Outcome inChild(const std::function<bool()>& body);

// What body writes to standard error in such a process, in which it must return true.
std::string writtenInChild(const std::function<bool()>& body);
