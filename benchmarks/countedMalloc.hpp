// Counts what the process takes from malloc, by whatever way: operator new, the memory manager of
// the XML library and C code all end there. One thread.
#ifndef BENCHMARKS_COUNTEDMALLOC_HPP
#define BENCHMARKS_COUNTEDMALLOC_HPP

#include <cstddef>

namespace benchmarks {

struct Allocations {
  std::size_t count;  // calls that took memory
  std::size_t bytes;  // in use now, with what the allocator takes for itself
  std::size_t peak;   // the most in use since the last restartPeak()
};

Allocations allocations();
void restartPeak();

}  // namespace benchmarks

#endif
