#include "Settings.hpp"

namespace bind = service::util::config::bind;

namespace doors {

bind::Fields describe(bind::Is<Door> /*door*/) {
  return {
      bind::field<&Door::colour>("colour").about("of both sides"),
      bind::field<&Door::closes>("closes").range(std::chrono::seconds(5), std::chrono::hours(1))};
}

bind::Fields describe(bind::Is<Settings> /*settings*/) {
  return {bind::sections<&Settings::doors>("door").count(1, 9)};
}

}  // namespace doors
