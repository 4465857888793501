#include "FailingAllocations.hpp"

#include <cstdlib>
#include <new>

namespace {

constexpr int kUnlimited = -1;
thread_local int allowedAllocations = kUnlimited;

}  // namespace

void* operator new(std::size_t size) {
  if (allowedAllocations == 0) throw std::bad_alloc();
  if (allowedAllocations > 0) --allowedAllocations;
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

FailingAllocations::FailingAllocations(int allowed) {
  allowedAllocations = allowed;
}
FailingAllocations::~FailingAllocations() {
  allowedAllocations = kUnlimited;
}
