// Why a name leads to no file: what is there instead, and what was meant.
#ifndef TOOLS_ZUCONFIG_SHARED_MISSINGFILE_HPP
#define TOOLS_ZUCONFIG_SHARED_MISSINGFILE_HPP

#include <string>

namespace zuconfig {

// What to add to the message that name is not found, beside the file includer, unless that is
// empty, and along the search path: that it is no file to read, or the names that may have been
// meant.
std::string hintForMissing(const std::string& name, const std::string& includer);

// The whole sentence, for a name that was asked for.
std::string notFound(const std::string& name);

}  // namespace zuconfig

#endif
