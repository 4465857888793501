#include "service/util/config/Select.hpp"

#include <gtest/gtest.h>

#include "Failure.hpp"
#include "service/util/config/internal/Config.hpp"

namespace {

using service::util::config::IConfigPtr;
using service::util::config::Select;
using service::util::config::internal::Config;
using unit::Failure;
using unit::failureOf;

using Part = std::pair<std::string, std::uint32_t>;
using Path = std::vector<Part>;

// Expects that text is rejected with that line, or accepted when line is 0.
void expectParse(const std::string& text, int line) {
  const Failure rejected(0x3000000, 0, "src/select",
                         "void service::util::config::Select::parse(const string&)", line, "");
  EXPECT_EQ(failureOf([&] { Select select(text); }), line == 0 ? Failure() : rejected) << text;
}

TEST(Select, GivesSectionsAndProperty) {
  const struct {
    const char* text;
    Path path;
    Part property;
  } rows[] = {
      {"network.interface[1].address", {{"network", 0}, {"interface", 1}}, {"address", 0}},
      {"a.", {{"a", 0}}, {"", 0}},
      {"a[4294967295].b", {{"a", 4294967295U}}, {"b", 0}},
      {"a.b[99999999999999999999]", {{"a", 0}}, {"b", 1661992959U}},
  };
  for (const auto& row : rows) {
    const Select select(row.text);
    EXPECT_EQ(select.getSection(), row.path) << row.text;
    EXPECT_EQ(select.getProperty(), row.property) << row.text;
  }
}

TEST(Select, RefusesTextsWithoutASection) {
  for (const char* text : {"", "b", "b[1]"}) expectParse(text, 163);
  EXPECT_EQ(
      failureOf([] { Select select(static_cast<const char*>(nullptr)); }),
      Failure(1, 0, "src/select", "service::util::config::Select::Select(const char*)", 18, ""));
}

TEST(Select, EveryByteInEveryState) {
  const std::string digits = "0123456789";
  const std::string nameBytes = digits + "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const struct {
    const char* prefix;
    std::string accepted;    // bytes after which the text may end
    std::string unfinished;  // bytes that leave a bracket open
    int line;                // for all other bytes
  } rows[] = {
      {"a.", nameBytes, "", 71},   {"a.b", nameBytes + ".", "[", 99}, {"a.b[", "", digits, 114},
      {"a.b[1", "]", digits, 133}, {"a.b[1]", ".", "", 150},
  };
  for (const auto& row : rows) {
    for (int byte = 0; byte < 256; ++byte) {
      const char c = static_cast<char>(byte);
      const auto holds = [c](const std::string& bytes) { return bytes.find(c) != bytes.npos; };
      const int expected = holds(row.accepted) ? 0 : holds(row.unfinished) ? 159 : row.line;
      expectParse(row.prefix + std::string(1, c), expected);
    }
  }
}

TEST(Query, WalksToThePropertyOrFailsWhereThePathEnds) {
  Config config;
  config.addProperty("p", "top");
  for (const char* address : {"10.0.0.1", "10.0.0.2"}) {
    const IConfigPtr interface = config.addSection("network")->addSection("interface");
    interface->addProperty("address", address);
    interface->addProperty("address", std::string(address) + "0");
  }
  const struct {
    const char* select;
    const char* value;
    int line;  // of the failure; 0 for none
  } rows[] = {
      {"network.interface.address", "10.0.0.1", 0},
      {"network[1].interface.address[1]", "10.0.0.20", 0},
      {"network.interface.address[2]", "untouched", 0},
      {"network.p", "untouched", 0},  // the property of another level
      {"network.s.p", "untouched", 64},
      {"network.", "untouched", 92},
  };
  for (const auto& row : rows) {
    std::string value = "untouched";
    bool found = false;
    const Failure failure = failureOf([&] { found = config.getProperty(row.select, value); });
    EXPECT_EQ(std::get<4>(failure), row.line) << row.select;
    EXPECT_EQ(value, row.value) << row.select;
    EXPECT_EQ(found, value != "untouched") << row.select;
  }
}

// A derived class that answers for a section of its own is asked, at every step. Where it has none
// to give, the path goes on from the top.
TEST(DerivedConfig, IsAskedByAQuery) {
  struct Layered : Config {
    IConfigPtr defaults = std::make_shared<Config>();
    IConfigPtr getSection(const std::string& name, std::uint32_t index) const override {
      if (name == "none") return nullptr;
      return index < getSectionCount(name) ? Config::getSection(name, index)
                                           : defaults->getSection(name, index);
    }
  } config;
  config.defaults->addSection("s")->addProperty("p", "default");
  std::string value;
  for (const char* select : {"s.p", "none.s.p"}) {
    value.clear();
    EXPECT_TRUE(config.getProperty(select, value));
    EXPECT_EQ(value, "default") << select;
  }
}

}  // namespace
