// Both platform libraries with every call failing on demand. It stands in their place: a program
// that links it links neither of the real ones.
#ifndef TESTS_LOADER_FAKEPLATFORM_HPP
#define TESTS_LOADER_FAKEPLATFORM_HPP

#include <cstdint>
#include <set>
#include <string>
#include <vector>

struct FakePlatform {
  // Calls that can fail, by their place in calls, from 0, and the code that each of them fails
  // with.
  std::set<std::size_t> failing;
  static std::uint32_t codeOf(std::size_t call) { return 0x7000000u + std::uint32_t(call); }

  std::vector<std::string> path;   // the search path, front first
  std::vector<std::string> calls;  // the names of the calls made that can fail, "SearchPath_find"

  static FakePlatform& instance();
};

#endif
