// Settings of a program that follow their files: what is taken, what is told, what is refused.
#include <cstdlib>
#include <functional>
#include <map>

#include "Follow.hpp"

namespace follow {

namespace {

using namespace bind;

std::function<void()> whileRead;  // runs while the files are read

struct Pump {
  std::string name;
  int speed = 100;
  int line = 1;
};
Fields describe(Is<Pump> /*type*/) {
  return {field<&Pump::name>("name"), field<&Pump::speed>("speed"),
          field<&Pump::line>("line").needsRestart()};
}

struct Broker {
  std::string host = "localhost";
  int port = 1883;
  std::chrono::milliseconds timeout = 5s;
  std::optional<Secret> password;
};
Fields describe(Is<Broker> /*type*/) {
  return {field<&Broker::host>("host"), field<&Broker::port>("port").needsRestart(),
          field<&Broker::timeout>("timeout"), field<&Broker::password>("password")};
}

struct Plant {
  std::string title = "none";
  Broker broker;
  std::optional<Pump> spare;
  std::optional<Pump> later;
  std::map<std::string, Pump> pumps;
  std::vector<Pump> wells;
  std::vector<int> valves;
  std::vector<Pump> fixed;
  int unlisted = 0;
};
Fields describe(Is<Plant> /*type*/) {
  return Fields{field<&Plant::title>("title"),
                section<&Plant::broker>("broker"),
                section<&Plant::spare>("spare").needsRestart(),
                section<&Plant::later>("later").needsRestart(),
                sections<&Plant::pumps>("pump").keyedBy<&Pump::name>(),
                sections<&Plant::wells>("well"),
                list<&Plant::valves>("valve"),
                sections<&Plant::fixed>("fixed").needsRestart()}
      .envPrefix("LIVE_")
      .check([](const Plant& plant, Report& report) {
        if (whileRead) whileRead();
        if (plant.broker.port == 13) report.error("broker", "13 brings bad luck");
      });
}

using Followed = Live<Plant>;

std::string section(const std::string& name, const std::string& content) {
  return "<section name='" + name + "'>" + content + "</section>";
}
std::string broker(const std::string& host, const std::string& port) {
  return section("broker", property("host", host) + property("port", port));
}
// In a line of its own.
std::string pump(const std::string& name, const std::string& speed, const std::string& line = "1") {
  return "\n" + section("pump",
                        property("name", name) + property("speed", speed) + property("line", line));
}

class SettingsTest : public LiveTest {
 protected:
  // Notes in fired what live tells.
  void listen(Followed& live) {
    const auto note = [this](const std::string& name) {
      return [this, name](const auto&, const auto&) { fired += name + " "; };
    };
    live.onChange<&Plant::title>(note("title"));
    live.onChange<&Plant::pumps>(note("pumps"));
    live.onChange<&Plant::valves>(note("valves"));
    live.onChange<&Plant::broker>([&](const Broker& before, const Broker& now) {
      fired += before.host + ">" + now.host + ", is " + live.get()->broker.host + " ";
    });
  }

  // What is told, and called, after main.xml has that content.
  std::string after(Followed& live, const std::string& content) {
    put(content);
    fired = "\n";
    const std::string told = next(live);
    return told + (fired == "\n" ? "" : fired);
  }

