// The settings of a program, for which the package exports them.
#include <service/util/config/bind.hpp>

namespace doors {

struct Door {
  std::string colour = "white";
  std::chrono::seconds closes{20};
};

struct Settings {
  std::vector<Door> doors;
};

service::util::config::bind::Fields describe(service::util::config::bind::Is<Settings> settings);

}  // namespace doors
