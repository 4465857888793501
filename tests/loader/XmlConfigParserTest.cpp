// The steps of a load, each called by itself, and what becomes of exceptions that pass them.

#include "service/util/config/xml/internal/XmlConfigParser.hpp"

#include <functional>
#include <stdexcept>
#include <xercesc/dom/DOM.hpp>

#include "LoaderState.hpp"
#include "cppUtil/err/Exception.hpp"
#include "service/util/config/internal/Config.hpp"
#include "toolkit/XmlFiles.hpp"
#include "xerces/Parser.hpp"

namespace {

using cppUtil::err::Exception;
using service::util::config::IConfigPtr;
using service::util::config::internal::Config;
using service::util::config::xml::internal::XmlConfigParser;
using xercesc::DOMElement;

std::string signatureOf(const std::string& step) {
  return "void service::util::config::xml::internal::XmlConfigParser::" + step +
         "(const IConfigPtr&, const xercesc_3_1::DOMElement&)";
}

class XmlConfigParserTest : public XmlFiles {
 protected:
  XmlConfigParserTest() {
    setSearchPath({directory});
    write("empty.xml", "<config/>");
  }
};

TEST_F(XmlConfigParserTest, StepsRefuseOtherElements) {
  using Step = void (XmlConfigParser::*)(const IConfigPtr&, const DOMElement&);
  struct Row {
    const char* name;
    Step step;
    const char* expected;
  };
  const Row rows[] = {
      {"parseConfig", &XmlConfigParser::parseConfig, "config"},
      {"parseSection", &XmlConfigParser::parseSection, "section"},
      {"parseProperty", &XmlConfigParser::parseProperty, "property"},
      {"parseInclude", &XmlConfigParser::parseInclude, "include"},
  };
  const std::string file = write("other.xml", "<other name='n'>x</other>");
  xerces::Parser document;
  const DOMElement& other = *document.parseDoc(file)->getDocumentElement();
  XmlConfigParser parser("empty.xml", {}, false);
  const auto config = std::make_shared<Config>();
  for (const Row& row : rows) {
    try {
      (parser.*row.step)(config, other);
      ADD_FAILURE() << row.name;
    } catch (const Exception& e) {
      EXPECT_EQ(e.getCode(), 6u);
      EXPECT_EQ(e.getFunction(), signatureOf(row.name));
      EXPECT_EQ(e.getMessage(), "XMLParser: in file \"" + file +
                                    "\" at line 1 at column 17: expected element called \"" +
                                    row.expected + "\"!");
    }
  }
  EXPECT_TRUE(config->getPropertyNames().empty() && config->getSectionNames().empty());
}

// Refuses whatever is added to it, and to the sections called "open" in it.
class RefusingConfig : public Config {
 public:
  explicit RefusingConfig(std::function<void()> refuse) : refuse(std::move(refuse)) {}
  void addProperty(const std::string& /*name*/, const std::string& /*value*/) override { refuse(); }
  IConfigPtr addSection(const std::string& name) override {
    if (name != "open") refuse();
    return std::make_shared<RefusingConfig>(refuse);
  }

 private:
  std::function<void()> refuse;
};

// What the configuration throws passes the step that added to it, and meets the guard of the loop
// around that step.
TEST_F(XmlConfigParserTest, LoopsTranslateWhatTheConfigurationThrows) {
  struct Place {
    const char* document;
    const char* step;
  };
  const Place places[] = {
      {"<config><property name='p'>x</property></config>", "parseConfig"},
      {"<config><section name='s'/></config>", "parseConfig"},
      {"<config><section name='open'><property name='p'>x</property></section></config>",
       "parseSection"},
      {"<config><section name='open'><section name='s'/></section></config>", "parseSection"},
      {"<config><section name='open'><include>part.xml</include></section></config>",
       "parseConfig"},
  };
  struct Thrown {
    std::function<void()> refuse;
    std::uint32_t code;
    const char* message;
  };
  const Thrown rows[] = {
      {[] { throw std::runtime_error("the reason"); }, 6, "the reason"},
      {[] { throw "the text"; }, 7, "the text"},
      {[] { throw 5; }, 7, ""},
  };
  write("part.xml", "<config><property name='p'>x</property></config>");
  XmlConfigParser parser("empty.xml", {}, false);
  for (const Place& place : places) {
    const std::string file = write("refused.xml", place.document);
    for (const Thrown& thrown : rows) {
      try {
        parser.parse(std::make_shared<RefusingConfig>(thrown.refuse), file);
        ADD_FAILURE() << place.document;
      } catch (const Exception& e) {
        EXPECT_EQ(e.getCode(), thrown.code) << place.document;
        EXPECT_EQ(e.getSystemErrorCode(), 0);
        EXPECT_EQ(e.getFile(), "src/xmlConfig");
        EXPECT_EQ(e.getFunction(), signatureOf(place.step)) << place.document;
        EXPECT_GT(e.getLine(), 0);
        EXPECT_EQ(e.getMessage(), thrown.message) << place.document;
      }
    }
    const auto own = [] { throw Exception(9, 8, "file", "function", 7, "message"); };
    try {
      parser.parse(std::make_shared<RefusingConfig>(own), file);
      ADD_FAILURE() << place.document;
    } catch (const Exception& e) {
      EXPECT_EQ(e.getCode(), 9u);
      EXPECT_EQ(e.getSystemErrorCode(), 8);
      EXPECT_EQ(e.getFunction(), "function");
      EXPECT_EQ(e.getMessage(), "message");
    }
  }
  EXPECT_EQ(getSearchPath(), std::vector<std::string>{directory});
}

}  // namespace
