// A place in a configuration file, as the load observer, the origins and the diagnostics tell it.
#ifndef SERVICE_UTIL_CONFIG_XML_LOCATION_HPP
#define SERVICE_UTIL_CONFIG_XML_LOCATION_HPP

#include <string>

namespace service::util::config::xml {

// line and column count from 1. For an element they say where its start tag ends, which is the
// first character after it. Elements written as empty tags have a file only; line and column are 0.
struct Location {
  std::string file;
  int line = 0;
  int column = 0;
};

}  // namespace service::util::config::xml

#endif
