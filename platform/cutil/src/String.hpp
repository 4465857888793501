// The text object behind the opaque handle of the C interface.
#pragma once

#include <cutil/cutil.h>

#include <string>

struct cu_String {
  std::string value;
};
