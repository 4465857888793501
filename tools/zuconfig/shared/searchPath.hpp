// The configuration search path of this process and where its entries came from.
#ifndef TOOLS_ZUCONFIG_SHARED_SEARCHPATH_HPP
#define TOOLS_ZUCONFIG_SHARED_SEARCHPATH_HPP

#include <string>
#include <vector>

namespace zuconfig {

struct PathEntry {
  std::string directory;  // empty is the current directory
  std::string source;     // "-I", "ZU_CONFIG_PATH", "XDG_CONFIG_DIRS" and the like
};

// The entries, front first. prepended: those that this process has put before the others. The
// locator library does not tell sources: they are worked out from the environment, as it does, and
// left open where that does not give what is there.
std::vector<PathEntry> getSearchPath(const std::vector<PathEntry>& prepended);

// Why nothing can be found in directory; empty when it is a directory.
std::string whyNoDirectory(const std::string& directory);

// A directory of the search path, for the eye.
std::string shownDirectory(const std::string& directory);

}  // namespace zuconfig

#endif
