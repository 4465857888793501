// One descriptor that becomes readable when something may have changed in some directories, or when
// a time has come.
//
// It tells of reasons to look, no more: where the kernel gives no watch (their number is limited,
// and file systems of the network know nothing of other machines), only the time is left.
#ifndef SRC_LIVE_SIGNALS_HPP
#define SRC_LIVE_SIGNALS_HPP

#include <chrono>
#include <map>
#include <set>
#include <string>

#include "live/Places.hpp"

namespace service::util::config::live {

// An open file of the kernel's, or none.
class Descriptor {
 public:
  explicit Descriptor(int number) : number(number) {}
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return number; }

 private:
  int number;
};

class Signals {
 public:
  // Throws cppUtil::err::Exception, code 4 with the error of the system, when there is no
  // descriptor to be had.
  Signals();

  int fd() const { return all.get(); }

  // Watches these directories from now on. May be called again for the
  // same ones: a directory that was removed and made again is another one.
  void watch(const std::map<std::string, Places::Directory>& directories);

  // Becomes readable after that time.
  void wakeIn(std::chrono::nanoseconds time);

  // Takes what there is to read, and answers whether something of interest happened in a directory.
  bool take();

 private:
  struct Watch {
    std::set<std::string> names;
    bool isWanted;
  };

  bool isOfInterest(int watch, const std::string& name, bool isForAll) const;

  const Descriptor all;
  const Descriptor timer;
  const Descriptor events;       // of the directories; -1 where there are none to be had
  std::map<int, Watch> watches;  // by number
};

}  // namespace service::util::config::live

#endif
