// Allocations that fail, for tests of what a failing call leaves behind. A program that is linked
// with FailingAllocations.cpp takes its memory through it.
#ifndef TESTS_FAILINGALLOCATIONS_HPP
#define TESTS_FAILINGALLOCATIONS_HPP

// While it lives, allocations of C++ on this thread fail, all but the first few.
class FailingAllocations {
 public:
  explicit FailingAllocations(int allowed = 0);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;
};

#endif
