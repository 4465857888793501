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
  const auto in = [](const std::string& result, const char* signature, int line,
                     const char* message, std::uint32_t code = 1) {
    const char* scope = " service::util::config::internal::Config::";
    return Failure(code, 0, "src/config", "virtual " + result + scope + signature, line, message);
  };
  const char* section = "service::util::config::IConfigPtr";
  const char* addProperty = "addProperty(const string&, const string&)";
  const char* getSection = "getSection(const string&, uint32_t) const";
  const char* unnamed = "Section name is empty!";
  Config config;
  config.addProperty("p", "1");
  config.addSection("s");
  const std::string before = contentOf(config);
  std::string value = "untouched";
  const std::pair<std::function<void()>, Failure> rows[] = {
      {[&] { config.addProperty("", ""); },
       in("void", addProperty, 30, "Properties name is empty!")},
      {[&] { config.addProperty("new", ""); },
       in("void", addProperty, 31, "Properties value is empty!")},
      {[&] { config.addSection(""); }, in(section, "addSection(const string&)", 39, unnamed)},
      {[&] { config.getSectionCount(""); },
       in("uint32_t", "getSectionCount(const string&) const", 49, unnamed)},
      {[&] { config.getSection("", 0); }, in(section, getSection, 59, unnamed)},
      {[&] { config.getSection("p", 0); },
       in(section, getSection, 64, "util::config: no section called \"p\"", 0x3000001)},
      {[&] { config.getSection("s", 1); },
       in(section, getSection, 70, "util::config: section index 1 for section \"s\" out of bounds",
          0x3000001)},
      {[&] { config.getPropertyCount(""); },
       in("uint32_t", "getPropertyCount(const string&) const", 81, unnamed)},
      {[&] { config.getProperty("", value, 0); },
       in("bool", "getProperty(const string&, std::string&, uint32_t) const", 92,
          "Properties name is empty!")},
  };
  for (const auto& [call, failure] : rows) {
    EXPECT_EQ(failureOf(call), failure);
    EXPECT_EQ(contentOf(config), before) << std::get<3>(failure);
  }
  EXPECT_EQ(value, "untouched");
}

// Names in byte order, those too that no selector can say, and the values of each as they came.
TEST(Config, KeepsItsOrder) {
  using namespace std::string_literals;
  Config config;
  for (const auto& name : {"\xc3\xa4"s, "a[0]"s, "a\0b"s, " "s, "\0"s, "a"s}) {
    config.addSection(name);
    for (const char* value : {"2", "1", "2"}) config.addProperty(name, value);
  }
  EXPECT_EQ(contentOf(config),
            "\0=2,1,2,;  =2,1,2,; a=2,1,2,; a\0b=2,1,2,; a[0]=2,1,2,; \xc3\xa4=2,1,2,; "
            "\0{}  {} a{} a\0b{} a[0]{} \xc3\xa4{} "s);
  EXPECT_EQ(config.getPropertyCount("a"), 3U);
  EXPECT_EQ(config.getPropertyCount("b"), 0U);
  EXPECT_EQ(config.getSectionCount("b"), 0U);
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

// Whichever allocation fails, no entry without an element stays behind.
TEST(Config, StaysAsItWasWhenMemoryRunsOut) {
  const std::string longText(100, 'x');
  Config config;
  int failures = 0;
  for (bool failed = true; failed; failures += failed ? 1 : 0) {
    failed = false;
    try {
      const FailingAllocations fail(failures);
      config.addProperty(longText, longText);
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    EXPECT_EQ(contentOf(config).empty(), failed) << "allocation " << failures;
  }
  EXPECT_GT(failures, 0);
}

}  // namespace
