// Decides when the files are to be read again: when something that the last reading depended on is
// different, and nothing has moved for a while, so that several changes are taken as one.
#ifndef SRC_LIVE_TRIGGER_HPP
#define SRC_LIVE_TRIGGER_HPP

#include <chrono>
#include <optional>
#include <vector>

#include "live/Clock.hpp"
#include "live/Places.hpp"
#include "live/Signals.hpp"

namespace service::util::config::live {

class Trigger {
 public:
  // How long nothing must have moved, and how long that is waited for.
  static constexpr std::chrono::milliseconds quiet{200};
  static constexpr std::chrono::milliseconds longest{2000};

  // clock is kept by reference. slowPoll: how often to look without a reason.
  Trigger(const Clock& clock, std::chrono::nanoseconds slowPoll);

  int fd() const { return signals.fd(); }

  // The files were read, or are about to be watched for the first time; they depend on the
  // places read. Answers whether one of these has changed since it was noted.
  bool follow(Places read);

  // Whether the files are to be read now. Does not block.
  bool poll();

  // fd() becomes readable, and poll answers true, after the quiet time.
  void again();
  // fd() becomes readable at once.
  void wake() { signals.wakeIn(std::chrono::nanoseconds(0)); }

  const Places& getPlaces() const { return places; }

 private:
  using Time = std::chrono::nanoseconds;

  // Something moves, since then.
  struct Motion {
    Time first;
    Time last;
    std::vector<Identity> seen;  // at last; empty where signals tell of each further motion
    bool isSure;                 // the files are to be read even if no place is different
  };

  bool isQuiet(Time now);
  void arm(Time now);

  const Clock& clock;
  const Time slowPoll;
  Signals signals;
  Places places;
  std::optional<Motion> motion;
  std::optional<Time> rereading;  // when to read again what was new
  Time nextLook{};
};

}  // namespace service::util::config::live

#endif
