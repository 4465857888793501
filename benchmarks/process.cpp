// Whole programs, from their start to their exit.

#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <system_error>

#include "registration.hpp"

namespace benchmarks {

namespace {

// Runs the program, which stands beside this one, and returns its exit status.
int run(const std::string& program, std::vector<std::string> words) {
  const auto directory = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  std::string path = directory / program;
  std::vector<char*> arguments = {path.data()};
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child;
  const int error =
      ::posix_spawn(&child, path.c_str(), nullptr, nullptr, arguments.data(), environ);
  if (error != 0) throw std::system_error(error, std::generic_category(), path);
  int status = 0;
  if (::waitpid(child, &status, 0) != child) {
    throw std::system_error(errno, std::generic_category(), "waitpid");
  }
  return status;
}

}  // namespace

void addProcesses(Inputs& inputs) {
  const std::pair<const char*, const char*> programs[] = {
      {ours, "zuProcess_config"},
      {"the same with pugixml", "zuProcess_pugixml"},
      {"the same with Poco", "zuProcess_poco"},
      {"empty main, linked to the XML library", "zuProcess_xmlLibrary"},
      {"empty main, linked to nothing", "zuProcess_nothing"}};
  for (const auto& [who, program] : programs) {
    add("process, small file", who, [&inputs, program = program](benchmark::State& state) {
      std::vector<std::string> words = parts(samples(smallShape, 1).front().path);
      words.insert(words.begin(), inputs.file(smallShape));
      for (auto _ : state) {
        if (run(program, words) != 0) return state.SkipWithError("the program failed");
      }
    })->UseRealTime();
  }
}

}  // namespace benchmarks
