// The time that waits are counted in. Tests have clocks of their own.
#ifndef SRC_LIVE_CLOCK_HPP
#define SRC_LIVE_CLOCK_HPP

#include <chrono>

namespace service::util::config::live {

class Clock {
 public:
  virtual ~Clock() = default;

  // Since a moment that stays the same; never goes back.
  virtual std::chrono::nanoseconds now() const {
    return std::chrono::steady_clock::now().time_since_epoch();
  }
};

}  // namespace service::util::config::live

#endif
