// Descriptions that are wrong: each fault is found by the first use, all in one error.
#include <gtest/gtest.h>

#include <map>

#include "failureOf.hpp"
#include "service/util/config/bind.hpp"
#include "service/util/config/internal/Config.hpp"

using namespace service::util::config;
using namespace std::chrono_literals;

namespace {

enum class Mode { OFF, ON };
bind::Names<Mode> names(bind::Is<Mode> /*mode*/) {
  return {{"off", Mode::OFF}, {"off", Mode::ON}};
}

struct Base {
  int inherited = 0;
};

struct Pump {
  std::string name;
  std::optional<std::string> place;
  int speed = 0;
};
bind::Fields describe(bind::Is<Pump> /*pump*/) {
  return bind::Fields{bind::field<&Pump::name>("name").env("PUMP_NAME"),
                      bind::field<&Pump::place>("place"),
                      bind::field<&Pump::speed>("speed").range(1, 9)}
      .envPrefix("PUMP_");
}

struct Wrong : Base {
  int a = 0;
  int b = 7;
  Mode mode = Mode::ON;
  std::chrono::seconds wait{5};
  bind::Bytes size;
  std::vector<int> numbers = {1, 2, 3};
  std::vector<Pump> pumps;
  std::map<std::string, Pump> halls;
  std::map<std::string, Pump> cellars;
};
bind::Fields describe(bind::Is<Wrong> /*wrong*/) {
  using namespace bind;
  return Fields{field<&Wrong::a>("a").formerly("b").env("X"),
                field<&Wrong::b>("b").range(1, 5).env("X"),
                field<&Wrong::a>("").range(1s, 2s),
                field<&Wrong::mode>("mode").example("maybe"),
                field<&Wrong::wait>("wait").range(1500ms, 2s).bareUnit(Bytes{1}),
                field<&Wrong::size>("size").range(Bytes{2}, Bytes{1}).required().open(),
                list<&Wrong::numbers>("numbers").count(0, 2),
                field<&Wrong::inherited>("inherited"),
                field<&Wrong::inherited, Wrong>("inheritance").count(1, 2),
                sections<&Wrong::pumps>("pump").example("x"),
                sections<&Wrong::halls>("hall"),
                sections<&Wrong::cellars>("cellar").keyedBy<&Pump::speed>()}
      .check([](const Pump&, Report&) {});
}

TEST(BindDescription, TellsAllThatIsWrongWithIt) {
  const char* expected = R"(INVALID_ARGUMENT: the description of settings is wrong:
(anonymous namespace)::Wrong: a name is empty
(anonymous namespace)::Wrong, field "b": the name is used twice, former ones included
(anonymous namespace)::Wrong: a check is for (anonymous namespace)::Pump
(anonymous namespace)::Wrong, field "b": its default: 7 is not in 1 to 5
(anonymous namespace)::Wrong: its type and its range do not go together
(anonymous namespace)::Wrong, field "mode": two values are called "off"
(anonymous namespace)::Wrong, field "mode": its example: "maybe" is not one of off, off
(anonymous namespace)::Wrong, field "wait": its type and its range do not go together
(anonymous namespace)::Wrong, field "wait": its type and its bare unit do not go together
(anonymous namespace)::Wrong, field "size": no value is in its range
(anonymous namespace)::Wrong, field "size": only a section can be open
(anonymous namespace)::Wrong, field "numbers": its default has more than its count allows
(anonymous namespace)::Wrong, field "inherited": its member is of (anonymous namespace)::Base; of a base, give the struct as the second argument
(anonymous namespace)::Wrong, field "inheritance": only a list or sections have a count
(anonymous namespace)::Wrong, field "pump": a section has no range and no example
(anonymous namespace)::Pump: a section that repeats has no environment variables
(anonymous namespace)::Pump, field "name": only a setting outside of repeated sections has an environment variable
(anonymous namespace)::Pump, field "speed": its default: 0 is not in 1 to 9
(anonymous namespace)::Wrong, field "hall": a map needs keyedBy
(anonymous namespace)::Wrong, field "cellar": its key and the key of the map are of different types)";
  EXPECT_EQ(failureOf([] { bind::read<Wrong>(std::make_shared<internal::Config>()); }), expected);
}

struct Twice {
  int a = 0;
  int b = 0;
};
bind::Fields describe(bind::Is<Twice> /*twice*/) {
  return bind::Fields{bind::field<&Twice::a>("a b"), bind::field<&Twice::b>("a-b")}.envPrefix("T_");
}

TEST(BindDescription, TellsVariablesThatCollide) {
  EXPECT_EQ(failureOf([] { bind::read<Twice>(std::make_shared<internal::Config>()); }),
            "INVALID_ARGUMENT: the description of settings is wrong:\n"
            "(anonymous namespace)::Twice: two settings have the variable T_A_B");
}

}  // namespace
