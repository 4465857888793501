// Structs read from files: what is in force, and all that is wrong, with its places.
#include <gtest/gtest.h>

#include <cutil/cutil.h>

#include <map>
#include <sstream>

#include "TemporaryFolder.hpp"
#include "failureOf.hpp"
#include "service/util/config/bind.hpp"
#include "service/util/config/bind/Settings.hpp"
#include "service/util/config/internal/Config.hpp"

using namespace service::util::config;
using namespace std::chrono_literals;

namespace {

struct Pump {
  std::string name;
  int speed = 100;
  std::optional<bind::Secret> key;
  std::vector<Pump> standby;
};
bind::Fields describe(bind::Is<Pump> /*pump*/) {
  using namespace bind;
  return {field<&Pump::name>("name").formerly("id"), field<&Pump::speed>("speed").range(0, 3000),
          field<&Pump::key>("key"), sections<&Pump::standby>("standby")};
}

struct Tls {
  std::string certificate;
  bool verify = true;
};
bind::Fields describe(bind::Is<Tls> /*tls*/) {
  return bind::Fields{bind::field<&Tls::certificate>("certificate").required().about("a file"),
                      bind::field<&Tls::verify>("verify")}
      .check([](const Tls& tls, bind::Report& report) {
        if (!tls.verify) report.error("verify", "must be on with " + tls.certificate);
        if (tls.certificate == "x") report.warning("", "looks like a test");
      });
}

struct Hall {
  std::string light = "off";
  std::chrono::milliseconds wait = 5s;
  std::vector<int> valves = {1, 2};
  std::optional<Tls> tls;
  std::vector<Pump> pumps;
};
bind::Fields describe(bind::Is<Hall> /*hall*/) {
  using namespace bind;
  return {field<&Hall::light>("light"), field<&Hall::wait>("wait").bareUnit(10ms).env("WAIT"),
          list<&Hall::valves>("valve").count(1, 3), section<&Hall::tls>("tls"),
          sections<&Hall::pumps>("pump").count(0, 2)};
}

struct Plant {
  std::string title;
  Hall hall;
  std::map<std::string, Pump> wells;
  Tls open;
};
bind::Fields describe(bind::Is<Plant> /*plant*/) {
  using namespace bind;
  return Fields{field<&Plant::title>("title"), section<&Plant::hall>("hall").formerly("room"),
                sections<&Plant::wells>("well").keyedBy<&Pump::name>(),
                section<&Plant::open>("shared").open().formerly("free")}
      .envPrefix("PLANT_");
}

std::string shown(const Pump& pump) {
  std::string text = pump.name + " " + std::to_string(pump.speed);
  if (pump.key) text += " key";
  for (const Pump& standby : pump.standby) text += "(" + shown(standby) + ")";
  return text;
}

std::string shown(const Plant& plant) {
  std::ostringstream text;
  text << plant.title << "|" << plant.hall.light << " " << plant.hall.wait.count();
  for (const int valve : plant.hall.valves) text << " " << valve;
  if (plant.hall.tls) text << " tls " << plant.hall.tls->certificate;
  for (const Pump& pump : plant.hall.pumps) text << "|" << shown(pump);
  for (const auto& [name, pump] : plant.wells) text << "|" << name << ": " << shown(pump);
  return text.str();
}

struct Row {
  const char* name;
  const char* top;                     // in top.xml
  const char* part;                    // in part.xml, and in other.xml with 1 for each 2
  std::vector<std::string> elsewhere;  // arguments, or variables with a "$"
  const char* expected;
};

std::string asFile(const std::string& text) {
  std::string file;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const auto equals = word.find('=');
    if (word == "}") {
      file += "</section>";
    } else if (word.front() == '<') {
      file += word;
    } else if (word.back() == '{') {
      file += "<section name='" + word.substr(0, word.size() - 1) + "'>";
    } else {
      file += "<property name='" + word.substr(0, equals) + "'>" + word.substr(equals + 1) +
              "</property>";
    }
    file += "\n";
  }
  return "<config>" + file + "</config>";
}

// What the exported settings find must be what the program finds, but for its checks across fields.
void expectSameByExport(const IConfigPtr& config, const xml::Origins& origins,
                        const bind::Overrides& overrides, const TemporaryFolder& folder,
                        const std::vector<xml::Problem>& expected) {
  folder.write("settings.xml", bind::Settings::of<Plant>().toXml("plant"));
  const auto settings = bind::Settings::load(folder.path / "settings.xml");
  std::vector<xml::Problem> problems;
  settings.check(config, origins, overrides, problems, {xml::Severity::WARNING, true});
  auto problem = problems.begin();
  for (const xml::Problem& wanted : expected) {
    if (wanted.rule == "refused") continue;
    ASSERT_NE(problem, problems.end());
    EXPECT_EQ(bind::toText(*problem++), bind::toText(wanted));
  }
  EXPECT_EQ(problem, problems.end());
}

