// Runs a fuzz target over the files in the directories that are given, without a fuzzer.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include "harness.hpp"

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  LLVMFuzzerInitialize(&argc, &argv);

  std::vector<fs::path> files;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : fs::recursive_directory_iterator(argv[i])) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
  }
  fuzz::require(!files.empty(), "there is nothing to run");
  std::sort(files.begin(), files.end());

  for (const fs::path& file : files) {
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    std::ifstream stream(file, std::ios::binary);
    const std::string input(std::istreambuf_iterator<char>(stream), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  }
}
