#include "cppUtil/logger/Logger.hpp"

#include <cutil/cutil.h>

#include "cppUtil/err/platformCall.hpp"

namespace cppUtil::logger {

void Logger::log() {
  err::checkPlatformCall(cu_Logger_log(level, str().c_str()));
  stream.str("");
}

}  // namespace cppUtil::logger
