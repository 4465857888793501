// File names, over the C utility library. Any thread.
#ifndef CPPUTIL_FILENAME_GETPATH_HPP
#define CPPUTIL_FILENAME_GETPATH_HPP

#include <string>

#include "cppUtil/export.hpp"

namespace cppUtil::fileName {

// The directory part of fileName: "/etc" for "/etc/app.xml", "." for "app.xml". Throws
// cppUtil::err::Exception with the platform's code and record when the platform call fails.
ZU_EXPORT std::string getPath(const std::string& fileName);

}  // namespace cppUtil::fileName

#endif
