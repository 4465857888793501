// Settings from the command line, which go before those of files and of the environment.
//
//   bind::Overrides overrides;
//   overrides.add("broker.port=1883");
//
// Belongs to one thread at a time.
#ifndef SERVICE_UTIL_CONFIG_BIND_OVERRIDES_HPP
#define SERVICE_UTIL_CONFIG_BIND_OVERRIDES_HPP

#include <string>
#include <utility>
#include <vector>

#include "cppUtil/export.hpp"

namespace service::util::config::bind {

class ZU_EXPORT Overrides {
 public:
  // assignment: a path as in bind.hpp, "=", and the text of the value, which may be empty. Of a
  // setting that is given several times the last counts; a list takes all. Throws
  // cppUtil::err::Exception: code 5 when there is no "=", INVALID_SELECT when the path is
  // malformed. Whether a setting of that path exists shows when the overrides are used.
  void add(const std::string& assignment);

  // Path and text, in the order of addition.
  const std::vector<std::pair<std::string, std::string>>& get() const { return assignments; }

 private:
  std::vector<std::pair<std::string, std::string>> assignments;
};

}  // namespace service::util::config::bind

#endif
