#include "service/util/config/internal/Config.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "../FailingAllocations.hpp"
#include "Failure.hpp"

namespace {

using service::util::config::IConfig;
using service::util::config::IConfigPtr;
using service::util::config::internal::Config;
using unit::Failure;
using unit::failureOf;

// The whole content, in one line: "a=1,2; s{b=3} s{}".
std::string contentOf(const Config& config) {
  std::string text;
  for (const auto& name : config.getPropertyNames()) {
    text += name + "=";
    std::string value;
    for (std::uint32_t i = 0; config.getProperty(name, value, i); ++i) text += value + ",";
    text += "; ";
  }
  for (const auto& name : config.getSectionNames()) {
    for (std::uint32_t i = 0; i < config.getSectionCount(name); ++i) {
      text += name + "{" + contentOf(dynamic_cast<Config&>(*config.getSection(name, i))) + "} ";
    }
  }
  return text;
}

TEST(Config, ReportsEachFailureAndStaysAsItWas) {
  const auto in = [](const char* result, const char* signature, std::uint32_t code, int line,
                     const char* message) {
    return Failure(
        code, 0, "src/config",
        std::string("virtual ") + result + " service::util::config::internal::Config::" + signature,
        line, message);
  };
  const char* pointer = "service::util::config::IConfigPtr";
  const char* addProperty = "addProperty(const string&, const string&)";
  const char* getSection = "getSection(const string&, uint32_t) const";
  Config config;
  config.addProperty("p", "1");
  config.addSection("s");
  config.addSection("s");
  const std::string before = contentOf(config);
  std::string value = "untouched";
  const struct {
    std::function<void()> call;
    Failure failure;
  } rows[] = {
      {[&] { config.addProperty("", ""); },
       in("void", addProperty, 1, 30, "Properties name is empty!")},
      {[&] { config.addProperty("new", ""); },
       in("void", addProperty, 1, 31, "Properties value is empty!")},
      {[&] { config.addSection(""); },
       in(pointer, "addSection(const string&)", 1, 39, "Section name is empty!")},
      {[&] { config.getSectionCount(""); },
       in("uint32_t", "getSectionCount(const string&) const", 1, 49, "Section name is empty!")},
      {[&] { config.getSection("", 0); }, in(pointer, getSection, 1, 59, "Section name is empty!")},
      {[&] { config.getSection("p", 0); },
       in(pointer, getSection, 0x3000001, 64, "util::config: no section called \"p\"")},
      {[&] { config.getSection("s", 2); },
       in(pointer, getSection, 0x3000001, 70,
          "util::config: section index 2 for section \"s\" out of bounds")},
      {[&] { config.getPropertyCount(""); },
       in("uint32_t", "getPropertyCount(const string&) const", 1, 81, "Section name is empty!")},
      {[&] { config.getProperty("", value, 0); },
       in("bool", "getProperty(const string&, std::string&, uint32_t) const", 1, 92,
          "Properties name is empty!")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(failureOf(row.call), row.failure);
    EXPECT_EQ(contentOf(config), before) << std::get<3>(row.failure);
  }
  EXPECT_EQ(value, "untouched");
}

TEST(Config, KeepsTheValuesOfANameInTheirOrder) {
  Config config;
  for (const char* value : {"2", "1", "2"}) config.addProperty("a", value);
  config.addSection("a");
  config.addSection("s");
  EXPECT_EQ(contentOf(config), "a=2,1,2,; a{} s{} ");

  // What is missing leaves the value alone.
  std::string value = "untouched";
  for (const auto& [name, index] : {std::pair("a", 3U), {"s", 0U}}) {
    EXPECT_FALSE(config.getProperty(name, value, index)) << name << " " << index;
    EXPECT_EQ(value, "untouched");
  }
  EXPECT_EQ(config.getPropertyCount("a"), 3U);
  EXPECT_EQ(config.getPropertyCount("s"), 0U);
  EXPECT_EQ(config.getSectionCount("x"), 0U);
}

TEST(Config, SharesItsSectionsWithTheCaller) {
  auto config = std::make_shared<Config>();
  config->addSection("s");
  const IConfigPtr second = config->addSection("s");
  config->getSection("s", 1)->addProperty("p", "late");
  EXPECT_EQ(contentOf(*config), "s{} s{p=late,; } ");

  config.reset();
  std::string value;
  EXPECT_TRUE(second->getProperty("p", value, 0)) << "a section outlives its parent";
}

// Destruction must not recurse, yet leave alone what the caller still holds.
TEST(Config, DestroysADeepTree) {
  auto config = std::make_shared<Config>();
  IConfigPtr held, deepest = config;
  for (int level = 0; level < 300000; ++level) {
    deepest = deepest->addSection("s");
    if (level == 200000) held = deepest;
  }
  deepest->addProperty("p", "bottom");
  const std::weak_ptr<IConfig> bottom = deepest;
  deepest.reset();
  config.reset();
  ASSERT_FALSE(bottom.expired());
  EXPECT_EQ(held->getSectionCount("s"), 1U);
  held.reset();
  EXPECT_TRUE(bottom.expired());
}

TEST(Config, TakesNamesThatNoSelectorCanSayInByteOrder) {
  using namespace std::string_literals;
  Config config;
  for (const auto& name : {"\xc3\xa4"s, "a[0]"s, "a.b"s, "a\0b"s, " "s, "\0"s}) {
    config.addProperty(name, name);
    config.addSection(name);
  }
  EXPECT_EQ(contentOf(config),
            "\0=\0,;  = ,; a\0b=a\0b,; a.b=a.b,; a[0]=a[0],; \xc3\xa4=\xc3\xa4,; "
            "\0{}  {} a\0b{} a.b{} a[0]{} \xc3\xa4{} "s);
}

// Whichever allocation fails, no entry without an element stays behind.
TEST(Config, StaysAsItWasWhenMemoryRunsOut) {
  const std::string longText(100, 'x');
  const struct {
    const char* name;
    std::function<void(Config&)> add;
  } rows[] = {
      {"new property", [&](Config& c) { c.addProperty(longText, longText); }},
      {"new section", [&](Config& c) { c.addSection(longText); }},
  };
  for (const auto& row : rows) {
    Config config;
    config.addProperty("p", "1");
    config.addSection("s");
    const std::string before = contentOf(config);
    int failures = 0;
    for (bool failed = true; failed; failures += failed ? 1 : 0) {
      failed = false;
      try {
        const FailingAllocations fail(failures);
        row.add(config);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      EXPECT_EQ(contentOf(config) == before, failed) << row.name << ", allocation " << failures;
    }
    EXPECT_GT(failures, 0) << row.name;
  }
}

}  // namespace
