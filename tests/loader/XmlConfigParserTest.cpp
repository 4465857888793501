#include "service/util/config/xml/internal/XmlConfigParser.hpp"

#include <xercesc/dom/DOM.hpp>

#include "LoaderState.hpp"
#include "service/util/config/xml/Session.hpp"
#include "unit/Failure.hpp"
#include "xerces/Exception.hpp"

namespace {

using service::util::config::IConfigPtr;
using service::util::config::xml::Session;
using service::util::config::xml::internal::XmlConfigParser;

// The class behind create does not translate; its exception keeps its type on the way out of the
// shared library.
TEST(XmlConfigParserTest, DoesNotTranslateFailedParses) {
  setSearchPath({ZU_TEST_DATA_DIR "/malformed"});
  try {
    XmlConfigParser parser("main.xml", {}, false);
    FAIL();
  } catch (const xerces::Exception& e) {
    EXPECT_STREQ(e.what(),
                 "XML Parser reported the following errors:\n\tFATAL  in \"" ZU_TEST_DATA_DIR
                 "/malformed/main.xml\"(line=5, column=3): expected end of tag 'section'\n");
  }
  EXPECT_FALSE(isXmlLibraryInitialised());
}

TEST(XmlConfigParserTest, StepsRefuseOtherElements) {
  using Step = void (XmlConfigParser::*)(const IConfigPtr&, const xercesc::DOMElement&);
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
  setSearchPath({ZU_TEST_DATA_DIR "/order-by-kind"});
  XmlConfigParser parser("main.xml", {}, false);
  const Session session(Session::NOW);
  auto* const document = xercesc::DOMImplementation::getImplementation()->createDocument();
  const XMLCh name[] = {'o', 't', 'h', 'e', 'r', 0};
  const xercesc::DOMElement& other = *document->createElement(name);
  for (const auto& row : rows) {
    const auto failure = unit::failureOf([&] { (parser.*row.call)(parser.getConfig(), other); });
    EXPECT_EQ(
        failure,
        unit::Failure(6, 0, "src/xmlConfig",
                      "void service::util::config::xml::internal::XmlConfigParser::" + row.step +
                          "(const IConfigPtr&, const xercesc_3_1::DOMElement&)",
                      std::get<4>(failure),
                      "XMLParser: in file \"\" at line 0 at column 0: expected element called "
                      "\"" +
                          row.expected + "\"!"));
  }
  document->release();
  EXPECT_EQ(parser.getConfig()->getPropertyCount("v"), 3u);
  parser.parse(parser.getConfig(), ZU_TEST_DATA_DIR "/order-by-kind/main.xml");
  EXPECT_EQ(parser.getConfig()->getPropertyCount("v"), 6u);
}

}  // namespace