std::string read(const Row& row, bool isInMemory = false) {
  const TemporaryFolder folder;
  const std::string top = row.top;
  const bool isBare = top.rfind('!', 0) == 0;
  folder.write("top.xml", asFile(isBare ? top.substr(1) : "shared{ certificate=c any=1 } " + top));
  folder.write("part.xml", asFile(row.part));
  std::string other = row.part;
  std::replace(other.begin(), other.end(), '2', '1');
  folder.write("other.xml", asFile(other));
  bind::Overrides overrides;
  std::vector<std::string> variables;
  for (const std::string& text : row.elsewhere) {
    if (text.front() != '$') {
      overrides.add(text);
      continue;
    }
    const auto equals = text.find('=');
    variables.push_back(text.substr(1, equals - 1));
    ::setenv(variables.back().c_str(), text.c_str() + equals + 1, 1);
  }
  xml::Origins origins;
  const IConfigPtr config = xml::create(folder.path / "top.xml", {}, false, origins);
  std::vector<xml::Problem> problems;
  const auto plant = isInMemory ? bind::read<Plant>(config, problems, overrides)
                                : bind::read<Plant>(config, origins, problems, overrides);
  if (!isInMemory) expectSameByExport(config, origins, overrides, folder, problems);
  for (const std::string& variable : variables) ::unsetenv(variable.c_str());
  std::string result = plant ? shown(*plant) + "\n" : "";
  for (const xml::Problem& problem : problems) {
    std::string line = bind::toText(problem);
    const std::size_t at = line.find(folder.path);
    if (at != line.npos) line.erase(at, folder.path.string().size() + 1);
    result += line + "\n";
  }
  return result;
}

