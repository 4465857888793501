// An exception in words, for a log or a terminal. Part of the support layer; any thread.
#ifndef CPPUTIL_ERR_DESCRIBE_HPP
#define CPPUTIL_ERR_DESCRIBE_HPP

#include <string>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/export.hpp"

namespace cppUtil::err {

// All about the failure but the stack trace, on one line without a line break at its end: the name
// and the number of the code, the message, the error of the system if there was one, and the source
// file and line of the library in which it was raised.
//
//   NOT_FOUND (0x3000001): util::config: no section called "hall" [src/config:98]
//
// Line breaks of the message become blanks, and what would act on a terminal is shown escaped, so
// the text is safe to print whatever a file held. Throws std::bad_alloc only.
ZU_EXPORT std::string describe(const Exception& exception);

}  // namespace cppUtil::err

#endif
