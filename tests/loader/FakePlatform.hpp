// Both platform libraries with every call failing on demand. It stands in their place: a program
// that links it links neither of the real ones.
#ifndef TESTS_LOADER_FAKEPLATFORM_HPP
#define TESTS_LOADER_FAKEPLATFORM_HPP

#include <cutil/cutil.h>

#include <cstdint>
#include <list>
#include <set>
#include <string>
#include <vector>

#include "unit/Failure.hpp"

struct cu_String {
  std::string value;
};

struct FakePlatform {
  // Calls that can fail, by their place in calls, from 0, and what each of them fails with.
  std::set<std::size_t> failing = {};
  static unit::Failure failureOf(std::size_t call);

  std::vector<std::string> path = {};   // the search path, front first
  std::vector<std::string> calls = {};  // those made that can fail: "find app.xml"
  std::list<cu_String> texts = {};      // created and not deleted

  static FakePlatform& instance();
};

#endif
