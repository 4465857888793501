#include "cppUtil/err/platformCall.hpp"

#include <cutil/cutil.h>

#include <string>

#include "cppUtil/err/Exception.hpp"

namespace cppUtil::err {

namespace {

std::string textOf(const char* text) {
  return text == nullptr ? "" : text;
}

}  // namespace

void checkPlatformCall(std::uint32_t result) {
  if (result == CU_OK) return;
  const auto* record = cu_getErrorLocation();
  const int systemErrorCode = cu_Error_getSystemErrorCode(record);
  const std::string file = textOf(cu_Error_getFileName(record));
  const std::string function = textOf(cu_Error_getFunctionName(record));
  const int line = cu_Error_getLineNumber(record);
  const std::string description = textOf(cu_Error_getDescription(record));
  throw Exception(result, systemErrorCode, file, function, line, description);
}

}  // namespace cppUtil::err
