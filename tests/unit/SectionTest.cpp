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
  const std::string scope = "service::util::config::internal::";
  const struct {
    std::function<void()> call;
    std::uint32_t code;
    std::string function;
    int line;
  } rows[] = {
      {[&] { Section::createSection("", parent); }, 1, scope + "Section::Section(const string&)",
       78},
      {[&] { Section::createSection("c", parent); }, 0x3000002,
       "static " + scope + "SectionPtr " + scope + "Section::createSection(const string&, " +
           scope + "Section&)",
       70},
      {[&] { parent.getProperty("c", true); }, 0x3000001,
       "std::string " + scope + "Section::getProperty(const string&, bool) const", 34},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(failureOf(row.call), Failure(row.code, 0, "src/section", row.function, row.line, ""));
  }
  EXPECT_EQ(parent.getSection("c"), child);
  EXPECT_EQ(parent.getSection(""), nullptr);
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
