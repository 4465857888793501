// What the fuzz targets share: a directory for the files of one input, loads that check what holds
// after every load, and the way to say that something does not hold.
//
// Each target defines LLVMFuzzerInitialize and LLVMFuzzerTestOneInput. The fuzzer calls them, and
// so does replay.cpp, which makes an ordinary test of the seeds and of the inputs that once failed.
#ifndef TESTS_FUZZ_HARNESS_HPP
#define TESTS_FUZZ_HARNESS_HPP

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "service/util/config/IConfig.hpp"

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// Ends the process with the finding: the fuzzer then keeps the input.
[[noreturn]] void fail(const std::string& finding);
inline void require(bool holds, const std::string& finding) {
  if (!holds) fail(finding);
}

// To be called once, before the first load. Makes an empty directory that goes with the process and
// the only entry of the search path, and keeps the XML library initialised.
std::filesystem::path prepareLoads();

void write(const std::filesystem::path& file, const std::string& content);

struct Outcome {
  bool isLoaded = false;
  std::string content;  // as the functions below write it
  unsigned int code = 0;
  std::string message;
};

// Loads a file. Fails the input when something else than the loader's exception arrives, when the
// search path is not put back, or when a value is not found by its selector.
Outcome load(const std::string& file, bool validate);

// How content is written: names in byte order, the properties of a section before its sections.
std::string propertyText(const std::string& name, const std::string& value);
std::string sectionBegin(const std::string& name);
std::string sectionEnd();

}  // namespace fuzz

#endif
