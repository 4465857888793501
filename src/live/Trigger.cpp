#include "live/Trigger.hpp"

#include <algorithm>

namespace service::util::config::live {

Trigger::Trigger(const Clock& clock, std::chrono::nanoseconds slowPoll)
    : clock(clock), slowPoll(slowPoll) {}

// Watched first, then looked at: what changes in between is seen by one of the two.
bool Trigger::follow(Places read) {
  places = std::move(read);
  signals.watch(places.getDirectories());
  const Time now = clock.now();
  motion.reset();
  rereading.reset();
  if (places.hasNew()) rereading = now + Places::newness;
  nextLook = now + slowPoll;
  arm(now);
  return places.look() != places.noted();
}

void Trigger::again() {
  const Time now = clock.now();
  motion = Motion{now, now, {}, true};
  arm(now);
}

bool Trigger::poll() {
  const bool isSignalled = signals.take();
  const Time now = clock.now();
  if (isSignalled) {
    if (!motion) motion = Motion{now, now, {}, false};
    motion->last = now;
  }
  if (now >= nextLook) {
    nextLook = now + slowPoll;
    auto seen = motion ? std::vector<Identity>() : places.look();
    if (!motion && seen != places.noted()) motion = Motion{now, now, std::move(seen), false};
  }
  if (motion && rereading) {  // which waits until nothing moves
    motion->isSure = true;
    rereading.reset();
  }
  const bool isDue = (rereading && now >= *rereading) || (motion && isQuiet(now));
  if (isDue) rereading.reset();
  arm(now);
  return isDue;
}

// Whether what moved has come to rest, or has moved too long, and is different from what was read.
bool Trigger::isQuiet(Time now) {
  if (now < std::min(motion->last + quiet, motion->first + longest)) return false;
  auto seen = places.look();
  if (!motion->isSure && seen == places.noted()) {
    motion.reset();
    signals.watch(places.getDirectories());  // a directory may be another one in all but its number
    return false;
  }
  if (!motion->seen.empty() && seen != motion->seen && now < motion->first + longest) {
    motion->last = now;
    motion->seen = std::move(seen);
    return false;
  }
  motion.reset();
  return true;
}

void Trigger::arm(Time now) {
  Time next = nextLook;
  if (rereading) next = std::min(next, *rereading);
  if (motion) next = std::min({next, motion->last + quiet, motion->first + longest});
  signals.wakeIn(next - now);
}

}  // namespace service::util::config::live
