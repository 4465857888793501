// Prints what differs between two sides, before and after: for the eye, or as records for scripts.
#ifndef TOOLS_ZUCONFIG_SHARED_SIDEWRITER_HPP
#define TOOLS_ZUCONFIG_SHARED_SIDEWRITER_HPP

#include <string>

#include "shared/text.hpp"

namespace CLI {
class App;  // its header takes seconds to compile
}

namespace zuconfig {

struct SideWriter {
  // Declares -0.
  void define(CLI::App& command);

  // What the sides that follow are of; of a section, its selector ends in a dot.
  void start(const std::string& selector) const;
  // sign: '-' or '+'. value: empty for a section. place: where it stands.
  void write(char sign, const std::string& selector, const std::string& value,
             const std::string& place) const;

  bool isNull = false;
  Colours colours;
};

}  // namespace zuconfig

#endif
