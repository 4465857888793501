// A directory of the test's own, without links in its name, that any user may enter; gone with the
// object.
#ifndef TESTS_TEMPORARYFOLDER_HPP
#define TESTS_TEMPORARYFOLDER_HPP

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = std::filesystem::temp_directory_path() / "zu-test-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path = std::filesystem::canonical(name);
    std::filesystem::permissions(path, std::filesystem::perms(0755));
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Writes a file, with the directories that lead to it.
  void write(const std::string& name, const std::string& content = "x") const {
    const std::filesystem::path file = path / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
  }

  std::filesystem::path path;
};

#endif
