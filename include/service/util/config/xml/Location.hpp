// A place in a configuration file, as the load observer, the origins and the diagnostics tell it.
#ifndef SERVICE_UTIL_CONFIG_XML_LOCATION_HPP
#define SERVICE_UTIL_CONFIG_XML_LOCATION_HPP

#include <string>

namespace service::util::config::xml {

// line and column count from 1. For an element they are the place of the first character after its
// start tag. An element that is written as an empty tag has a file only; its line and column are 0.
struct Location {
  std::string file;  // a full name unless the user of the place says otherwise; may be empty
  int line = 0;      // from 1; 0 when unknown
  int column = 0;    // from 1, in units of UTF-16; 0 when unknown
};

}  // namespace service::util::config::xml

#endif
