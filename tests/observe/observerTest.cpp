// Observers that fail, and what origins answer for besides a load that went well.

#include "service/util/config/xml/Observer.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "TemporaryFolder.hpp"
#include "loader/LoaderState.hpp"
#include "service/util/config/xml/Origins.hpp"
#include "service/util/config/xml/check.hpp"
#include "unit/Failure.hpp"

namespace {

namespace xml = service::util::config::xml;
using cppUtil::err::Exception;
using service::util::config::IConfigPtr;
using unit::Failure;
using unit::failureOf;
using xml::Location;

// Fails in one of its calls, counted from 0.
class Failing : public xml::Observer {
 public:
  Failing(std::size_t failingCall, std::function<void()> fail)
      : failingCall(failingCall), fail(std::move(fail)) {}

  void fileLookedUp(const std::string&, const std::string&) override { called("look-up"); }
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
    "look-up",      "file entered", "property",  "look-up",   "file entered",
    "section",      "property",     "file left", "section",   "look-up",
    "file entered", "section",      "property",  "file left", "file left"};

constexpr const char* create =
    "service::util::config::IConfigPtr service::util::config::xml::create(const string&, const "
    "SchemeList&, bool)";
std::string step(const std::string& name) {
  return "void service::util::config::xml::internal::XmlConfigParser::" + name +
         "(const IConfigPtr&, const xercesc_3_1::DOMElement&)";
}

TEST_F(ObserverTest, AFailureInAnyCallEndsTheLoad) {
  // The guards that meet what the calls throw: the innermost around each.
  const std::vector<std::string> guards = {create,
                                           create,
                                           step("parseConfig"),   // a
                                           step("parseInclude"),  // the first include
                                           step("parseInclude"),
                                           step("parseConfig"),
                                           step("parseSection"),
                                           step("parseInclude"),
                                           step("parseConfig"),   // s
                                           step("parseInclude"),  // the second include
                                           step("parseInclude"),
                                           step("parseConfig"),
                                           step("parseSection"),
                                           step("parseInclude"),
                                           create};
  const struct {
    std::function<void()> fail;
    std::uint32_t code;  // 0: not translated
    const char* message;
  } rows[] = {
      {[] { throw Exception(99, 8, "tool", "f()", 1, "own"); }, 0, ""},
      {[] { throw std::runtime_error("standard"); }, 6, "standard"},
      {[] { throw "text"; }, 7, "text"},
      {[] { throw 1; }, 7, ""},
  };
  Failing never(allCalls.size(), [] {});
  ASSERT_NE(xml::create("main.xml", {}, false, never), nullptr);
  ASSERT_EQ(never.calls, allCalls);

  for (const auto& row : rows) {
    for (std::size_t call = 0; call < allCalls.size(); ++call) {
      const std::string name = row.message + (" in call " + std::to_string(call));
      Failing observer(call, row.fail);
      const Failure failure = failureOf([&] { xml::create("main.xml", {}, false, observer); });
      const Failure translated(row.code, 0, "src/xmlConfig", guards[call], std::get<4>(failure),
                               row.message);
      EXPECT_EQ(failure, row.code == 0 ? failureOf(row.fail) : translated) << name;
      EXPECT_EQ(observer.calls,
                std::vector<std::string>(allCalls.begin(), allCalls.begin() + long(call) + 1))
          << name;
      expectStatePutBack(name);
    }
  }
}

TEST_F(ObserverTest, AFailureInAnyCallEndsTheCheck) {
  const std::vector<std::string> calls = {"look-up",      "file entered", "look-up",
                                          "file entered", "file left",    "look-up",
                                          "file entered", "file left",    "file left"};
  Failing never(calls.size(), [] {});
  EXPECT_TRUE(xml::check("main.xml", {}, false, never).empty());
  ASSERT_EQ(never.calls, calls);
  for (std::size_t call = 0; call < calls.size(); ++call) {
    Failing observer(call, [] { throw std::runtime_error("standard"); });
    const Failure failure = failureOf([&] { xml::check("main.xml", {}, false, observer); });
    EXPECT_EQ(std::get<0>(failure), 6u) << call;
    EXPECT_EQ(std::get<5>(failure), "standard") << call;
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
  EXPECT_EQ(origins.of(first, "a", 1).file, nullptr) << "added later";
  EXPECT_EQ(origins.of(first, "missing", 0).file, nullptr);
  EXPECT_EQ(origins.of(first, "t", 0).file, nullptr) << "section as a value";
  EXPECT_EQ(origins.of(first->getSection("s", 0), "a", 0).file, nullptr);
  EXPECT_EQ(origins.of(nullptr, "a", 0).file, nullptr);

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
