#include <libgen.h>

#include <string>

#include "Call.hpp"
#include "String.hpp"

uint32_t cu_Filename_getPath(const char* fileName, cu_String* path) {
  const cutil::Call call("platform/cutil/Filename", __func__);
  return cutil::guarded(call, [&] {
    if (fileName == nullptr) return call.missing("fileName");
    if (path == nullptr) return call.missing("path");
    std::string scratch = fileName;  // dirname writes into its argument
    path->value = ::dirname(scratch.data());
    return cutil::success;
  });
}
