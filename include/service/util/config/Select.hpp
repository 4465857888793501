// A selector: a string such as "network.interface[1].address[2]" that names one property value
// below a configuration.
//
// It is a sequence of parts separated by single dots. A part is a name of ASCII letters and digits,
// optionally followed by a decimal index in brackets; without one the index is 0. The last part is
// the property, the parts before it, at least one, are the sections that lead to it.
//
// The string is parsed once, by the constructor. A Select is never changed afterwards and may be
// read by several threads at once. Build it once and use it often: a query then allocates nothing
// beyond the value.
#ifndef SERVICE_UTIL_CONFIG_SELECT_HPP
#define SERVICE_UTIL_CONFIG_SELECT_HPP

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "cppUtil/export.hpp"

namespace service::util::config {

namespace internal {
class Config;
}

class ZU_EXPORT Select {
 public:
  // Both throw cppUtil::err::Exception: INVALID_SELECT (0x3000000) when text is malformed, code 1
  // when it is null. They convert implicitly, for calls such as config.getProperty("a.b", value).
  //
  // An index is taken modulo 2^32. A text that ends in "." makes a Select that names no property; a
  // query with it fails.
  Select(const char* text);
  Select(const std::string& text);

  // Name and index of the property.
  std::pair<std::string, std::uint32_t> getProperty() const;

  // Name and index of each section on the way to it, outermost first.
  std::vector<std::pair<std::string, std::uint32_t>> getSection() const;

 private:
  friend class internal::Config;  // walks the parts in place

  ZU_NO_EXPORT void parse(const std::string& text);
  ZU_NO_EXPORT void pushPart();

  std::string propertyName;
  std::uint32_t propertyIndex = 0;
  std::vector<std::pair<std::string, std::uint32_t>> sectionPath;
};

}  // namespace service::util::config

#endif
