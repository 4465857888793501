#include "service/util/config/visit.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "service/util/config/Select.hpp"
#include "service/util/config/internal/Config.hpp"
#include "unit/Failure.hpp"

namespace {

using service::util::config::IConfig;
using service::util::config::IConfigPtr;
using service::util::config::Select;
using service::util::config::Visited;
using service::util::config::Visitor;
using service::util::config::internal::Config;

class Trace : public Visitor {
 public:
  Trace(const IConfigPtr& config, std::string skipped) : config(config), skipped(skipped) {
    visit(config, *this);
  }

  void property(const Visited& visited, const std::string& value) override {
    line("", visited) << " = " << value << "\n";
    std::string selected = value;
    if (visited.selectable) {
      EXPECT_TRUE(config->getProperty(Select(visited.path), selected));
    }
    EXPECT_EQ(selected, value) << visited.path;
  }
  bool enterSection(const Visited& visited, const IConfigPtr& section) override {
    EXPECT_EQ(visited.parent->getSection(visited.name, visited.index), section);
    line("enter ", visited) << "\n";
    return visited.path != skipped;
  }
  void leaveSection(const Visited& visited, const IConfigPtr& section) override {
    EXPECT_EQ(visited.parent->getSection(visited.name, visited.index), section);
    line("leave ", visited) << "\n";
  }

  std::ostringstream out;

 private:
  std::ostream& line(const char* what, const Visited& visited) {
    return out << what << visited.path << (visited.selectable ? "" : " !") << " " << visited.index
               << "/" << visited.count;
  }

  IConfigPtr config;
  std::string skipped;
};

IConfigPtr makeTree() {
  const IConfigPtr config = std::make_shared<Config>();
  config->addProperty("z", "1");
  config->addProperty("Z", "2");
  const IConfigPtr network = config->addSection("network");
  network->addProperty("b", "3");
  network->addProperty("a", "4");
  network->addProperty("b", "5");
  network->addProperty("a.b", "6");
  network->addSection("b c")->addSection("deeper")->addProperty("p", "7");
  config->addSection("a")->addProperty("x", "8");
  config->addSection("a");
  return config;
}

TEST(VisitTest, GoesThroughTheWholeTree) {
  EXPECT_EQ(Trace(makeTree(), "").out.str(),
            "Z ! 0/1 = 2\n"
            "z ! 0/1 = 1\n"
            "enter a[0] 0/2\n"
            "a[0].x 0/1 = 8\n"
            "leave a[0] 0/2\n"
            "enter a[1] 1/2\n"
            "leave a[1] 1/2\n"
            "enter network 0/1\n"
            "network.a 0/1 = 4\n"
            "network.\"a.b\" ! 0/1 = 6\n"
            "network.b[0] 0/2 = 3\n"
            "network.b[1] 1/2 = 5\n"
            "enter network.\"b c\" ! 0/1\n"
            "enter network.\"b c\".deeper ! 0/1\n"
            "network.\"b c\".deeper.p ! 0/1 = 7\n"
            "leave network.\"b c\".deeper ! 0/1\n"
            "leave network.\"b c\" ! 0/1\n"
            "leave network 0/1\n");
}

TEST(VisitTest, LeavesOutWhatIsNotEntered) {
  const std::string text = Trace(makeTree(), "network").out.str();
  EXPECT_EQ(text.substr(text.find("leave a[1]")), "leave a[1] 1/2\nenter network 0/1\n");
}

TEST(VisitTest, SpellsAllOtherNamesInQuotes) {
  const struct {
    std::string name, spelled;
  } cases[] = {
      {"aZ09", "aZ09"},           {"", "\"\""},
      {"a_b", "\"a_b\""},         {"\xc3\xa4", "\"\xc3\xa4\""},
      {"a\"\\", "\"a\\\"\\\\\""}, {"a\n\x1f\x7f\xc2\x85", "\"a\\u000a\\u001f\\u007f\\u0085\""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(service::util::config::spellName(c.name), c.spelled);
    EXPECT_EQ(service::util::config::isSelectable(c.name), c.name == c.spelled) << c.name;
  }
}

TEST(VisitTest, NeedsNoStackForDepth) {
  constexpr int depth = 50000;
  const IConfigPtr config = std::make_shared<Config>();
  IConfigPtr section = config;
  for (int level = 0; level < depth; ++level) section = section->addSection("s");
  struct Leaves : Visitor {
    void leaveSection(const Visited&, const IConfigPtr&) override { ++count; }
    int count = 0;
  } leaves;
  visit(config, leaves);
  EXPECT_EQ(leaves.count, depth);
}

// Not of this library's making.
class Foreign : public IConfig {
 public:
  void addProperty(const std::string&, const std::string&) override {}
  IConfigPtr addSection(const std::string&) override { return nullptr; }
  std::uint32_t getSectionCount(const std::string&) const override { return 0; }
  IConfigPtr getSection(const std::string&, std::uint32_t) const override { return nullptr; }
  std::uint32_t getPropertyCount(const std::string&) const override { return 0; }
  bool getProperty(const std::string&, std::string&, std::uint32_t) const override { return false; }
  bool getProperty(const Select&, std::string&) const override { return false; }
};

TEST(VisitTest, RefusesWhatItCannotEnumerate) {
  const std::tuple<IConfigPtr, std::uint32_t, const char*> rows[] = {
      {nullptr, 1, "Configuration is missing!"},
      {std::make_shared<Foreign>(), 5, "Configuration does not tell its names!"}};
  Visitor visitor;
  for (const auto& [config, code, message] : rows) {
    const unit::Failure failure = unit::failureOf([&] { visit(config, visitor); });
    EXPECT_EQ(failure,
              unit::Failure(code, 0, "src/visit",
                            "void service::util::config::visit(const IConfigPtr&, Visitor&)",
                            std::get<4>(failure), message));
  }
}

}  // namespace
