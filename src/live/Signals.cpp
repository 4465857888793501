#include "live/Signals.hpp"

#include <cutil/cutil.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "cppUtil/err/Exception.hpp"

namespace service::util::config::live {

namespace {

constexpr std::uint32_t entries =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t contents = IN_MODIFY | IN_CLOSE_WRITE;

int required(int number) {
  if (number >= 0) return number;
  const int error = errno;
  throw cppUtil::err::Exception(CU_SYSTEM_FAILURE, error, "src/live",
                                "service::util::config::live::Signals::Signals()", __LINE__,
                                "no descriptor for the files that are followed: ")
      << std::strerror(error);
}

}  // namespace

Descriptor::~Descriptor() {
  if (number >= 0) ::close(number);
}

Signals::Signals()
    : all(required(::epoll_create1(EPOLL_CLOEXEC))),
      timer(required(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK))),
      events(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
  for (const Descriptor* one : {&timer, &events}) {
    epoll_event event{};
    event.events = EPOLLIN;
    if (one->get() >= 0) required(::epoll_ctl(all.get(), EPOLL_CTL_ADD, one->get(), &event));
  }
}

void Signals::watch(const std::map<std::string, Places::Directory>& directories) {
  if (events.get() < 0) return;
  for (auto& watch : watches) watch.second = {{}, false};
  for (const auto& [path, directory] : directories) {
    // Not what others write in directories that are but on the way, such as /tmp.
    const std::uint32_t mask = directory.hasFiles ? entries | contents : entries;
    const int number =
        ::inotify_add_watch(events.get(), path.c_str(), IN_ONLYDIR | IN_EXCL_UNLINK | mask);
    if (number < 0) continue;
    Watch& watch = watches[number];  // one for several paths of a directory
    watch.names.insert(directory.names.begin(), directory.names.end());
    watch.isWanted = true;
  }
  for (auto watch = watches.begin(); watch != watches.end();) {
    if (!watch->second.isWanted) ::inotify_rm_watch(events.get(), watch->first);
    watch = watch->second.isWanted ? std::next(watch) : watches.erase(watch);
  }
}

void Signals::wakeIn(std::chrono::nanoseconds time) {
  const auto wait = std::max(time, std::chrono::nanoseconds(1));  // 0 would be never
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(wait);
  itimerspec spec{};
  spec.it_value.tv_sec = static_cast<time_t>(seconds.count());
  spec.it_value.tv_nsec = static_cast<long>((wait - seconds).count());
  ::timerfd_settime(timer.get(), 0, &spec, nullptr);
}

bool Signals::take() {
  std::uint64_t expirations = 0;
  [[maybe_unused]] const ssize_t ignored = ::read(timer.get(), &expirations, sizeof expirations);
  bool isOfInterest = false;
  alignas(inotify_event) std::array<char, std::size_t{16} * 1024> buffer;
  while (events.get() >= 0) {
    const ssize_t size = ::read(events.get(), buffer.data(), buffer.size());
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) break;
    for (const char* at = buffer.data(); at < buffer.data() + size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(at);
      at += sizeof(inotify_event) + event->len;
      // Of a directory itself, or of events that were lost.
      const bool isForAll = event->len == 0;
      isOfInterest |= this->isOfInterest(event->wd, isForAll ? "" : event->name, isForAll);
      if ((event->mask & IN_IGNORED) != 0) watches.erase(event->wd);
    }
  }
  return isOfInterest;
}

bool Signals::isOfInterest(int watch, const std::string& name, bool isForAll) const {
  const auto found = watches.find(watch);
  if (found == watches.end()) return watch < 0;
  return isForAll || found->second.names.count(name) > 0;
}

}  // namespace service::util::config::live
