#include "load/Load.hpp"

#include "cppUtil/internal/stackLeft.hpp"

namespace service::util::config::xml::internal {

bool Load::hasStack(std::size_t bytes) const {
  constexpr std::size_t uncheckedStack = 32UL * 1024;
  const auto* here = static_cast<const char*>(__builtin_frame_address(0));
  return static_cast<std::size_t>(stackBase - here) < uncheckedStack ||
         cppUtil::internal::stackLeft() >= bytes;
}

}  // namespace service::util::config::xml::internal
