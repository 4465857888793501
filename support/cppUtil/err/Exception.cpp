#include "cppUtil/err/Exception.hpp"

#include <cutil/cutil.h>

namespace cppUtil::err {

namespace {

constexpr unsigned int maximumDepth = 1024;

}  // namespace

Exception::Exception(unsigned int code, int systemErrorCode, const std::string& file,
                     const std::string& function, int line, const std::string& message)
    : code(code),
      systemErrorCode(systemErrorCode),
      file(file),
      function(function),
      line(line),
      message(message) {
  stackTrace.getTrace(maximumDepth);
}

Exception::~Exception() = default;

const char* Exception::what() const noexcept {
  return cu_GetErrorName(code);
}

}  // namespace cppUtil::err
