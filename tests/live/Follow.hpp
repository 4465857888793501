// A Live under a clock that is driven, over files in a folder of its own; and what it tells, as
// text.
#ifndef TESTS_LIVE_FOLLOW_HPP
#define TESTS_LIVE_FOLLOW_HPP

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>

#include <sstream>

#include "TemporaryFolder.hpp"
#include "cppUtil/err/Exception.hpp"
#include "live/Choices.hpp"
#include "live/Trigger.hpp"
#include "loader/LoaderState.hpp"
#include "service/util/config/Live.hpp"

namespace follow {

using namespace service::util::config;
using namespace std::chrono_literals;

struct DrivenClock : live::Clock {
  std::chrono::nanoseconds now() const override { return time; }
  std::chrono::nanoseconds time{0};
};

// While it lives, the process gets so many descriptors more, and then no further one.
class FewDescriptors {
 public:
  explicit FewDescriptors(int more) {
    ::getrlimit(RLIMIT_NOFILE, &before);
    const int next = ::open("/", O_RDONLY);
    ::close(next);
    const rlimit few = {static_cast<rlim_t>(next + more), before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
  }
  ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before); }

 private:
  rlimit before{};
};

inline std::string asFile(const std::string& content) {
  return "<config xmlns='urn:zu:util:config' name='n' version='1'>\n" + content + "\n</config>\n";
}
inline std::string property(const std::string& name, const std::string& value) {
  return "<property name='" + name + "'>" + value + "</property>";
}

class Folder : public TemporaryFolder {
 public:
  // In front of the search path are the directories early, which is not there, and site.
  Folder() { setSearchPath({path / "early", path / "site"}); }

  void put(const std::string& name, const std::string& content) const {
    write(name, asFile(content));
  }
  void shell(const std::string& command) const {
    ASSERT_EQ(std::system(("cd " + path.string() + " && " + command).c_str()), 0) << command;
  }

  std::string shown(const xml::Location& at) const {
    if (at.file.empty()) return "default";
    const std::string start = path.string() + "/";
    const std::string file = at.file.rfind(start, 0) == 0 ? at.file.substr(start.size()) : at.file;
    return at.line > 0 ? file + ":" + std::to_string(at.line) : file;
  }

  std::string shown(const live::Change& change) const {
    return change.path + ": " +
           (change.before ? *change.before + " (" + shown(change.beforeLocation) + ")" : "none") +
           " -> " +
           (change.after ? *change.after + " (" + shown(change.afterLocation) + ")" : "none") +
           (change.needsRestart ? " at restart" : "");
  }

  std::string shown(const std::vector<xml::Problem>& problems) const {
    std::string text;
    for (const auto& problem : problems) {
      text += "\n" + shown(problem.location) + ": " + problem.message + " [" + problem.rule + "]";
    }
    return text;
  }

  template <class Result>
  std::string shown(const Result& result) const {
    const char* outcomes[] = {"UNCHANGED", "CHANGED", "REFUSED"};
    std::string text = outcomes[result.outcome];
    for (const auto& change : result.changes) text += "\n" + shown(change);
    return text + shown(result.problems);
  }
};

// The options of Live with a clock of the test's.
template <class Live>
typename Live::Options drivenBy(const std::shared_ptr<DrivenClock>& clock) {
  typename Live::Options options;
  options.get().get().clock = clock;
  return options;
}

class LiveTest : public testing::Test {
 protected:
  // What is told when all has come to rest; at once, since only the clock waits. The first step is
  // for what was written less than 20 ms ago.
  template <class Live>
  std::string next(Live& live, std::chrono::nanoseconds step = live::Trigger::quiet) {
    live.poll();
    clock->time += step;
    auto result = live.poll();
    if (result.outcome == Live::UNCHANGED) {
      clock->time += live::Trigger::quiet;
      result = live.poll();
    }
    return folder.shown(result);
  }

  Folder folder;
  std::shared_ptr<DrivenClock> clock = std::make_shared<DrivenClock>();
};

}  // namespace follow

#endif
