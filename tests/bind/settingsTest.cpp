// Settings apart from their program: the exported file, and what is in force by it. That it finds
// what the program finds is in readTest.cpp, for each row there.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "TemporaryFolder.hpp"
#include "failureOf.hpp"
#include "service/util/config/bind.hpp"
#include "service/util/config/bind/internal/survey.hpp"

using namespace service::util::config;
using namespace std::chrono_literals;

namespace {

enum class Mode { OFF, ON };
bind::Names<Mode> names(bind::Is<Mode> /*mode*/) {
  return {{"off", Mode::OFF}, {"no", Mode::OFF}, {"on", Mode::ON}};
}

struct Pump {
  std::string id = " \n";
  std::optional<std::chrono::duration<float>> wait;
  std::vector<bind::Secret> keys = {bind::Secret("k")};
  std::vector<Pump> standby;
};
bind::Fields describe(bind::Is<Pump> /*pump*/) {
  using namespace bind;
  return {field<&Pump::id>("id"), field<&Pump::wait>("wait").range(0.5s, 2min).bareUnit(20ms),
          list<&Pump::keys>("key").count(1, 4), sections<&Pump::standby>("standby").required()};
}

struct Hall {
  Mode mode = Mode::ON;
  std::int8_t level = -3;
  std::vector<Pump> pumps;
};
bind::Fields describe(bind::Is<Hall> /*hall*/) {
  using namespace bind;
  return Fields{field<&Hall::mode>("mode").formerly("a <b>").env("MODE"),
                field<&Hall::level>("level").needsRestart().about("of 100 %").example("7"),
                sections<&Hall::pumps>("pump").keyedBy<&Pump::id>()}
      .check([](const Hall&, Report&) {});
}

struct Plant {
  Hall hall;
};
bind::Fields describe(bind::Is<Plant> /*plant*/) {
  return bind::Fields{bind::section<&Plant::hall>("hall").open()}.envPrefix("P_");
}

struct Panel {
  Hall hall;
  std::string titel;
};
bind::Fields describe(bind::Is<Panel> /*panel*/) {
  return bind::Fields{bind::field<&Panel::titel>("titel")}.open();
}

// A line each: "path=hall form=section", without the parts of XML.
std::string brief(const std::string& xml) {
  std::string text;
  std::istringstream lines(xml);
  for (std::string line; std::getline(lines, line);) {
    if (line.find("<section") != line.npos) text += "\n";
    const auto start = line.find("name=\"");
    if (line.find("<property") == line.npos) continue;
    line = line.substr(start + 6, line.rfind('<') - start - 6);
    text += line.replace(line.find("\">"), 2, "=") + "|";
  }
  return text;
}

TEST(BindSettings, ExportsAllThatIsDescribed) {
  const std::string xml = bind::Settings::of<Plant>().toXml("<plant>");
  EXPECT_EQ(xml.substr(39, 72),
            "<config xmlns=\"urn:zu:util:config\" name=\"&lt;plant&gt;\" version=\"1.0\">\n ");
  EXPECT_EQ(
      brief(xml),
      "format=1|variablePrefix=P_|\n"
      "path=hall|form=section|open=true|checks=true|\n"
      "path=hall.mode|form=setting|type=enumeration|name=off|name=no|name=on|number=0|number=0|"
      "number=2|default=on|formerly=a &lt;b&gt;|variable=MODE|\n"
      "path=hall.level|form=setting|type=integer|bits=8|signed=true|default=-3|restart=true|"
      "about=of 100 %|example=7|variable=P_HALL_LEVEL|\n"
      "path=hall.pump|form=sections|keyedBy=id|\n"
      "path=hall.pump.id|form=setting|type=text|default=&quot; \\u000a&quot;|\n"
      "path=hall.pump.wait|form=setting|type=duration|bits=32|floating=true|"
      "bareUnit=20ms|least=0.5s|greatest=120s|optional=true|\n"
      "path=hall.pump.key|form=list|type=secret|defaultCount=1|leastCount=1|greatestCount=4|\n"
      "path=hall.pump.standby|form=sections|required=true|like=hall.pump|");
  const TemporaryFolder folder;
  folder.write("plant.xml", xml);
  EXPECT_EQ(bind::Settings::load(folder.path / "plant.xml").toXml("<plant>"), xml);
}

std::string asFile(const std::string& text) {
  std::string file = "<config><property name='format'>1</property>";
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    file += "\n<section name='setting'>";
    std::istringstream words(line);
    for (std::string word; std::getline(words, word, '|');) {
      const auto equals = word.find('=');
      file += "<property name='" + word.substr(0, equals) + "'>" + word.substr(equals + 1) +
              "</property>";
    }
    file += "</section>";
  }
  return file + "</config>";
}

