#include "FailingAllocations.hpp"

#include <cstdlib>
#include <new>

namespace {

thread_local int allowed = FailingAllocations::all;
thread_local int failing = 0;

}  // namespace

void* operator new(std::size_t size) {
  if (allowed > 0) {
    --allowed;
  } else if (failing > 0) {
    --failing;
    throw std::bad_alloc();
  }
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

FailingAllocations::FailingAllocations(int allowed, int failing) {
  ::allowed = allowed;
  ::failing = failing;
}
FailingAllocations::~FailingAllocations() {
  ::failing = 0;
}
int FailingAllocations::getAllowed() {
  return ::allowed;
}
