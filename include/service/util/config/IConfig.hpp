// A configuration: a tree of named sections that hold named properties with string values.
//
// A name may repeat within one section; its occurrences are told apart by an index from 0, in the
// order in which they were added. Properties and sections are separate name spaces. Names and
// values are byte strings, compared byte by byte.
//
// Failures are cppUtil::err::Exception. An empty name or value is code 1 (a missing argument), in
// every operation that takes one. Threads: any number of threads may read a configuration while
// none adds to it; pointers may be copied and dropped on any thread.
#ifndef SERVICE_UTIL_CONFIG_ICONFIG_HPP
#define SERVICE_UTIL_CONFIG_ICONFIG_HPP

#include <cstdint>
#include <memory>
#include <string>

#include "cppUtil/export.hpp"
#include "service/util/config/Select.hpp"

namespace service::util::config {

class IConfig;

// Shared ownership of a configuration or of one section in it. A section outlives its parent while
// somebody holds it.
using IConfigPtr = std::shared_ptr<IConfig>;

class ZU_EXPORT IConfig {
 public:
  // Appends value as the next index of the property name; nothing is ever replaced.
  virtual void addProperty(const std::string& name, const std::string& value) = 0;

  // Appends a new, empty section as the next index of name and returns it: the very object that
  // this configuration keeps, not a copy.
  virtual IConfigPtr addSection(const std::string& name) = 0;

  // The number of sections called name; 0 when there are none.
  virtual std::uint32_t getSectionCount(const std::string& name) const = 0;

  // The section called name at index. Throws NOT_FOUND (0x3000001) with a message that names the
  // section when there is no such name or the index is out of bounds.
  virtual IConfigPtr getSection(const std::string& name, std::uint32_t index) const = 0;

  // The number of values of the property name; 0 when there are none.
  virtual std::uint32_t getPropertyCount(const std::string& name) const = 0;

  // Assigns the value of the property name at index to value and answers true; answers false and
  // leaves value alone when there is no such name or index.
  virtual bool getProperty(const std::string& name, std::string& value,
                           std::uint32_t index) const = 0;

  // The same for the property that select names, below this configuration: a string such as
  // "network.interface[1].address" converts. A section of the selector that does not exist throws
  // NOT_FOUND, as getSection does; a selector that ends in "." throws code 1.
  virtual bool getProperty(const Select& select, std::string& value) const = 0;

  virtual ~IConfig();
};

}  // namespace service::util::config

#endif
