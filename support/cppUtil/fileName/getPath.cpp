#include "cppUtil/fileName/getPath.hpp"

#include <cutil/cutil.h>

#include "cppUtil/err/platformCall.hpp"

namespace cppUtil::fileName {

using err::checkPlatformCall;

std::string getPath(const std::string& fileName) {
  cu_String* text = nullptr;
  checkPlatformCall(cu_String_new(&text, 0));
  // When this call fails the text object is left as it is: its state is the platform's to judge.
  checkPlatformCall(cu_Filename_getPath(fileName.c_str(), text));
  std::string path = cu_String_get(text);
  cu_String_delete(&text);  // the path is known: unlike a search, a failure here loses nothing
  return path;
}

}  // namespace cppUtil::fileName
