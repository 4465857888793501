// Settings of a program that follow their files: what is taken, what is told, what is refused.
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>

#include "Follow.hpp"

namespace follow {

namespace {

// Runs while a value of its type is read.
std::function<void()> whileRead;
struct Watched {
  std::string text;
};
std::optional<Watched> parse(bind::Is<Watched> /*type*/, const std::string& text) {
  if (whileRead) whileRead();
  return Watched{text};
}
std::string print(const Watched& value) {
  return value.text;
}

struct Pump {
  std::string name;
  int speed = 100;
  int line = 1;
};
bind::Fields describe(bind::Is<Pump> /*type*/) {
  using namespace bind;
  return {field<&Pump::name>("name"), field<&Pump::speed>("speed"),
          field<&Pump::line>("line").needsRestart()};
}

struct Broker {
  std::string host = "localhost";
  int port = 1883;
  std::chrono::milliseconds timeout = 5s;
  std::optional<bind::Secret> password;
};
bind::Fields describe(bind::Is<Broker> /*type*/) {
  using namespace bind;
  return {field<&Broker::host>("host"), field<&Broker::port>("port").needsRestart(),
          field<&Broker::timeout>("timeout"), field<&Broker::password>("password")};
}

struct Plant {
  Watched title{"none"};
  Broker broker;
  std::optional<Broker> spare;
  std::map<std::string, Pump> pumps;
  std::vector<Pump> wells;
  std::vector<int> valves;
  std::vector<Pump> fixed;
  int unlisted = 0;
};
bind::Fields describe(bind::Is<Plant> /*type*/) {
  using namespace bind;
  return Fields{field<&Plant::title>("title"),
                section<&Plant::broker>("broker"),
                section<&Plant::spare>("spare").needsRestart(),
                sections<&Plant::pumps>("pump").keyedBy<&Pump::name>(),
                sections<&Plant::wells>("well"),
                list<&Plant::valves>("valve"),
                sections<&Plant::fixed>("fixed").needsRestart()}
      .envPrefix("LIVE_")
      .check([](const Plant& plant, Report& report) {
        if (plant.broker.port == 13) report.error("broker", "13 brings bad luck");
      });
}

using Followed = Live<Plant>;

std::string section(const std::string& name, const std::string& content) {
  return "<section name='" + name + "'>" + content + "</section>";
}
std::string pump(const std::string& name, int speed, int line = 1) {
  return section("pump", "\n" + property("name", name) + property("speed", std::to_string(speed)) +
                             property("line", std::to_string(line)));
}

class SettingsTest : public LiveTest {
 protected:
  void put(const std::string& content) const { folder.put("site/main.xml", content); }
  Followed::Options options() const { return drivenBy<Followed>(clock); }

