// What the Options of a Live hold.
#ifndef SRC_LIVE_CHOICES_HPP
#define SRC_LIVE_CHOICES_HPP

#include "live/Clock.hpp"
#include "service/util/config/live/Engine.hpp"

namespace service::util::config::live::internal {

struct Choices::Held {
  std::string lastGood;  // empty for none
  bind::Overrides overrides;
  std::chrono::nanoseconds slowPoll = std::chrono::seconds(5);
  std::vector<Check> checks;
  std::shared_ptr<const Clock> clock = std::make_shared<Clock>();
};

}  // namespace service::util::config::live::internal

#endif
