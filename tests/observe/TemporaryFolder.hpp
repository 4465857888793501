// A directory of the test's own, gone with the object.
#ifndef TESTS_OBSERVE_TEMPORARYFOLDER_HPP
#define TESTS_OBSERVE_TEMPORARYFOLDER_HPP

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = std::filesystem::temp_directory_path() / "observeXXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path = std::filesystem::canonical(name);
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Writes a file, with the directories that lead to it.
  void write(const std::string& name, const std::string& content) const {
    const std::filesystem::path file = path / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
  }

  std::filesystem::path path;
};

#endif
