// Programs that read one value of a file and end, and empty ones.
#ifndef BENCHMARKS_PROCESS_HPP
#define BENCHMARKS_PROCESS_HPP

#include <string>
#include <vector>

#include "Inputs.hpp"

namespace benchmarks {

struct Process {
  const char* who;
  const char* program;
};
constexpr Process processes[] = {{"ours", "zuProcess_config"},
                                 {"the same with pugixml", "zuProcess_pugixml"},
                                 {"the same with Poco", "zuProcess_poco"},
                                 {"empty main, linked to the XML library", "zuProcess_xmlLibrary"},
                                 {"empty main, linked to nothing", "zuProcess_nothing"}};

// The file, and the names that lead to the value.
inline std::vector<std::string> processArguments(Inputs& inputs) {
  std::vector<std::string> words = parts(samples(smallShape, 1).front().path);
  words.insert(words.begin(), inputs.file(smallShape));
  return words;
}

}  // namespace benchmarks

#endif
