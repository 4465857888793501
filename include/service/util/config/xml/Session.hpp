// Holds the XML library initialised, for programs that load several files which are not plain.
//
// Plain files, as nearly all configuration files are, are read without the XML library. A load of
// any other, and every check, initialises it and terminates it again, which takes over a
// millisecond, many times as long as a small file. While a Session exists, what the first of them
// has initialised stays, and these two steps cost nothing from then on. There may be several at
// once, and they may end in any order.
//
// Threads: creating and destroying one must not overlap with a load, with a check or with another
// Session being created or destroyed.
#ifndef SERVICE_UTIL_CONFIG_XML_SESSION_HPP
#define SERVICE_UTIL_CONFIG_XML_SESSION_HPP

#include "cppUtil/export.hpp"

namespace service::util::config::xml {

class ZU_EXPORT Session {
 public:
  // When the XML library is initialised, other than at its first use.
  enum Opening { NOW };

  // Costs nothing by itself.
  Session();
  // Does not wait for the first use: it opens the part of the library that needs the XML library,
  // which stays open as long as the process, and initialises it. For programs that change their
  // root directory or drop rights before they load, and for those that want no load to take longer
  // than the next. Throws cppUtil::err::Exception: code 6 when that part is missing or does not
  // fit, or when there is no memory; code 7 for any other reason.
  explicit Session(Opening now);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
};

}  // namespace service::util::config::xml

#endif
