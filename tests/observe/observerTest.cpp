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
      : left(failingCall), fail(std::move(fail)) {}

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

  std::string calls;

 private:
  void called(const char* name) {
    calls.append(name).append("; ");
    if (left-- == 0) fail();
  }

  std::size_t left;
  std::function<void()> fail;
};

// outer/main.xml includes inner/part.xml.
class ObserverTest : public testing::Test {
 protected:
  ObserverTest() {
    folder.write("outer/main.xml",
                 "<config><property name='a'>1</property><include>../inner/part.xml</include>"
                 "</config>");
    folder.write("inner/part.xml",
                 "<config><section name='t'><property name='b'>2</property></section></config>");
    setSearchPath(path);
  }

  // Run makes these calls, each in a guard of that unit, the innermost one around it, which meets
  // what the call throws. A call that fails is the last one.
  template <class Run>
  void expectCalls(const char* unit, const std::vector<std::pair<std::string, std::string>>& rows,
                   const Run& run) {
    const auto own = [] { throw Exception(99, 8, "tool", "f()", 1, "own"); };
    const auto other = [] { throw std::runtime_error("standard"); };
    std::string calls;
    const auto failureIn = [&](std::size_t call, const std::function<void()>& fail) {
      Failing observer(call, fail);
      const Failure failure = failureOf([&] { run(observer); });
      EXPECT_EQ(observer.calls, calls);
      EXPECT_EQ(getSearchPath(), path) << calls;
      EXPECT_FALSE(isXmlLibraryInitialised()) << calls;
      return failure;
    };
    for (std::size_t call = 0; call < rows.size(); ++call) {
      const auto& [name, guard] = rows[call];
      calls += name + "; ";
      EXPECT_EQ(failureIn(call, own), failureOf(own)) << calls;
      const Failure failure = failureIn(call, other);
      EXPECT_EQ(failure, Failure(6, 0, unit, guard, std::get<4>(failure), "standard")) << calls;
    }
    EXPECT_EQ(failureIn(rows.size(), own), Failure());
  }

  const TemporaryFolder folder;
  const std::vector<std::string> path = {folder.path / "outer"};
};

TEST_F(ObserverTest, AFailureInAnyCallEndsTheLoad) {
  const std::string create =
      "service::util::config::IConfigPtr service::util::config::xml::create(const string&, const "
      "SchemeList&, bool)";
  const auto step = [](const std::string& name) {
    return "void service::util::config::xml::internal::XmlConfigParser::" + name +
           "(const IConfigPtr&, const xercesc_3_1::DOMElement&)";
  };
  expectCalls("src/xmlConfig",
              {{"look-up", create},
               {"file entered", create},
               {"property", step("parseConfig")},
               {"look-up", step("parseInclude")},
               {"file entered", step("parseInclude")},
               {"section", step("parseConfig")},
               {"property", step("parseSection")},
               {"file left", step("parseInclude")},
               {"file left", create}},
              [](xml::Observer& observer) { xml::create("main.xml", {}, false, observer); });
}

TEST_F(ObserverTest, AFailureInAnyCallEndsTheCheck) {
  const std::string check =
      "std::vector<Problem> service::util::config::xml::check(const string&, const SchemeList&, "
      "bool, Observer&)";
  expectCalls("src/check",
              {{"look-up", check},
               {"file entered", check},
               {"look-up", check},
               {"file entered", check},
               {"file left", check},
               {"file left", check}},
              [](xml::Observer& observer) {
                EXPECT_TRUE(xml::check("main.xml", {}, false, observer).empty());
              });
}

TEST_F(ObserverTest, OriginsKnowTheLastLoadOnly) {
  xml::Origins origins;
  const IConfigPtr first = xml::create("main.xml", {}, false, origins);
  EXPECT_EQ(origins.getFiles().size(), 2u);
  EXPECT_NE(origins.of(first, "a", 0).file, nullptr);
  EXPECT_NE(origins.ofSection(first, "t", 0).file, nullptr);

  first->addProperty("a", "later");
  EXPECT_EQ(origins.of(first, "a", 1).file, nullptr) << "added later";
  EXPECT_EQ(origins.of(first, "missing", 0).file, nullptr);
  EXPECT_EQ(origins.of(first, "t", 0).file, nullptr) << "section as a value";
  EXPECT_EQ(origins.of(first->getSection("t", 0), "a", 0).file, nullptr);
  EXPECT_EQ(origins.of(nullptr, "a", 0).file, nullptr);

  const IConfigPtr second = xml::create("main.xml", {}, false, origins);
  EXPECT_EQ(origins.of(first, "a", 0).file, nullptr);
  EXPECT_NE(origins.of(second, "a", 0).file, nullptr);
  EXPECT_EQ(origins.getFiles().size(), 2u);

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