TEST(BindRead, FilesEnvironmentAndCommandLine) {
  const Row rows[] = {
      {"a file goes before what it includes, setting by setting",
       "hall{ light=on } <include>part.xml</include>",
       "title=2 hall{ light=low wait=2s }",
       {},
       "2|on 2000 1 2\n"},
      {"inside of sections, too",
       "hall{ light=on <include>part.xml</include> }",
       "light=low wait=2s",
       {},
       "|on 2000 1 2\n"},
      {"at equal distance the later include",
       "<include>part.xml</include> <include>other.xml</include>",
       "title=2 hall{ wait=2s }",
       {},
       "1|off 1000 1 2\n"},
      {"a list takes the nearest files",
       "hall{ valve=7 valve=8 <include>part.xml</include> }",
       "valve=2",
       {},
       "|off 5000 7 8\n"},
      {"a list takes all nearest files",
       "<include>part.xml</include> <include>other.xml</include>",
       "hall{ valve=2 }",
       {},
       "|off 5000 2 1\n"},
      {"sections are collected",
       "hall{ pump{ name=c } } <include>part.xml</include>",
       "hall{ pump{ name=2 speed=2 } }",
       {},
       "|off 5000 1 2|2 2|c 100\n"},
      {"keys merge sections of several files",
       "well{ name=a speed=5 } <include>part.xml</include>",
       "well{ name=a speed=2 key=k } well{ name=b }",
       {},
       "|off 5000 1 2|a: a 5 key|b: b 100\n"},
      {"keys are told apart in a file",
       "well{ name=a } well{ speed=7 } well{ id=a }",
       "",
       {},
       "top.xml:8:22: error: well[1].name: required [missing-setting]\n"
       "top.xml:11:22: error: well[2]: its name \"a\" is that of the section in line 5, too "
       "[duplicate-key]\n"},
      {"twice in a file",
       "title=x title=y hall{ } hall{ light=on light=off }",
       "",
       {},
       "top.xml:6:24: error: title: is there already, in line 5 [repeated-setting]\n"
       "top.xml:9:22: error: hall: is there already, in line 7 [repeated-setting]\n"
       "top.xml:11:24: error: hall.light: is there already, in line 10 [repeated-setting]\n"},
      {"former names",
       "room{ light=on } well{ id=a } <include>part.xml</include>",
       "well{ name=b id=c }",
       {},
       "top.xml:5:22: warning: room: is called \"hall\" now [renamed-setting]\n"
       "top.xml:9:21: warning: well[1].id: is called \"name\" now [renamed-setting]\n"
       "part.xml:3:21: error: well[0].id: is called \"name\" now, which the same file has, too "
       "[renamed-setting]\n"},
      {"unknown",
       "titel=x hall=3 well=3 title{ } hall{ lihgt=on lihgt=off pumps{ x=1 } }",
       "",
       {},
       "|off 5000 1 2\n"
       "top.xml:5:24: warning: titel: nothing reads this; did you mean \"title\"? "
       "[unknown-setting]\n"
       "top.xml:6:23: warning: hall: nothing reads this; it is a section [unknown-setting]\n"
       "top.xml:7:23: warning: well: nothing reads this; it is a section [unknown-setting]\n"
       "top.xml:8:23: warning: title: nothing reads this; it is a property [unknown-setting]\n"
       "top.xml:11:24: warning: hall.lihgt[0]: nothing reads this; did you mean \"light\"? "
       "[unknown-setting]\n"
       "top.xml:12:24: warning: hall.lihgt[1]: nothing reads this; did you mean \"light\"? "
       "[unknown-setting]\n"
       "top.xml:13:23: warning: hall.pumps: nothing reads this; did you mean \"pump\"? "
       "[unknown-setting]\n"},
      {"missing",
       "!hall{ tls{ verify=no } } well{ }",
       "",
       {},
       "top.xml: error: shared.certificate: required: a file [missing-setting]\n"
       "top.xml:2:21: error: hall.tls.certificate: required: a file [missing-setting]\n"
       "top.xml:6:22: error: well.name: required [missing-setting]\n"},
      {"counts",
       "hall{ valve=1 valve=2 valve=3 valve=4 pump{ } pump{ } pump{ } }",
       "",
       {},
       "top.xml:9:24: error: hall.valve: given 4 times, not 1 to 3 [wrong-count]\n"
       "top.xml:14:22: error: hall.pump: given 3 times, not 0 to 2 [wrong-count]\n"},
      {"wrong values",
       "hall{ wait=x valve=1 valve=b pump{ } pump{ speed=-1 key=k } }",
       "",
       {},
       "top.xml:6:23: error: hall.wait: \"x\" is not a time with its unit: ms, s, min, h, or in "
       "10ms without one [bad-value]\n"
       "top.xml:8:24: error: hall.valve[1]: \"b\" is not a whole number [bad-value]\n"
       "top.xml:12:24: error: hall.pump[1].speed: -1 is not in 0 to 3000 [out-of-range]\n"},
      {"checks",
       "hall{ tls{ certificate=x verify=no } }",
       "",
       {},
       "top.xml:6:21: warning: hall.tls: looks like a test [refused]\n"
       "top.xml:8:25: error: hall.tls.verify: must be on with x [refused]\n"},
      {"a struct in itself",
       "hall{ pump{ standby{ name=s standby{ speed=5 } standby{ name=t } } } }",
       "",
       {},
       "|off 5000 1 2| 100(s 100( 5)(t 100))\n"},
      {"environment and command line",
       "title=file hall{ light=file wait=1s valve=1 }",
       "",
       {"$PLANT_TITLE=e", "$WAIT=7s", "$PLANT_HALL_LIGHT=e", "$PLANT_HALL_TLS_CERTIFICATE=c",
        "hall.light=x", "hall.light=y", "hall.valve=4", "hall.valve=5"},
       "e|y 7000 4 5 tls c\n"},
      {"what fits nowhere",
       "hall{ pump{ } } well{ name=a }",
       "",
       {"$PLANT_TITEL=x", "$WAIT=x", "hall.lihgt=1", "hall=1", "title.x=1", "hall.pump[1].speed=5",
        "well[0].speed=9000", "hall.light[1]=x", "hall.pump.id=z"},
       "command line: error: hall: nothing reads this; it is a section [unknown-setting]\n"
       "command line: error: title.x: nothing reads this; it is a property [unknown-setting]\n"
       "command line: error: hall.lihgt: nothing reads this; did you mean \"light\"? "
       "[unknown-setting]\n"
       "command line: error: hall.light[1]: nothing reads this; the name has no index "
       "[unknown-setting]\n"
       "environment WAIT: error: hall.wait: \"x\" is not a time with its unit: ms, s, min, h, or "
       "in 10ms without one [bad-value]\n"
       "command line: error: hall.pump[1].speed: there is no such section [unknown-setting]\n"
       "command line: warning: hall.pump.id: \"id\" is called \"name\" now [renamed-setting]\n"
       "command line: error: well.speed: 9000 is not in 0 to 3000 [out-of-range]\n"
       "environment PLANT_TITEL: warning: nothing reads this; did you mean \"PLANT_TITLE\"? "
       "[unknown-setting]\n"},
  };
  for (const Row& row : rows) EXPECT_EQ(read(row), row.expected) << row.name;
}

TEST(BindRead, WithoutOriginsTheFirstCounts) {
  const Row row = {
      "", "title=x title=y hall{ valve=1 <include>part.xml</include> }", "valve=2", {}, ""};
  EXPECT_EQ(read(row, true), "error: title: is there already [repeated-setting]\n");
}

TEST(BindRead, LogsWarningsAndThrowsErrors) {
  std::string logged;
  cu_Logger_setCallback(
      [](std::uint32_t level, const char* message, void* text) {
        *static_cast<std::string*>(text) += std::to_string(level) + " " + message;
      },
      &logged);
  const auto config = std::make_shared<internal::Config>();
  config->addProperty("lamp", "on");
  EXPECT_EQ(bind::read<Hall>(config).light, "off");
  EXPECT_EQ(logged, "2 warning: lamp: nothing reads this [unknown-setting]");
  cu_Logger_setCallback(nullptr, nullptr);
  config->addProperty("valve", "x");
  EXPECT_EQ(failureOf([&] { bind::read<Hall>(config); }),
            "INVALID_ARGUMENT: warning: lamp: nothing reads this [unknown-setting]\n"
            "error: valve: \"x\" is not a whole number [bad-value]");
}

}  // namespace
