// Observers that fail, and what origins answer for besides a load that went well.

#include "service/util/config/xml/Observer.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "TemporaryFolder.hpp"
#include "cppUtil/err/Exception.hpp"
#include "loader/LoaderState.hpp"
#include "service/util/config/xml/Origins.hpp"
#include "service/util/config/xml/check.hpp"

namespace {

namespace xml = service::util::config::xml;
using cppUtil::err::Exception;
using service::util::config::IConfigPtr;
using xml::Location;

// Fails in one of its calls, counted from 0.
class Failing : public xml::Observer {
 public:
  Failing(std::size_t failingCall, std::function<void()> fail)
      : failingCall(failingCall), fail(std::move(fail)) {}

  void fileEntered(const File&) override { called("file entered"); }
  void sectionAdded(const IConfigPtr&, const std::string&, std::uint32_t, const IConfigPtr&,
                    const Location&) override {
    called("section");
  }
  void propertyAdded(const IConfigPtr&, const std::string&, std::uint32_t,
                     const Location&) override {
    called("property");
  }
  void fileLeft(const File&) override { called("file left"); }

  std::vector<std::string> calls;

 private:
  void called(const char* name) {
    calls.emplace_back(name);
    if (calls.size() == failingCall + 1) fail();
  }

  std::size_t failingCall;
  std::function<void()> fail;
};

// outer/main.xml includes inner/part.xml at the top and in a section.
class ObserverTest : public testing::Test {
 protected:
  ObserverTest() {
    folder.write("outer/main.xml",
                 "<config><property name='a'>1</property><include>../inner/part.xml</include>"
                 "<section name='s'><include>../inner/part.xml</include></section></config>");
    folder.write("inner/part.xml",
                 "<config><section name='t'><property name='b'>2</property></section></config>");
    path = {folder.path / "outer"};
    setSearchPath(path);
  }

  void expectStatePutBack(const std::string& message) {
    EXPECT_EQ(getSearchPath(), path) << message;
    EXPECT_FALSE(isXmlLibraryInitialised()) << message;
  }

  TemporaryFolder folder;
  std::vector<std::string> path;
};

const std::vector<std::string> allCalls = {
    "file entered", "property",     "file entered", "section",  "property",  "file left",
    "section",      "file entered", "section",      "property", "file left", "file left"};

constexpr const char* create =
    "service::util::config::IConfigPtr service::util::config::xml::create(const string&, const "
    "SchemeList&, bool)";
std::string step(const std::string& name, const std::string& element = "xercesc_3_1::DOMElement") {
  return "void service::util::config::xml::internal::XmlConfigParser::" + name +
         "(const IConfigPtr&, const " + element + "&)";
}

TEST_F(ObserverTest, AFailureInAnyCallEndsTheLoad) {
  // The guards that meet what the calls throw: the innermost around each.
  const std::vector<std::string> guards = {create,
                                           step("parseConfig"),   // a
                                           step("parseInclude"),  // the first include
                                           step("parseConfig"),
                                           step("parseSection"),
                                           step("parseInclude"),
                                           step("parseConfig"),   // s
                                           step("parseInclude"),  // the second include
                                           step("parseConfig"),
                                           step("parseSection"),
                                           step("parseInclude"),
                                           create};
  const struct {
    const char* name;
    std::function<void()> fail;
    std::uint32_t code;
    const char* message;
    bool translated;
  } rows[] = {
      {"own", [] { throw Exception(99, 0, "tool", "f()", 1, "own"); }, 99, "own", false},
      {"standard", [] { throw std::runtime_error("standard"); }, 6, "standard", true},
      {"text", [] { throw "text"; }, 7, "text", true},
      {"other", [] { throw 1; }, 7, "", true},
  };
  Failing never(allCalls.size(), [] {});
  ASSERT_NE(xml::create("main.xml", {}, false, never), nullptr);
  ASSERT_EQ(never.calls, allCalls);

  for (const auto& row : rows) {
    for (std::size_t call = 0; call < allCalls.size(); ++call) {
      const std::string name = row.name + (" in call " + std::to_string(call));
      Failing observer(call, row.fail);
      try {
        xml::create("main.xml", {}, false, observer);
        ADD_FAILURE() << name;
      } catch (const Exception& e) {
        EXPECT_EQ(e.getCode(), row.code) << name;
        EXPECT_EQ(e.getMessage(), row.message) << name;
        EXPECT_EQ(e.getFunction(), row.translated ? guards[call] : "f()") << name;
      }
      EXPECT_EQ(observer.calls,
                std::vector<std::string>(allCalls.begin(), allCalls.begin() + long(call) + 1))
          << name;
      expectStatePutBack(name);
    }
  }
}

TEST_F(ObserverTest, AFailureInAnyCallEndsTheCheck) {
  const std::vector<std::string> calls = {"file entered", "file entered", "file left",
                                          "file entered", "file left",    "file left"};
  Failing never(calls.size(), [] {});
  EXPECT_TRUE(xml::check("main.xml", {}, false, never).empty());
  ASSERT_EQ(never.calls, calls);
  for (std::size_t call = 0; call < calls.size(); ++call) {
    Failing observer(call, [] { throw std::runtime_error("standard"); });
    try {
      xml::check("main.xml", {}, false, observer);
      ADD_FAILURE() << call;
    } catch (const Exception& e) {
      EXPECT_EQ(e.getCode(), 6u) << call;
      EXPECT_EQ(e.getMessage(), "standard") << call;
    }
    expectStatePutBack(std::to_string(call));
  }
}

TEST_F(ObserverTest, OriginsKnowTheLastLoadOnly) {
  xml::Origins origins;
  const IConfigPtr first = xml::create("main.xml", {}, false, origins);
  EXPECT_EQ(origins.getFiles().size(), 3u);
  EXPECT_NE(origins.of(first, "a", 0).file, nullptr);
  EXPECT_NE(origins.ofSection(first, "t", 0).file, nullptr);

  first->addProperty("a", "later");
  struct Row {
    const char* name;
    xml::Origins::Origin origin;
  };
  const Row rows[] = {
      {"index", origins.of(first, "a", 2)},
      {"added later", origins.of(first, "a", 1)},
      {"name", origins.of(first, "missing", 0)},
      {"section as a value", origins.of(first, "t", 0)},
      {"value as a section", origins.ofSection(first, "a", 0)},
      {"other section", origins.of(first->getSection("s", 0), "a", 0)},
      {"no configuration", origins.of(nullptr, "a", 0)},
  };
  for (const Row& row : rows) EXPECT_EQ(row.origin.file, nullptr) << row.name;

  const IConfigPtr second = xml::create("main.xml", {}, false, origins);
  EXPECT_EQ(origins.of(first, "a", 0).file, nullptr);
  EXPECT_NE(origins.of(second, "a", 0).file, nullptr);
  EXPECT_EQ(origins.getFiles().size(), 3u);

  folder.write("inner/part.xml", "<config>");
  EXPECT_THROW(xml::create("main.xml", {}, false, origins), Exception);
  EXPECT_EQ(origins.of(second, "a", 0).file, nullptr);
  EXPECT_EQ(origins.getFiles().size(), 2u);
}

// A section's address may be used again once it is gone.
TEST_F(ObserverTest, OriginsKeepTheConfigurationAlive) {
  xml::Origins origins;
  const std::weak_ptr<service::util::config::IConfig> config =
      xml::create("main.xml", {}, false, origins);
  EXPECT_FALSE(config.expired());
  EXPECT_THROW(xml::create("inner.xml", {}, false, origins), Exception);
  EXPECT_FALSE(config.expired());
}

}  // namespace