  std::string fired;
};

TEST_F(SettingsTest, ChangesAreOfValuesAndFireByField) {
  const std::string title = property("title", "b");
  const std::string rest = title + section("broker", property("timeout", "6s"));
  const std::string valve = property("valve", "2");
  put(property("title", "a") + pump("in", "1") + pump("out", "2"));
  Followed live("main.xml", {}, true, options<Followed>());
  listen(live);
  EXPECT_EQ(after(live, title + pump("in", "1") + pump("out", "2")),
            "CHANGED\ntitle: a (main.xml:2) -> b (main.xml:2)\ntitle ");
  EXPECT_EQ(after(live, title + section("broker", property("timeout", "5000ms")) +
                            pump("out", "2") + pump("in", "1")),
            "UNCHANGED");
  EXPECT_EQ(after(live, rest + pump("out", "3") + pump("in", "1")),
            "CHANGED\nbroker.timeout: 5000ms (main.xml:2) -> 6s (main.xml:2)\n"
            "pump[0].speed: 2 (main.xml:3) -> 3 (main.xml:3)\n"
            "pumps localhost>localhost, is localhost ");
  EXPECT_EQ(after(live, rest + property("valve", "1") + valve + pump("in", "1")),
            "CHANGED\nvalve[0]: none -> 1 (main.xml:2)\nvalve[1]: none -> 2 (main.xml:2)\n"
            "pump[0]:  (default) -> none\npump[0].name: out (main.xml:3) -> none\n"
            "pump[0].speed: 3 (main.xml:3) -> none\npump[0].line: 1 (main.xml:3) -> none\n"
            "pumps valves ");
  EXPECT_EQ(after(live, rest + valve + valve + pump("in", "1")),
            "CHANGED\nvalve[0]: 1 (main.xml:2) -> 2 (main.xml:2)\nvalves ");
  EXPECT_EQ(failureOf([&] { live.onChange<&Plant::unlisted>([](int, int) {}); }),
            "INVALID_ARGUMENT: the member is no field of the struct's description");
  EXPECT_EQ(failureOf([] { Followed::Options().slowPoll(0s); }),
            "INVALID_ARGUMENT: the time between two looks at the files must be more than none");
}

TEST_F(SettingsTest, ChecksSeeWhatWillBeInForceAndRefuse) {
  put(broker("localhost", "1"));
  auto options = LiveTest::options<Followed>();
  options.onCheck([&](const Plant& now, const Plant& next, std::vector<xml::Problem>& problems) {
    fired += std::to_string(now.broker.port) + now.broker.host + ">" +
             std::to_string(next.broker.port) + next.broker.host + " ";
    if (next.broker.host == "bad") {
      problems.push_back({xml::Severity::ERROR, "own", "a bad host", "", {}, {}});
    }
    if (next.broker.host == "odd") throw std::runtime_error("odd");
  });
  Followed live("main.xml", {}, false, options);
  EXPECT_EQ(fired, "1localhost>1localhost ");
  live.onCheck([&](const Plant&, const Plant&, std::vector<xml::Problem>&) {
    clock->time += live::Places::newness;
    EXPECT_EQ(live.poll().outcome, Followed::UNCHANGED) << "within a poll";
    fired += "second ";
  });
  live.onChange<&Plant::broker>(
      [&](const Broker&, const Broker&) { throw std::runtime_error("too late"); });
  listen(live);
  EXPECT_EQ(after(live, broker("bad", "2")),
            "REFUSED\ndefault: a bad host [own]\n1localhost>1bad second ");
  EXPECT_EQ(after(live, broker("odd", "2")),
            "REFUSED\ndefault: a check failed: odd [refused]\n1localhost>1odd second ");
  EXPECT_EQ(after(live, broker("new", "2")),
            "CHANGED\nbroker.host: localhost (main.xml:2) -> new (main.xml:2)\n"
            "broker.port: 1 (main.xml:2) -> 2 (main.xml:2) at restart\n"
            "default: a function that is told failed: too late [callback-failed]\n"
            "1localhost>1new second localhost>new, is new ");
  EXPECT_EQ(shown(live.problems()), "");
  put(broker("bad", "2"));
  EXPECT_EQ(failureOf([&] { Followed("main.xml", {}, false, options); }),
            "INVALID_ARGUMENT: error: a bad host [own]");
}

TEST_F(SettingsTest, BadFilesAreToldOnceForEachState) {
  put(property("title", "a"));
  Followed live("main.xml", {}, false, options<Followed>());
  const auto first = live.get();
  const std::string bad = section("broker", "\n" + property("port", "x"));
  const std::string told =
      "REFUSED\nmain.xml:3: broker.port: \"x\" is not a whole number [bad-value]";
  const auto missing = [](const std::string& name) {
    return "\nmain.xml:2: no readable file \"" + name + "\" in site, early,  [missing-include]";
  };
  EXPECT_EQ(after(live, bad), told);
  EXPECT_EQ(next(live, 5s), "UNCHANGED");
  EXPECT_EQ(shown(live.problems()), told.substr(7));
  EXPECT_EQ(after(live, bad), told) << "written again";
  EXPECT_EQ(after(live, broker("h", "13")),
            "REFUSED\nmain.xml:2: broker: 13 brings bad luck [refused]");
  EXPECT_EQ(after(live, "<section"),
            "REFUSED\nmain.xml:3: unterminated start tag 'section' [not-well-formed]");
  EXPECT_EQ(after(live, "<include>none</include><include>part.xml</include><ignored/>"),
            "REFUSED" + missing("none") + missing("part.xml"));
  put("site/part.xml", "");
  EXPECT_EQ(next(live), "REFUSED" + missing("none")) << "beyond the first mistake";
  EXPECT_EQ(after(live, property("title", "a")), "UNCHANGED");
  EXPECT_EQ(shown(live.problems()), "");
  EXPECT_EQ(live.get(), first);
}

TEST_F(SettingsTest, NoSetIsMixed) {
  put(property("title", "a") + property("valve", "1"));
  Followed live("main.xml", {}, false, options<Followed>());
  int readings = 0;
  whileRead = [&] {
    if (++readings < 4) put(property("title", "b") + property("valve", std::to_string(readings)));
  };
  EXPECT_EQ(after(live, property("title", "b") + property("valve", "0")),
            "CHANGED\ntitle: a (main.xml:2) -> b (main.xml:2)\n"
            "valve: 1 (main.xml:2) -> 3 (main.xml:2)");
  whileRead = [&] { put(property("title", std::to_string(++readings))); };
  EXPECT_EQ(after(live, property("title", "c")), "UNCHANGED") << "never at rest";
  EXPECT_EQ(failureOf([] { Followed("main.xml", {}, false); }),
            "INVALID_ARGUMENT: the files change all the time");
  whileRead = nullptr;
  EXPECT_EQ(next(live).substr(0, 37), "CHANGED\ntitle: b (main.xml:2) -> 24 (");
}

TEST_F(SettingsTest, WhatNeedsARestartWaitsForIt) {
  const auto line = [](const std::string& name, const std::string& value) {
    return section(name, property("line", value));
  };
  const std::string rest = line("well", "1") + line("spare", "5") + line("fixed", "1");
  put(broker("h", "1") + rest + pump("in", "1", "1") + pump("out", "1", "2"));
  Followed live("main.xml", {}, false, options<Followed>());
  listen(live);
  const auto first = live.get();
  EXPECT_EQ(after(live, broker("h", "2") + rest + pump("in", "1", "5") + pump("out", "1", "2")),
            "CHANGED\nbroker.port: 1 (main.xml:2) -> 2 (main.xml:2) at restart\n"
            "pump[0].line: 1 (main.xml:3) -> 5 (main.xml:3) at restart");
  EXPECT_EQ(live.get(), first);
  EXPECT_EQ(after(live, "\n" + broker("i", "3") + line("well", "2") + line("later", "6") +
                            line("fixed", "2") + pump("out", "1", "2")),
            "CHANGED\nbroker.host: h (main.xml:2) -> i (main.xml:3)\n"
            "broker.port: 2 (main.xml:2) -> 3 (main.xml:3) at restart\n"
            "later: none ->  (default) at restart\nlater.name: none ->  (default) at restart\n"
            "later.speed: none -> 100 (default) at restart\n"
            "later.line: none -> 6 (main.xml:3) at restart\n"
            "well.line: 1 (main.xml:2) -> 2 (main.xml:3) at restart\n"
            "fixed.line: 1 (main.xml:2) -> 2 (main.xml:3) at restart\n"
            "spare:  (default) -> none at restart\nspare.name:  (default) -> none at restart\n"
            "spare.speed: 100 (default) -> none at restart\n"
            "spare.line: 5 (main.xml:2) -> none at restart\n"
            "pump[0]:  (default) -> none\npump[0].name: in (main.xml:3) -> none\n"
            "pump[0].speed: 1 (main.xml:3) -> none\npump[0].line: 5 (main.xml:3) -> none\n"
            "pumps h>i, is i ");
  const auto settings = live.get();
  EXPECT_EQ(settings->broker.port, 1);
  EXPECT_EQ(settings->pumps.at("out").line, 2);
  EXPECT_EQ(settings->wells.at(0).line, 1);
  EXPECT_EQ(settings->spare.value().line, 5);
  EXPECT_FALSE(settings->later);
  EXPECT_EQ(settings->fixed.size(), 1u);
  EXPECT_EQ(settings->fixed.at(0).line, 1);
  ASSERT_EQ(live.needsRestart().size(), 11u);
  EXPECT_EQ(shown(live.needsRestart()[0]),
            "broker.port: 1 (main.xml:2) -> 3 (main.xml:3) at restart");
  EXPECT_EQ(next(live, 5s), "UNCHANGED");
  after(live, broker("i", "1") + rest + pump("out", "1", "2"));
  EXPECT_TRUE(live.needsRestart().empty());
  EXPECT_EQ(live.get(), settings);
}

TEST_F(SettingsTest, TheEnvironmentStaysAndSecretsAreHidden) {
  ::setenv("LIVE_TITLE", "from outside", 1);
  put("");
  Followed live("main.xml", {}, false, options<Followed>());
  EXPECT_EQ(after(live, property("title", "f") + section("broker", property("password", "1"))),
            "CHANGED\nbroker.password: none -> *** (main.xml:2)");
  EXPECT_EQ(after(live, section("broker", property("password", "2"))),
            "CHANGED\nbroker.password: *** (main.xml:2) -> *** (main.xml:2)");
  EXPECT_EQ(live.get()->title + live.get()->broker.password->reveal(), "from outside2");
  ::unsetenv("LIVE_TITLE");
  EXPECT_EQ(after(live, ""),
            "CHANGED\ntitle: from outside (environment LIVE_TITLE) -> none (default)\n"
            "broker.password: *** (main.xml:2) -> none");
}

TEST_F(SettingsTest, TheLastGoodTextsAreTakenAtTheStart) {
  const auto content = [](const std::string& title) {
    return property("title", title) + section("broker", property("password", "p&amp;w")) +
           pump("in", "1") + pump("out", "2") + property("valve", "1") + property("valve", "2");
  };
  Overrides overrides;
  overrides.add("broker.port=7");
  auto options = LiveTest::options<Followed>().keepLastGood("state/kept").overrides(overrides);
  bool isRefusing = false;
  options.onCheck([&](const Plant&, const Plant&, std::vector<xml::Problem>&) {
    if (isRefusing) throw std::runtime_error("not this one");
  });
  const std::string told =
      "\nmain.xml:2: broker.timeout: \"x\" is not a time with its unit: ms, s, min, h [bad-value]";
  shell("mkdir state");
  put(content("a"));
  EXPECT_EQ(after(*std::make_unique<Followed>("main.xml", xml::SchemeList(), false, options),
                  content("b")),
            "CHANGED\ntitle: a (main.xml:2) -> b (main.xml:2)");
  put(section("broker", property("timeout", "x")));
  shell("test $(stat -c %a state/kept) = 600 && ! grep port state/kept");
  isRefusing = true;
  EXPECT_EQ(failureOf([&] { Followed("main.xml", {}, false, options); }).substr(0, 17),
            "INVALID_ARGUMENT:");
  isRefusing = false;

  age();
  Followed live("main.xml", {}, false, options);
  EXPECT_EQ(shown(live.problems()), told);
  pollfd waited{live.fd(), POLLIN, 0};
  EXPECT_EQ(::poll(&waited, 1, 4000), 1) << "before the slow poll";
  EXPECT_EQ(shown(live.poll()), "REFUSED" + told);
  EXPECT_EQ(shown(live.poll()), "UNCHANGED");
  EXPECT_EQ(live.get()->title + live.get()->broker.password->reveal(), "bp&w");
  EXPECT_EQ(live.get()->pumps.at("out").speed, live.get()->valves.at(1));
  EXPECT_EQ(after(live, content("c")), "CHANGED\ntitle: b (state/kept:3) -> c (main.xml:2)");
  EXPECT_EQ(live.get()->broker.port, 7);
  EXPECT_EQ(shown(live.problems()), "");

  shell("rm state/kept && mkdir state/kept");
  EXPECT_EQ(after(live, content("d")),
            "CHANGED\ntitle: c (main.xml:2) -> d (main.xml:2)\nstate/kept: what is in force cannot "
            "be kept: state/kept: Is a directory [last-good]");
  shell("test $(ls state) = kept");
}

TEST_F(SettingsTest, APlainConfigurationTellsAllChangesAtOnce) {
  const std::string last = property("a", "1") + section("s", property("b", "3"));
  put(section("s", property("b", "2")) + last);
  using Plain = Live<IConfig>;
  Plain live("main.xml", {}, false, options<Plain>().keepLastGood("state"));
  live.onChange([&](const std::vector<Plain::Change>& changes) {
    for (const auto& change : changes) fired += "\n" + shown(change);
  });
  live.onCheck([&](const IConfigPtr& now, const IConfigPtr& next, std::vector<xml::Problem>&) {
    EXPECT_GT(now->getSectionCount("s"), next->getSectionCount("s"));
  });
  put("\n" + last);
  const std::string told = next(live);
  EXPECT_EQ(told,
            "CHANGED\ns.b: 2 (main.xml:2) -> 3 (main.xml:3)\n"
            "s[1]:  (main.xml:2) -> none\ns[1].b: 3 (main.xml:2) -> none");
  EXPECT_EQ("CHANGED" + fired, told);
  put("\n\n" + last);
  EXPECT_EQ(next(live), "UNCHANGED");
  EXPECT_EQ(live.origins().of(live.get(), "a", 0).line, 4);
  put("<section");
  Plain restarted("main.xml", {}, false, Plain::Options().keepLastGood("state"));
  EXPECT_EQ(restarted.get()->getSectionCount("s"), 1u);
}

}  // namespace

}  // namespace follow
