// Single values: what texts are values of which types, and where a path leads.
#include <gtest/gtest.h>

#include <filesystem>

#include "TemporaryFolder.hpp"
#include "failureOf.hpp"
#include "service/util/config/bind.hpp"
#include "service/util/config/errorModule.hpp"
#include "service/util/config/internal/Config.hpp"

using namespace service::util::config;
using namespace std::chrono_literals;

namespace {

enum class Level : std::uint8_t { ERROR, DEBUG = 200 };
bind::Names<Level> names(bind::Is<Level> /*level*/) {
  return {{"error", Level::ERROR}, {"debug", Level::DEBUG}, {"trace", Level::DEBUG}};
}

struct Address {
  int host = 0;
};
std::optional<Address> parse(bind::Is<Address> /*address*/, const std::string& text) {
  if (text.rfind("host", 0) != 0) return std::nullopt;
  if (text.size() == 4) throw std::invalid_argument("no number");
  return Address{std::stoi(text.substr(4))};
}
std::string print(const Address& address) {
  return "host" + std::to_string(address.host);
}

using Days = std::chrono::duration<int, std::ratio<86400>>;
using Seconds = std::chrono::duration<double>;

template <class T>
std::string shown(const T& value) {
  if constexpr (std::is_arithmetic_v<T>) {
    return std::to_string(value);
  } else if constexpr (std::is_enum_v<T>) {
    return std::to_string(static_cast<int>(value));
  } else if constexpr (std::is_same_v<T, bind::Bytes>) {
    return std::to_string(value.count);
  } else if constexpr (std::is_same_v<T, bind::Secret>) {
    return value.reveal();
  } else if constexpr (std::is_same_v<T, std::filesystem::path>) {
    return value.string();
  } else if constexpr (std::is_same_v<T, Address>) {
    return print(value);
  } else if constexpr (std::is_same_v<T, std::string>) {
    return value;
  } else {
    return std::to_string(value.count());
  }
}

// A value with a bare unit: of seconds, finer than the type, of bytes.
struct Bare {
  std::chrono::seconds coarse{0};
  std::chrono::milliseconds fine{0};
  bind::Bytes blocks;
};
bind::Fields describe(bind::Is<Bare> /*bare*/) {
  using bind::field;
  return {field<&Bare::coarse>("coarse").bareUnit(20ms), field<&Bare::fine>("fine").bareUnit(500us),
          field<&Bare::blocks>("blocks").bareUnit(bind::Bytes{512})};
}

std::string asBare(const std::string& text) {
  const std::string name = text.substr(0, text.find('='));
  const auto config = std::make_shared<internal::Config>();
  config->addProperty(name, text.substr(name.size() + 1));
  std::string values;
  const std::string failure = failureOf([&] {
    const Bare bare = bind::read<Bare>(config);
    values = shown(bare.coarse) + " " + shown(bare.fine) + " " + shown(bare.blocks);
  });
  return failure == "nothing" ? values : failure.substr(failure.find(name) + name.size() + 2);
}

// The value that text is, or why it is none.
template <class T>
std::string asType(const std::string& text) {
  const auto config = std::make_shared<internal::Config>();
  config->addProperty("x", text);
  std::string value;
  const std::string failure = failureOf([&] { value = shown(bind::get<T>(config, "x")); });
  return failure == "nothing" ? value : failure.substr(failure.find("x: ") + 3);
}

struct Row {
  std::string (*read)(const std::string&);
  const char* text;
  const char* expected;
};

TEST(BindValue, TextsOfEachType) {
  const Row rows[] = {
      {asType<std::int8_t>, "-128", "-128"},
      {asType<std::int8_t>, "128", "128 is not in -128 to 127 [out-of-range]"},
      {asType<std::uint16_t>, "-1", "-1 is not in 0 to 65535 [out-of-range]"},
      {asType<std::uint16_t>, "+1", "\"+1\" is not a whole number [bad-value]"},
      {asType<std::uint16_t>, "1.0", "\"1.0\" is not a whole number [bad-value]"},
      {asType<std::uint16_t>, "--1", "\"--1\" is not a whole number [bad-value]"},
      {asType<std::uint64_t>, "18446744073709551616",
       "18446744073709551616 is not in 0 to 18446744073709551615 [out-of-range]"},
      {asType<std::int64_t>, "-9223372036854775808", "-9223372036854775808"},
      {asType<double>, "-1.5e3", "-1500.000000"},
      {asType<float>, "1e39", "1e39 is beyond what its type holds [out-of-range]"},
      {asType<double>, "nan", "\"nan\" is not a number [bad-value]"},
      {asType<bool>, "on", "1"},
      {asType<bool>, "no", "0"},
      {asType<bool>, "1", "\"1\" is not one of true, false, yes, no, on, off [bad-value]"},
      {asType<std::string>, " a b ", " a b "},
      {asType<std::filesystem::path>, "/var/../x", "/var/../x"},
      {asType<bind::Secret>, "abc", "abc"},
      {asType<Level>, "trace", "200"},
      {asType<Level>, "200", "\"200\" is not one of error, debug, trace [bad-value]"},
      {asType<std::chrono::milliseconds>, "-2min", "-120000"},
      {asType<std::chrono::milliseconds>, "1d",
       "\"1d\" is not a time with its unit: ms, s, min, h [bad-value]"},
      {asType<std::chrono::milliseconds>, "1.5s",
       "\"1.5s\" is not a time with its unit: ms, s, min, h [bad-value]"},
      {asType<std::chrono::nanoseconds>, "2562048h",
       "2562048h is not in -9223372036854775808ns to 9223372036854775807ns [out-of-range]"},
      {asType<std::chrono::minutes>, "60s",
       "\"60s\" is not a time with its unit: min, h [bad-value]"},
      {asType<Days>, "48h", "2"},
      {asType<Days>, "36h", "36h is not a multiple of 24h [out-of-range]"},
      {asType<Seconds>, "1.5ms", "0.001500"},
      {asType<Seconds>, "1e308h",
       "1e308h is not in -1.7976931348623157e+308s to 1.7976931348623157e+308s [out-of-range]"},
      {asType<bind::Bytes>, "2MB", "2000000"},
      {asType<bind::Bytes>, "2MiB", "2097152"},
      {asType<bind::Bytes>, "2M",
       "\"2M\" is not a size with its unit: B, kB, MB, GB, KiB, MiB, GiB [bad-value]"},
      {asBare, "coarse=50", "1 0 0"},
      {asBare, "coarse=49", "49 is not a multiple of 1s [out-of-range]"},
      {asBare, "fine=-3000", "0 -1500 0"},
      {asBare, "fine=x",
       "\"x\" is not a time with its unit: ms, s, min, h, or in 500us without one [bad-value]"},
      {asBare, "blocks=4", "0 0 2048"},
      {asType<Address>, "host7", "host7"},
      {asType<Address>, "7", "\"7\" is not accepted [bad-value]"},
      {asType<Address>, "host", "\"host\" is not accepted: no number [bad-value]"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.read(row.text), row.expected) << row.text;
}

const TemporaryFolder& plant() {
  static const TemporaryFolder folder;
  folder.write("plant.xml",
               "<config><property name='title'>Waterworks</property><include>hall.xml</include>"
               "<section name='hall'>\n<property name='light'>on</property>\n"
               "<section name='pump'><property name='speed'>fast</property></section>"
               "<section name='day time'><property name='at \"8\"'>yes</property></section>"
               "</section></config>");
  folder.write("hall.xml",
               "<config><section name='hall'><property name='light'>off</property>"
               "<property name='valve'>a</property><property name='valve'>b</property>"
               "<section name='pump'><property name='speed'>900</property></section></section>"
               "</config>");
  return folder;
}

TEST(BindValue, PathsWithAndWithoutOrigins) {
  xml::Origins origins;
  const std::string file = plant().path / "plant.xml";
  const IConfigPtr config = xml::create(file, {}, false, origins);
  const struct {
    const char* path;
    const char* plain;
    const char* withOrigins;
  } rows[] = {
      {"title", "Waterworks", "Waterworks"},
      {"hall.light", "off", "on"},
      {"hall[1].light[0]", "on", "on"},
      {"hall.pump[1].speed", "none", "fast"},
      {"hall.valve[1]", "b", "b"},
      {"hall.valve", "a",
       "INVALID_ARGUMENT: $/hall.xml:1:125: error: hall.valve: is there already, in line 1 "
       "[repeated-setting]"},
      {"hall[1].\"day time\".\"at \\u00228\\\"\"", "yes", "yes"},
      {"hall.cellar.light", "none", "none"},
      {"hall[4294967296].light",
       "INVALID_SELECT: path \"hall[4294967296].light\", character 6: no index is that large",
       nullptr},
      {"hall.*",
       "INVALID_SELECT: path \"hall.*\", character 6: expected a name; one of other "
       "characters needs quotes",
       nullptr},
      {"\"\\ud800\"", "INVALID_SELECT: path \"\"\\ud800\"\", character 8: half a character",
       nullptr},
      {"hall.light.",
       "INVALID_SELECT: path \"hall.light.\", character 12: expected a name; one of "
       "other characters needs quotes",
       nullptr},
  };
  for (const auto& row : rows) {
    const auto read = [&](const xml::Origins* known) {
      std::optional<std::string> value;
      std::string failure = failureOf([&] {
        value = known != nullptr ? bind::find<std::string>(config, *known, row.path)
                                 : bind::find<std::string>(config, row.path);
      });
      const std::size_t at = failure.find(plant().path);
      if (at != failure.npos) failure.replace(at, plant().path.string().size(), "$");
      return failure == "nothing" ? value.value_or("none") : failure;
    };
    EXPECT_EQ(read(nullptr), row.plain) << row.path;
    EXPECT_EQ(read(&origins), row.withOrigins != nullptr ? row.withOrigins : row.plain) << row.path;
  }
}

TEST(BindValue, MissingAndWrong) {
  const auto config = std::make_shared<internal::Config>();
  config->addSection("hall")->addProperty("light", "dim");
  EXPECT_EQ(bind::get<int>(config, "hall.pumps", 7), 7);
  EXPECT_EQ(failureOf([&] { bind::get<int>(config, "hall.pumps"); }),
            "NOT_FOUND: hall.pumps is not set");
  const std::string wrong =
      "INVALID_ARGUMENT: error: hall.light: \"dim\" is not one of true, false, yes, no, on, off "
      "[bad-value]";
  EXPECT_EQ(failureOf([&] { bind::get<bool>(config, "hall.light", true); }), wrong);
  EXPECT_EQ(failureOf([&] { bind::find<bool>(config, "hall.light"); }), wrong);
}

}  // namespace
