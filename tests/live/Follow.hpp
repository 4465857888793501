// A Live under a clock that is driven, over files in a folder of its own; and what it tells, as
// text.
#ifndef TESTS_LIVE_FOLLOW_HPP
#define TESTS_LIVE_FOLLOW_HPP

#include <gtest/gtest.h>

#include <poll.h>

#include <thread>

#include "TemporaryFolder.hpp"
#include "failureOf.hpp"
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

inline std::string property(const std::string& name, const std::string& value) {
  return "<property name='" + name + "'>" + value + "</property>";
}

// Its folder is the current directory; the search path has the directories early, which is not
// there, site, and the folder.
class LiveTest : public testing::Test, protected TemporaryFolder {
 protected:
  LiveTest() {
    std::filesystem::current_path(path);
    setSearchPath({path / "early", path / "site", ""});
  }

  void put(const std::string& name, const std::string& content) const {
    write(name,
          "<config xmlns='urn:zu:util:config' name='n' version='1'>\n" + content + "\n</config>\n");
  }
  void put(const std::string& content) const { put("site/main.xml", content); }
  static void shell(const std::string& command) {
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
  }
  // What was written is no longer so new that it is read again for that alone.
  static void age() { std::this_thread::sleep_for(live::Places::newness); }

  // With a clock that is driven.
  template <class Live>
  typename Live::Options options() const {
    typename Live::Options options;
    options.get().get().clock = clock;
    return options;
  }

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
    return shown(result);
  }

  // As text, with the files of the folder relative to it, or to site.
  std::string shown(const live::Change& change) const {
    const auto side = [](const std::optional<std::string>& value, const xml::Location& at) {
      return value ? *value + " (" + textOf(at) + ")" : "none";
    };
    return relative(change.path + ": " + side(change.before, change.beforeLocation) + " -> " +
                    side(change.after, change.afterLocation) +
                    (change.needsRestart ? " at restart" : ""));
  }
  std::string shown(const std::vector<xml::Problem>& problems) const {
    std::string text;
    for (const auto& problem : problems) {
      text += "\n" + textOf(problem.location) + ": " + problem.message + " [" + problem.rule + "]";
    }
    return relative(text);
  }
  std::string shown(const live::internal::Result& result) const {
    const char* outcomes[] = {"UNCHANGED", "CHANGED", "REFUSED"};
    std::string text = outcomes[result.outcome];
    for (const auto& change : result.changes) text += "\n" + shown(change);
    return text + shown(result.problems);
  }

  std::shared_ptr<DrivenClock> clock = std::make_shared<DrivenClock>();

 private:
  static std::string textOf(const xml::Location& at) {
    if (at.file.empty()) return "default";
    return at.line > 0 ? at.file + ":" + std::to_string(at.line) : at.file;
  }
  std::string relative(std::string text) const {
    for (const std::string& start :
         {path.string() + "/site/", path.string() + "/", path.string()}) {
      for (std::size_t at = 0; (at = text.find(start)) != text.npos;) text.erase(at, start.size());
    }
    return text;
  }
};

}  // namespace follow

#endif
