#include "load/describeFile.hpp"

namespace service::util::config::xml::internal {

using locator::ConfigLocator;

// Entries further up the path than the one that path was found in hold no file of that name, unless
// one has appeared since the look-up.
Observer::File describeFile(locator::SearchOrder& order, const std::string& name,
                            const std::string& path, const Location& include,
                            const Observer::File* includer) {
  Observer::File file = {name, path, "", {}, include, includer};
  for (ConfigLocator::Match& match : order.findAll(name)) {
    if (match.file == path) {
      file.directory = std::move(match.directory);
    } else {
      file.shadowed.push_back(std::move(match));
    }
  }
  return file;
}

}  // namespace service::util::config::xml::internal
