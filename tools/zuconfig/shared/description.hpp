// What a description says of a setting, list or section, in words.
#ifndef TOOLS_ZUCONFIG_SHARED_DESCRIPTION_HPP
#define TOOLS_ZUCONFIG_SHARED_DESCRIPTION_HPP

#include <string>
#include <vector>

#include "shared/Programs.hpp"

namespace zuconfig {

// One line each, safe to show: first what it is, then what else there is to know.
std::vector<std::string> linesOf(const Described& described);

}  // namespace zuconfig

#endif
