// Watches a load for what it depends on, besides for where its values came from.
#ifndef SRC_LIVE_OBSERVEDLOAD_HPP
#define SRC_LIVE_OBSERVEDLOAD_HPP

#include "live/Places.hpp"
#include "service/util/config/xml/Origins.hpp"

namespace service::util::config::live {

// A file is noted before it is read, so that a change during the reading shows.
class ObservedLoad : public xml::Origins {
 public:
  void fileLookedUp(const std::string& name, const std::string& path) override;
  void fileReferred(const std::string& path) override { places.add(path); }

  // Whether a look-up is known to have missed what stands there now.
  bool hasMissed() const { return isMissed; }

  const Places& getPlaces() const { return places; }

 private:
  Places places;
  bool isMissed = false;
};

}  // namespace service::util::config::live

#endif