  // What next tells after main.xml has that content.
  std::string after(Followed& live, const std::string& content) {
    put(content);
    return next(live);
  }
};

TEST_F(SettingsTest, ChangesAreOfValuesAndFireByField) {
  put(property("title", "a") + pump("in", 1) + pump("out", 2));
  Followed live("main.xml", {}, true, options());
  std::string fired;
  live.onChange<&Plant::title>([&](const Watched& before, const Watched& now) {
    fired += before.text + ">" + now.text + " " + live.get()->title.text;
  });
  live.onChange<&Plant::broker>(
      [&](const Broker& before, const Broker& now) { fired += before.host + ">" + now.host; });
  live.onChange<&Plant::pumps>([&](const auto& before, const auto& now) {
    fired += std::to_string(before.size()) + ">" + std::to_string(now.size());
  });
  live.onChange<&Plant::valves>(
      [&](const auto&, const auto& now) { fired += std::to_string(now.size()) + " valves"; });
  const struct {
    std::string content;
    std::string told;
    std::string fired;
  } rows[] = {
      {property("title", "b") + pump("in", 1) + pump("out", 2),
       "CHANGED\ntitle: a (site/main.xml:2) -> b (site/main.xml:2)", "a>b b"},
      {property("title", "b") + "<!-- moved -->\n" + pump("out", 2) + pump("in", 1), "UNCHANGED",
       ""},
      {property("title", "b") + section("broker", property("timeout", "5000ms")) + pump("in", 1) +
           pump("out", 2),
       "UNCHANGED", ""},
      {property("title", "b") + section("broker", property("timeout", "6s")) + pump("out", 3) +
           pump("in", 1),
       "CHANGED\nbroker.timeout: 5000ms (site/main.xml:2) -> 6s (site/main.xml:2)\n"
       "pump[0].speed: 2 (site/main.xml:4) -> 3 (site/main.xml:3)",
       "localhost>localhost2>2"},
      {property("title", "b") + section("broker", property("timeout", "6s")) + pump("in", 1) +
           property("valve", "1") + property("valve", "2"),
       "CHANGED\nvalve[0]: none -> 1 (site/main.xml:3)\nvalve[1]: none -> 2 (site/main.xml:3)\n"
       "pump[0]:  (default) -> none\npump[0].name: out (site/main.xml:3) -> none\n"
       "pump[0].speed: 3 (site/main.xml:3) -> none\npump[0].line: 1 (site/main.xml:3) -> none",
       "2>12 valves"},
      {property("title", "b") + section("broker", property("timeout", "6s")) + pump("in", 1) +
           property("valve", "2") + property("valve", "2"),
       "CHANGED\nvalve[0]: 1 (site/main.xml:3) -> 2 (site/main.xml:3)", "2 valves"},
  };
  for (const auto& row : rows) {
    fired.clear();
    EXPECT_EQ(after(live, row.content), row.told);
    EXPECT_EQ(fired, row.fired) << row.told;
  }
  EXPECT_THROW(live.onChange<&Plant::unlisted>([](int, int) {}), cppUtil::err::Exception);
}

TEST_F(SettingsTest, ChecksSeeWhatWillBeInForceAndRefuse) {
  put(section("broker", property("port", "1")));
  std::string seen;
  Followed::Options options = this->options();
  options.onCheck([&](const Plant& now, const Plant& next, std::vector<xml::Problem>& problems) {
    seen += std::to_string(now.broker.port) + now.broker.host + ">" +
            std::to_string(next.broker.port) + next.broker.host + " ";
    if (next.broker.host == "bad") {
      problems.push_back({xml::Severity::ERROR, "own", "a bad host", "", {}, {}});
    }
    if (next.broker.host == "odd") throw std::runtime_error("odd");
  });
  Followed live("main.xml", {}, false, options);
  live.onCheck([&](const Plant&, const Plant&, std::vector<xml::Problem>&) { seen += "second "; });
  live.onChange<&Plant::broker>([&](const Broker&, const Broker&) {
    seen += "told";
    throw std::runtime_error("too late");
  });
  EXPECT_EQ(seen, "1localhost>1localhost ");
  const struct {
    const char* host;
    std::string told;
    const char* seen;
  } rows[] = {
      {"bad", "REFUSED\ndefault: a bad host [own]", "1localhost>1bad second "},
      {"odd", "REFUSED\ndefault: a check failed: odd [refused]", "1localhost>1odd second "},
      {"new",
       "CHANGED\nbroker.host: localhost (default) -> new (site/main.xml:2)\n"
       "broker.port: 1 (site/main.xml:2) -> 2 (site/main.xml:2) at restart\n"
       "default: a function that is told failed: too late [callback-failed]",
       "1localhost>1new second told"},
  };
  for (const auto& row : rows) {
    seen.clear();
    EXPECT_EQ(after(live, section("broker", property("host", row.host) + property("port", "2"))),
              row.told);
    EXPECT_EQ(seen, row.seen);
    EXPECT_EQ(live.problems().empty(), row.host == std::string("new"));
  }
  EXPECT_EQ(live.get()->broker.host, "new");
  put(section("broker", property("host", "bad")));
  EXPECT_THROW(Followed("main.xml", {}, false, options), cppUtil::err::Exception);
}

TEST_F(SettingsTest, BadFilesAreToldOnceForEachState) {
  put(property("title", "a"));
  Followed live("main.xml", {}, false, options());
  const auto first = live.get();
  const std::string bad = section("broker", "\n" + property("port", "x"));
  const std::string told =
      "REFUSED\nsite/main.xml:3: broker.port: \"x\" is not a whole number [bad-value]";
  EXPECT_EQ(after(live, bad), told);
  EXPECT_EQ(next(live, 5s), "UNCHANGED");
  EXPECT_EQ(live.problems().size(), 1u);
  EXPECT_EQ(after(live, bad), told) << "written again";
  EXPECT_EQ(after(live, section("broker", property("port", "13"))),
            "REFUSED\nsite/main.xml:2: broker: 13 brings bad luck [refused]");
  EXPECT_EQ(after(live, "<section"),
            "REFUSED\nsite/main.xml:3: unterminated start tag 'section' [not-well-formed]");
  EXPECT_EQ(after(live, "<include>none</include><include>part.xml</include>"),
            "REFUSED\nsite/main.xml:2: no readable file \"none\" in " +
                (folder.path / "site").string() + ", " + (folder.path / "early").string() +
                " [missing-include]\nsite/main.xml:2: no readable file \"part.xml\" in " +
                (folder.path / "site").string() + ", " + (folder.path / "early").string() +
                " [missing-include]");
  EXPECT_EQ(live.get(), first);
  folder.put("site/part.xml", "");
  EXPECT_EQ(next(live).substr(0, 30), "REFUSED\nsite/main.xml:2: no re")
      << "beyond the first mistake";
  EXPECT_EQ(after(live, property("title", "a")), "UNCHANGED");
  EXPECT_TRUE(live.problems().empty());
  EXPECT_EQ(live.get(), first);
}

TEST_F(SettingsTest, NoSetIsMixed) {
  put(property("title", "a") + property("valve", "1"));
  Followed live("main.xml", {}, false, options());
  int readings = 0;
  whileRead = [&] {
    if (++readings < 4) put(property("title", "b") + property("valve", std::to_string(readings)));
  };
  put(property("title", "b") + property("valve", "0"));
  EXPECT_EQ(next(live),
            "CHANGED\ntitle: a (site/main.xml:2) -> b (site/main.xml:2)\n"
            "valve: 1 (site/main.xml:2) -> 3 (site/main.xml:2)");
  whileRead = [&] { put(property("title", std::to_string(++readings))); };
  EXPECT_EQ(after(live, property("title", "c")), "UNCHANGED") << "never at rest";
  EXPECT_THROW(Followed("main.xml", {}, false), cppUtil::err::Exception);
  whileRead = nullptr;
  EXPECT_EQ(next(live).substr(0, 40), "CHANGED\ntitle: b (site/main.xml:2) -> 24");
}

TEST_F(SettingsTest, WhatNeedsARestartWaitsForIt) {
  const auto content = [](int port, int line, const std::string& more) {
    return section("broker", property("port", std::to_string(port)) + more) + pump("in", 1, line);
  };
  const std::string spare = section("spare", property("host", "s"));
  const std::string fixed = section("fixed", property("name", "f"));
  put(content(1, 1, "") + spare);
  Followed live("main.xml", {}, false, options());
  std::string fired;
  live.onChange<&Plant::broker>([&](const Broker&, const Broker&) { fired += "broker "; });
  live.onChange<&Plant::pumps>([&](const auto&, const auto&) { fired += "pumps "; });
  const auto first = live.get();
  EXPECT_EQ(after(live, content(2, 5, "") + spare),
            "CHANGED\nbroker.port: 1 (site/main.xml:2) -> 2 (site/main.xml:2) at restart\n"
            "pump.line: 1 (site/main.xml:3) -> 5 (site/main.xml:3) at restart");
  EXPECT_EQ(live.get(), first);
  EXPECT_EQ(fired, "");
  EXPECT_EQ(after(live, "\n" + content(3, 5, property("host", "h")) + fixed + fixed),
            "CHANGED\nbroker.host: localhost (default) -> h (site/main.xml:3)\n"
            "broker.port: 2 (site/main.xml:2) -> 3 (site/main.xml:3) at restart\n"
            "fixed[0]: none ->  (default) at restart\n"
            "fixed[0].name: none -> f (site/main.xml:4) at restart\n"
            "fixed[0].speed: none -> 100 (default) at restart\n"
            "fixed[0].line: none -> 1 (default) at restart\n"
            "fixed[1]: none ->  (default) at restart\n"
            "fixed[1].name: none -> f (site/main.xml:4) at restart\n"
            "fixed[1].speed: none -> 100 (default) at restart\n"
            "fixed[1].line: none -> 1 (default) at restart\n"
            "spare:  (default) -> none at restart\n"
            "spare.host: s (site/main.xml:3) -> none at restart\n"
            "spare.port: 1883 (default) -> none at restart\n"
            "spare.timeout: 5s (default) -> none at restart");
  EXPECT_EQ(fired, "broker ");
  const auto settings = live.get();
  EXPECT_EQ(settings->broker.port, 1);
  EXPECT_EQ(settings->pumps.at("in").line, 1);
  EXPECT_EQ(settings->spare.value().host, "s");
  EXPECT_TRUE(settings->fixed.empty());
  ASSERT_EQ(live.needsRestart().size(), 14u);
  EXPECT_EQ(folder.shown(live.needsRestart()[0]),
            "broker.port: 1 (site/main.xml:2) -> 3 (site/main.xml:3) at restart");
  EXPECT_EQ(next(live, 5s), "UNCHANGED");
  EXPECT_EQ(after(live, content(1, 1, property("host", "h")) + spare).substr(0, 7), "CHANGED");
  EXPECT_TRUE(live.needsRestart().empty());
  EXPECT_EQ(live.get(), settings);
}

TEST_F(SettingsTest, TheEnvironmentAndTheCommandLineStayAndSecretsAreHidden) {
  ::setenv("LIVE_TITLE", "from outside", 1);
  bind::Overrides overrides;
  overrides.add("broker.host=h");
  put("");
  Followed live("main.xml", {}, false, options().overrides(overrides));
  EXPECT_EQ(after(live, property("title", "file") +
                            section("broker", property("host", "f") + property("password", "old"))),
            "CHANGED\nbroker.password: none -> *** (site/main.xml:2)");
  EXPECT_EQ(live.get()->title.text + live.get()->broker.host, "from outsideh");
  EXPECT_EQ(after(live, section("broker", property("password", "new"))),
            "CHANGED\nbroker.password: *** (site/main.xml:2) -> *** (site/main.xml:2)");
  EXPECT_EQ(live.get()->broker.password->reveal(), "new");
  ::unsetenv("LIVE_TITLE");
  EXPECT_EQ(after(live, "\n"),
            "CHANGED\ntitle: from outside (environment LIVE_TITLE) -> none "
            "(default)\nbroker.password: *** (site/main.xml:2) -> none");
}

TEST_F(SettingsTest, TheLastGoodTextsAreTakenAtTheStart) {
  const std::string kept = folder.path / "state";
  const auto content = [](const std::string& title) {
    return property("title", title) + section("broker", property("password", "p&amp;w")) +
           pump("in", 1) + pump("out", 2) + property("valve", "1") + property("valve", "2");
  };
  bind::Overrides overrides;
  overrides.add("broker.port=7");
  const Followed::Options options = this->options().keepLastGood(kept).overrides(overrides);
  put("<section");
  EXPECT_THROW(Followed("main.xml", {}, false, options), cppUtil::err::Exception);
  put(content("a"));
  {
    Followed live("main.xml", {}, false, options);
    EXPECT_EQ(after(live, content("b")).substr(0, 7), "CHANGED");
    EXPECT_EQ(after(live, section("broker", property("timeout", "x"))).substr(0, 7), "REFUSED");
  }
  struct stat status {};
  ASSERT_EQ(::stat(kept.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
  std::ifstream file(kept);
  const std::string stored(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(stored.find("port"), stored.npos) << "from the command line";

  Followed live("main.xml", {}, false, options);
  EXPECT_EQ(live.problems().size(), 1u);
  pollfd waited{live.fd(), POLLIN, 0};
  EXPECT_EQ(::poll(&waited, 1, 5000), 1);
  EXPECT_EQ(folder.shown(live.poll()),
            "REFUSED\nsite/main.xml:2: broker.timeout: \"x\" is not a time with its unit: ms, s, "
            "min, h [bad-value]");
  EXPECT_EQ(live.poll().outcome, Followed::UNCHANGED);
  const auto settings = live.get();
  EXPECT_EQ(settings->title.text + settings->broker.password->reveal(), "bp&w");
  EXPECT_EQ(settings->broker.port, 7);
  EXPECT_EQ(settings->pumps.at("out").speed, 2);
  EXPECT_EQ(settings->valves, std::vector({1, 2}));
  EXPECT_EQ(after(live, content("c")), "CHANGED\ntitle: b (state:3) -> c (site/main.xml:2)");
  EXPECT_TRUE(live.problems().empty());

  std::filesystem::remove(kept);
  std::filesystem::create_directory(kept);
  EXPECT_EQ(after(live, content("d")),
            "CHANGED\ntitle: c (site/main.xml:2) -> d (site/main.xml:2)\nstate: what is in force "
            "cannot be kept: " +
                kept + ": Is a directory [last-good]");
}

TEST_F(SettingsTest, APlainConfigurationTellsAllChangesAtOnce) {
  put(property("a", "1") + section("s", property("b", "2")) + section("s", property("b", "3")));
  using Plain = Live<IConfig>;
  Plain live("main.xml", {}, false, drivenBy<Plain>(clock).keepLastGood(folder.path / "state"));
  std::string told;
  live.onChange([&](const std::vector<Plain::Change>& changes) {
    for (const auto& change : changes) told += folder.shown(change) + "\n";
  });
  live.onCheck([&](const IConfigPtr& now, const IConfigPtr& next, std::vector<xml::Problem>&) {
    EXPECT_EQ(now->getSectionCount("s"), 2u);
    EXPECT_EQ(next->getSectionCount("s"), 1u);
  });
  put("\n" + property("a", "1") + section("s", property("b", "3")));
  const std::string result = next(live) + "\n";
  EXPECT_EQ(result, "CHANGED\n" + told);
  EXPECT_EQ(told,
            "s.b: 2 (site/main.xml:2) -> 3 (site/main.xml:3)\n"
            "s[1]:  (site/main.xml:2) -> none\ns[1].b: 3 (site/main.xml:2) -> none\n");
  EXPECT_EQ(live.origins().of(live.get(), "a", 0).line, 3);
  put("\n\n" + property("a", "1") + section("s", property("b", "3")));
  EXPECT_EQ(next(live), "UNCHANGED");
  EXPECT_EQ(live.origins().of(live.get(), "a", 0).line, 4);
  put("<section");
  EXPECT_EQ(Plain("main.xml", {}, false, Plain::Options().keepLastGood(folder.path / "state"))
                .get()
                ->getSectionCount("s"),
            1u);
}

}  // namespace

}  // namespace follow
