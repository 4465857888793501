// What was given for the settings of a struct, and where: the texts that are in force, as a reading
// finds them.
#ifndef SRC_BIND_GIVENTEXTS_HPP
#define SRC_BIND_GIVENTEXTS_HPP

#include <map>
#include <string>
#include <vector>

#include "service/util/config/xml/Location.hpp"

namespace service::util::config::bind::internal {

struct GivenTexts {
  struct Text {
    std::string text;
    xml::Location place;
    bool isFromFile;
  };

  std::map<std::string, std::vector<Text>> settings;        // by name; a list has several
  std::map<std::string, std::vector<GivenTexts>> sections;  // by name, in the order of the struct
  std::string key;                                          // of a keyed section, as text
};

}  // namespace service::util::config::bind::internal

#endif
