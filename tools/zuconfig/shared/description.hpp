// What a description says of a setting, list or section, in words.
#ifndef TOOLS_ZUCONFIG_SHARED_DESCRIPTION_HPP
#define TOOLS_ZUCONFIG_SHARED_DESCRIPTION_HPP

#include <string>
#include <vector>

#include "shared/Programs.hpp"

namespace zuconfig {

// All texts are safe to show.

// What it may be: "whole number, 1 to 65535", "list, 0 to 2: text".
std::string formOf(const Described& described);

// What else there is to know, besides its text, its default and whether it is required.
std::vector<std::string> remarksOn(const Described& described);

// One line each: first the form, then everything but the text.
std::vector<std::string> linesOf(const Described& described);

}  // namespace zuconfig

#endif
