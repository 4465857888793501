#include "service/util/config/internal/Config.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>
#include <new>
#include <type_traits>

#include "../FailingAllocations.hpp"
#include "Failure.hpp"

namespace {

using service::util::config::IConfig;
using service::util::config::IConfigPtr;
using service::util::config::Select;
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

// Callers were compiled against this order.
TEST(IConfig, KeepsTheOrderOfItsSlots) {
  const auto slotOf = [](auto member) {
    std::ptrdiff_t offset = 0;  // of the slot; some machines mark a virtual member in bit 0
    std::memcpy(&offset, &member, sizeof offset);
    return (offset & ~std::ptrdiff_t{1}) / static_cast<std::ptrdiff_t>(sizeof(void*));
  };
  using Value = bool (IConfig::*)(const std::string&, std::string&, std::uint32_t) const;
  using Selected = bool (IConfig::*)(const Select&, std::string&) const;
  EXPECT_EQ(slotOf(&IConfig::addProperty), 0);
  EXPECT_EQ(slotOf(&IConfig::addSection), 1);
  EXPECT_EQ(slotOf(&IConfig::getSectionCount), 2);
  EXPECT_EQ(slotOf(&IConfig::getSection), 3);
  EXPECT_EQ(slotOf(&IConfig::getPropertyCount), 4);
  EXPECT_EQ(slotOf(static_cast<Value>(&IConfig::getProperty)), 5);
  EXPECT_EQ(slotOf(static_cast<Selected>(&IConfig::getProperty)), 6);
  EXPECT_TRUE(std::has_virtual_destructor_v<IConfig>);
  EXPECT_EQ(sizeof(IConfig), sizeof(void*));
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
      {[&] { config.addProperty("", "v"); },
       in("void", addProperty, 1, 30, "Properties name is empty!")},
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
      {[&] { config.getSection("s", 4294967295U); },
       in(pointer, getSection, 0x3000001, 70,
          "util::config: section index 4294967295 for section \"s\" out of bounds")},
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
  for (const auto& [name, index] : {std::pair("a", 3U), {"a", 4294967295U}, {"A", 0U}, {"s", 0U}}) {
    EXPECT_FALSE(config.getProperty(name, value, index)) << name << " " << index;
    EXPECT_EQ(value, "untouched");
  }
  const std::array<std::uint32_t, 4> counts = {
      config.getPropertyCount("a"), config.getPropertyCount("s"), config.getSectionCount("a"),
      config.getSectionCount("x")};
  EXPECT_EQ(counts, (std::array<std::uint32_t, 4>{3, 0, 1, 0}));
}

TEST(Config, SharesItsSectionsWithTheCaller) {
  auto config = std::make_shared<Config>();
  const IConfigPtr first = config->addSection("s");
  const IConfigPtr second = config->addSection("s");
  EXPECT_NE(first, second);
  EXPECT_EQ(config->getSection("s", 0), first);
  EXPECT_EQ(config->getSection("s", 1), second);

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

TEST(Config, TakesNamesThatNoSelectorCanSay) {
  using namespace std::string_literals;
  Config config;
  const std::vector<std::string> names = {"\0"s, " ", "a\0b"s, "a.b", "a[0]", "\xc3\xa4"};
  for (const auto& name : names) {
    config.addProperty(name, name);
    config.addSection(name)->addProperty(name, " ");
  }
  EXPECT_EQ(config.getPropertyNames(), names);  // in byte order
  EXPECT_EQ(config.getSectionNames(), names);
  for (const auto& name : names) {
    std::string value;
    EXPECT_TRUE(config.getProperty(name, value, 0));
    EXPECT_EQ(value, name);
    EXPECT_EQ(config.getSection(name, 0)->getPropertyCount(name), 1U);
  }
}

// Whichever allocation fails, no entry without an element stays behind.
TEST(Config, StaysAsItWasWhenMemoryRunsOut) {
  const std::string longText(100, 'x');
  const struct {
    const char* name;
    std::function<void(Config&)> add;
  } rows[] = {
      {"new property", [&](Config& c) { c.addProperty(longText, longText); }},
      {"next value", [&](Config& c) { c.addProperty("p", longText); }},
      {"new section", [&](Config& c) { c.addSection(longText); }},
      {"next section", [&](Config& c) { c.addSection("s"); }},
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
