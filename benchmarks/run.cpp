#include "run.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace benchmarks {

int run(const std::string& program, std::vector<std::string> words) {
  const auto directory = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  std::string path = directory / program;
  std::vector<char*> arguments = {path.data()};
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child;
  const int error =
      ::posix_spawn(&child, path.c_str(), &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::system_error(error, std::generic_category(), path);
  int status = 0;
  if (::waitpid(child, &status, 0) != child) {
    throw std::system_error(errno, std::generic_category(), "waitpid");
  }
  return status;
}

}  // namespace benchmarks
