// Holds the XML library initialised, for programs that load several files.
//
// Every load initialises the XML library and terminates it again. That takes over a millisecond,
// many times as long as a small file. While a Session exists, these two steps cost nothing. There
// may be several at once, and they may end in any order. Threads: creating and destroying one must
// not overlap with a load or with another Session being created or destroyed.
#ifndef SERVICE_UTIL_CONFIG_XML_SESSION_HPP
#define SERVICE_UTIL_CONFIG_XML_SESSION_HPP

#include "cppUtil/export.hpp"

namespace service::util::config::xml {

class ZU_EXPORT Session {
 public:
  // Throws cppUtil::err::Exception when the XML library cannot be initialised: code 6 when there is
  // no memory for it, code 7 for any other reason.
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
};

}  // namespace service::util::config::xml

#endif
