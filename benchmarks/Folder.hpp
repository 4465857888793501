// A directory for the files of one benchmark, which is gone with the object.
#ifndef BENCHMARKS_FOLDER_HPP
#define BENCHMARKS_FOLDER_HPP

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace benchmarks {

class Folder {
 public:
  Folder() {
    std::string name = std::filesystem::temp_directory_path() / "zu-benchmark-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path = name;
  }
  ~Folder() { std::filesystem::remove_all(path); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  // Writes a configuration file that holds content.
  void write(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories((path / name).parent_path());
    std::ofstream(path / name) << "<config xmlns='urn:zu:util:config' name='n' version='1'>"
                               << content << "</config>\n";
  }
  std::string main() const { return path / "main.xml"; }

  std::filesystem::path path;
};

}  // namespace benchmarks

#endif
