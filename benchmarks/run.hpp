// Runs other programs.
#ifndef BENCHMARKS_RUN_HPP
#define BENCHMARKS_RUN_HPP

#include <string>
#include <vector>

namespace benchmarks {

// Runs a program with these arguments and returns its exit status; what it prints is dropped.
// program: its path from the directory of this one.
int run(const std::string& program, std::vector<std::string> words);

}  // namespace benchmarks

#endif
