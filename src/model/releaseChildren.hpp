// For the destructors of trees: a deep one must not be destroyed by as deep a recursion. Any
// thread.
#ifndef SRC_MODEL_RELEASECHILDREN_HPP
#define SRC_MODEL_RELEASECHILDREN_HPP

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

namespace service::util::config::internal {

// Releases the children of an object that is being destroyed: children is a container that owns
// them. Below a certain depth they are left to the object whose destruction is the outermost one of
// this thread. leave moves them to the end of the vector that it is given; those that it has no
// memory for stay, and go with the object's members.
template <class Child, class Container, class Leave>
void releaseChildren(Container& children, const Leave& leave) {
  constexpr std::size_t maximumDepth = 32;
  thread_local std::size_t depth = 0;
  thread_local std::vector<Child>* outermost = nullptr;
  if (children.empty()) return;
  if (depth == maximumDepth) {
    try {
      leave(*outermost);
    } catch (const std::bad_alloc&) {
    }
    return;
  }
  std::vector<Child> left;
  if (depth == 0) outermost = &left;
  ++depth;
  children.clear();
  while (!left.empty()) {
    const Child child = std::move(left.back());
    left.pop_back();
  }
  --depth;
}

}  // namespace service::util::config::internal

#endif
