// The program's own malloc takes the place of the C library's for everything that is linked to it;
// the work is still done by the C library, under the names that it keeps for this purpose.

#include "countedMalloc.hpp"

#include <errno.h>
#include <malloc.h>

#include <algorithm>

namespace benchmarks {

namespace {

Allocations counted = {};

// Takes a block into account; a block that is given back is taken out with freed().
void* taken(void* block) {
  if (block == nullptr) return block;
  ++counted.count;
  counted.bytes += malloc_usable_size(block) + sizeof(std::size_t);
  counted.peak = std::max(counted.peak, counted.bytes);
  return block;
}

void freed(void* block) {
  if (block != nullptr) counted.bytes -= malloc_usable_size(block) + sizeof(std::size_t);
}

}  // namespace

Allocations allocations() {
  return counted;
}

void restartPeak() {
  counted.peak = counted.bytes;
}

}  // namespace benchmarks

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
  return benchmarks::taken(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
  return benchmarks::taken(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) {
  benchmarks::freed(block);
  return benchmarks::taken(__libc_realloc(block, size));
}

void* memalign(std::size_t alignment, std::size_t size) {
  return benchmarks::taken(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = memalign(alignment, size);
  return *block != nullptr ? 0 : ENOMEM;
}

void free(void* block) {
  benchmarks::freed(block);
  __libc_free(block);
}

}  // extern "C"
