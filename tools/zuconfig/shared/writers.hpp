// The formats of zuconfig dump. Each writes while it walks, so that the size does not matter.
#ifndef TOOLS_ZUCONFIG_SHARED_WRITERS_HPP
#define TOOLS_ZUCONFIG_SHARED_WRITERS_HPP

#include <ostream>
#include <string>

#include "service/util/config/IConfig.hpp"

namespace zuconfig {

using service::util::config::IConfigPtr;

// One line for each value: selector, "=", the value escaped. isNull: selector, line break, the
// value as it is, zero byte.
void writePaths(std::ostream& out, const IConfigPtr& config, bool isNull);

// Each section is an object {"properties": {name: [value...]}, "sections": {name: [section...]}}.
void writeJson(std::ostream& out, const IConfigPtr& config);

// One assignment for each value to a variable whose name is made of prefix and selector. Throws
// Failure when the prefix starts no variable name.
void writeShell(std::ostream& out, const IConfigPtr& config, const std::string& prefix);

}  // namespace zuconfig

#endif
