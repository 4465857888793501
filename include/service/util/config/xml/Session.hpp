// Holds the XML library initialised, for programs that load several files.
//
// Every load initialises the XML library and terminates it again, which takes over a millisecond,
// many times as long as a small file. While a Session lives those two steps cost nothing. Sessions
// may nest and need no order among each other. Creating and destroying one must not overlap with a
// load or another Session on a second thread.
#ifndef SERVICE_UTIL_CONFIG_XML_SESSION_HPP
#define SERVICE_UTIL_CONFIG_XML_SESSION_HPP

#include "cppUtil/export.hpp"

namespace service::util::config::xml {

class ZU_EXPORT Session {
 public:
  // Throws cppUtil::err::Exception with code 7 when the XML library cannot be initialised.
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
};

}  // namespace service::util::config::xml

#endif
