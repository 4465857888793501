// The steps of a load, each called by itself.

#include "service/util/config/xml/internal/XmlConfigParser.hpp"

#include <xercesc/dom/DOM.hpp>

#include "LoaderState.hpp"
#include "service/util/config/internal/Config.hpp"
#include "toolkit/XmlFiles.hpp"
#include "unit/Failure.hpp"
#include "xerces/Parser.hpp"

namespace {

using service::util::config::IConfigPtr;
using service::util::config::xml::internal::XmlConfigParser;
using xercesc::DOMElement;

using XmlConfigParserTest = XmlFiles;

TEST_F(XmlConfigParserTest, StepsRefuseOtherElements) {
  using Step = void (XmlConfigParser::*)(const IConfigPtr&, const DOMElement&);
  const struct {
    std::string step;
    Step call;
    std::string expected;
  } rows[] = {
      {"parseConfig", &XmlConfigParser::parseConfig, "config"},
      {"parseSection", &XmlConfigParser::parseSection, "section"},
      {"parseProperty", &XmlConfigParser::parseProperty, "property"},
      {"parseInclude", &XmlConfigParser::parseInclude, "include"},
  };
  const std::string file = write("other.xml", "<other name='n'>x</other>");
  xerces::Parser document;
  const DOMElement& other = *document.parseDoc(file)->getDocumentElement();
  setSearchPath({directory});
  write("main.xml", "<config><property name='p'>x</property></config>");
  XmlConfigParser parser("main.xml", {}, false);
  const auto config = std::make_shared<service::util::config::internal::Config>();
  for (const auto& row : rows) {
    const auto failure = unit::failureOf([&] { (parser.*row.call)(config, other); });
    EXPECT_EQ(failure,
              unit::Failure(6, 0, "src/xmlConfig",
                            "void service::util::config::xml::internal::XmlConfigParser::" +
                                row.step + "(const IConfigPtr&, const xercesc_3_1::DOMElement&)",
                            std::get<4>(failure),
                            "XMLParser: in file \"" + file +
                                "\" at line 1 at column 17: expected element called \"" +
                                row.expected + "\"!"));
  }
  EXPECT_TRUE(config->getPropertyNames().empty() && config->getSectionNames().empty());
  parser.parse(config, directory / "main.xml");
  EXPECT_EQ(config->getPropertyCount("p"), 1u);
}

}  // namespace
