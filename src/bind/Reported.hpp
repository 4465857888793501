// What stands behind the Report of a check across fields.
#ifndef SRC_BIND_REPORTED_HPP
#define SRC_BIND_REPORTED_HPP

#include <string>
#include <vector>

#include "bind/Description.hpp"
#include "bind/Findings.hpp"

namespace service::util::config::bind::internal {

struct Reported {
  const Description& description;
  const std::string& path;           // to the struct that is checked
  const Place& place;                // of it
  const std::vector<Place>& places;  // of its fields, by row; of absent ones that of the struct
  Findings& findings;
};

}  // namespace service::util::config::bind::internal

#endif
