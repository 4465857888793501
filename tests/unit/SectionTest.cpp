#include "service/util/config/internal/Section.hpp"

#include <gtest/gtest.h>

#include <functional>

#include "Failure.hpp"

namespace {

using service::util::config::internal::Section;
using service::util::config::internal::SectionPtr;
using unit::Failure;
using unit::failureOf;

TEST(Section, ReportsEachFailureAndStaysAsItWas) {
  Section parent("parent");
  const SectionPtr child = Section::createSection("c", parent);
  const struct {
    const char* name;
    std::function<void()> call;
    std::uint32_t code;
    std::string function;
    int line;
  } rows[] = {
      {"empty name", [&] { Section::createSection("", parent); }, 1,
       "service::util::config::internal::Section::Section(const string&)", 78},
      {"duplicate", [&] { Section::createSection("c", parent); }, 0x3000002,
       "static service::util::config::internal::SectionPtr "
       "service::util::config::internal::Section::createSection(const string&, "
       "service::util::config::internal::Section&)",
       70},
      {"required property", [&] { parent.getProperty("c", true); }, 0x3000001,
       "std::string service::util::config::internal::Section::getProperty(const string&, bool) "
       "const",
       34},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(failureOf(row.call), Failure(row.code, 0, "src/section", row.function, row.line, ""))
        << row.name;
    EXPECT_EQ(parent.getSection("c"), child) << row.name;
    EXPECT_EQ(child.use_count(), 2) << row.name;
    EXPECT_EQ(parent.getSection(""), nullptr) << row.name;
  }
}

TEST(Section, KeepsTheFirstValueOfAProperty) {
  Section section("s");
  for (const auto& [name, value] : {std::pair("a", "1"), {"a", "2"}, {"A", "3"}, {"", ""}}) {
    section.setProperty(name, value);
  }
  EXPECT_EQ(section.getProperty("a", true), "1");
  EXPECT_EQ(section.getProperty("A", false), "3");
  EXPECT_EQ(section.getProperty("", true), "");
  EXPECT_EQ(section.getProperty("x", false), "");
}

TEST(Section, SharesItsChildren) {
  SectionPtr parent = Section::createSection("parent");
  const SectionPtr child = Section::createSection("child", *parent);
  child->setProperty("a", "late");
  EXPECT_EQ(parent->getSection("child")->getProperty("a", true), "late");
  parent.reset();
  EXPECT_EQ(child->getProperty("a", true), "late") << "a child outlives its parent";
}

TEST(Section, DestroysADeepTree) {
  SectionPtr root = Section::createSection("s"), deepest = root;
  for (int level = 0; level < 300000; ++level) deepest = Section::createSection("s", *deepest);
  const std::weak_ptr<Section> bottom = deepest;
  deepest.reset();
  ASSERT_FALSE(bottom.expired());
  root.reset();
  EXPECT_TRUE(bottom.expired());
}

}  // namespace
