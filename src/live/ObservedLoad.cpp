#include "live/ObservedLoad.hpp"

#include "service/util/locator/SearchOrder.hpp"

namespace service::util::config::live {

void ObservedLoad::fileLookedUp(const std::string& name, const std::string& path) {
  const bool isAlongPath = !name.empty() && name.front() != '/';
  for (const std::string& directory :
       isAlongPath ? locator::ConfigLocator::getEntries() : std::vector<std::string>{""}) {
    const bool needsSlash = !directory.empty() && directory.back() != '/';
    std::string place = directory;
    if (needsSlash) place += '/';
    place += name;
    if (!places.add(place)) continue;
    // What is found may be spelled otherwise.
    isMissed |= path.empty() || locator::identityOf(place) != locator::identityOf(path);
    return;
  }
  places.add(path);  // of a platform that tells no entries
}

}  // namespace service::util::config::live