TEST(BindSettings, RefusesFilesThatDescribeNone) {
  const struct {
    const char* file;
    const char* expected;  // without the file, the severity and the rule
  } rows[] = {
      {"path=a|form=setting|type=integr",
       "2:121: setting.type: \"integr\" is not one of text, "
       "boolean, integer, floating, path, enumeration, duration, bytes, secret, custom\n"},
      {"path=a[1]|form=setting|type=text\npath=b.c|form=setting|type=text\npath=a..b|form=section",
       "2:25: a[1]: no path of a setting\n3:25: b.c: no section \"b\" before it\n"
       "4:25: a..b: path \"a..b\", character 3: expected a name; one of other characters needs "
       "quotes\n"},
      {"path=a|form=setting\npath=a|form=setting|type=integer|bits=7\n"
       "path=b|form=setting|type=text|formerly=a",
       "2:25: a: its type is missing\n"
       "3:25: a: the name \"a\" is used twice, former ones included\n"
       "3:25: a: no number has so many bits\n"
       "4:25: b: the name \"a\" is used twice, former ones included\n"},
      {"path=a|form=setting|type=integer|bits=8|least=9|greatest=3|default=x|example=2\n"
       "path=b|form=setting|type=duration|bits=64|resolution=1/1|bareUnit=1d|least=1s\n"
       "path=c|form=setting|type=enumeration|name=x|name=x|number=1\n"
       "path=d|form=setting|type=enumeration",
       "2:25: a: no value is in its range\n2:25: a: its default: \"x\" is not a whole number\n"
       "2:25: a: its example: 2 is not in 9 to 3\n"
       "3:25: b: its type and its bare unit do not go together\n"
       "3:25: b: its type and its range do not go together\n"
       "4:25: c: not every name has its number\n4:25: c: two values are called \"x\"\n"
       "5:25: d: its enumeration has no names\n"},
      {"path=a|form=setting|type=duration|resolution=0/1",
       "2:168: setting.resolution: \"0/1\" is not accepted\n"},
      {"path=s|form=section\npath=s.s|form=section|like=s\npath=r|form=sections|keyedBy=k\n"
       "path=r.k|form=setting|type=secret|variable=X\npath=r.r|form=section|like=s",
       "3:25: s.s: no section around it is \"s\", or none repeats\n"
       "4:25: r: its key is no setting of its sections\n"
       "5:25: r.k: its variable is that of another setting, too\n"
       "6:25: r.r: no section around it is \"s\", or none repeats\n"},
      {"path=l|form=list|type=text|default=a|default=b|leastCount=2|greatestCount=1",
       "2:25: l: no count is in its range\n2:25: l: its default has more than its count allows\n"},
  };
  const TemporaryFolder folder;
  for (const auto& row : rows) {
    folder.write("bad.xml", asFile(row.file));
    const std::string failure = failureOf([&] { bind::Settings::load(folder.path / "bad.xml"); });
    EXPECT_EQ(failure.substr(0, failure.find(' ')), "INVALID_ARGUMENT:");
    std::string told;
    std::istringstream lines(failure);
    for (std::string line; std::getline(lines, line);) {
      line.erase(0, line.find("bad.xml:") + 8);
      line.erase(line.find("error: "), 7);
      told += line.substr(0, line.rfind(" [")) + "\n";
    }
    EXPECT_EQ(told, row.expected);
  }
}

TEST(BindSettings, TellsWhatIsInForceAndWhatLost) {
  const TemporaryFolder folder;
  folder.write("top.xml", R"(<config><property name="title">x</property><section name="hall">
<property name="level">7</property><property name="lvl">7</property><include>part.xml</include>
<section name="pump"><property name="id">a</property><property name="key">k</property>
<section name="standby"><property name="key">l</property></section>
</section></section></config>)");
  folder.write("part.xml", R"(<config><property name="level">500</property></config>)");
  xml::Origins origins;
  const IConfigPtr config = xml::create(folder.path / "top.xml", {}, false, origins);
  bind::Overrides overrides;
  overrides.add("hall.mode=on");
  std::vector<xml::Problem> problems;
  std::vector<bind::internal::Survey> surveys;
  const std::vector<bind::Settings> programs = {bind::Settings::of<Plant>(),
                                                bind::Settings::of<Panel>()};
  EXPECT_FALSE(bind::internal::judge(programs, config, origins, overrides, {}, problems, surveys));
  std::string told;
  for (const auto& problem : problems) told += problem.message + "\n";
  EXPECT_EQ(
      told,
      "title: nothing reads this; did you mean \"titel\"?\nhall.pump.standby.standby: required\n");
  told.clear();
  const auto show = [&](const bind::internal::Given& given) {
    told += " " + given.text + "@" + std::filesystem::path(given.location.file).filename().string();
    if (given.part != nullptr) told += ":" + std::to_string(given.location.line);
  };
  for (const auto& entry : surveys.front().entries) {
    told += entry.path + ":";
    std::for_each(entry.inForce.begin(), entry.inForce.end(), show);
    if (!entry.lost.empty()) told += ", not";
    std::for_each(entry.lost.begin(), entry.lost.end(), show);
    told += "\n";
  }
  EXPECT_EQ(told,
            "hall: @top.xml:1\nhall.mode: on@command line\n"
            "hall.level: 7@top.xml:2, not 500@part.xml:1\n"
            "hall.pump: @top.xml:3\nhall.pump.id: a@top.xml:3\nhall.pump.wait:\n"
            "hall.pump.key: k@top.xml:3\nhall.pump.standby: @top.xml:4\n"
            "hall.pump.standby.id:\nhall.pump.standby.wait:\nhall.pump.standby.key: l@top.xml:4\n"
            "hall.pump.standby.standby:\n");
  EXPECT_EQ(surveys.front().secrets.size(), 2U);
}

}  // namespace
