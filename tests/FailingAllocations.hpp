// Allocations that fail, for tests of what a failing call leaves behind. A program that is linked
// with FailingAllocations.cpp takes its memory through it.
#ifndef TESTS_FAILINGALLOCATIONS_HPP
#define TESTS_FAILINGALLOCATIONS_HPP

#include <limits>

// While it lives, allocations of C++ on this thread succeed at first, and then fail.
class FailingAllocations {
 public:
  static constexpr int all = std::numeric_limits<int>::max();

  explicit FailingAllocations(int allowed = 0, int failing = all);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  // How many are still to succeed; none as soon as one has failed.
  static int getAllowed();
};

#endif
