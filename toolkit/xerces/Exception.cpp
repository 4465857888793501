#include "xerces/Exception.hpp"

namespace xerces {

Exception::~Exception() = default;

const char* Exception::what() const noexcept {
  return message.c_str();
}

}  // namespace xerces
