#include "service/util/locator/ConfigLocator.hpp"

#include <cutil/cutil.h>
#include <locator/locator.h>

#include "cppUtil/err/platformCall.hpp"

namespace service::util::locator {

using cppUtil::err::checkPlatformCall;

std::string ConfigLocator::find(const std::string& name) {
  cu_String* text = nullptr;
  checkPlatformCall(cu_String_new(&text, 0));
  bool found = false;
  // When the search fails the text object is left as it is: its state is the platform's to judge.
  checkPlatformCall(cu_SearchPath_find(getConfigLocator(), name.c_str(), &found, text));
  std::string file;
  if (found) file = cu_String_get(text);
  checkPlatformCall(cu_String_delete(&text));
  return file;
}

void ConfigLocator::prepend(const std::string& directory) {
  checkPlatformCall(cu_SearchPath_prepend(getConfigLocator(), directory.c_str()));
}

bool ConfigLocator::remove(const std::string& directory) {
  bool removed = false;
  checkPlatformCall(cu_SearchPath_remove(getConfigLocator(), directory.c_str(), &removed));
  return removed;
}

}  // namespace service::util::locator
