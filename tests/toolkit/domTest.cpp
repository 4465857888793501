#include "xerces/dom.hpp"

#include <functional>
#include <xercesc/dom/DOM.hpp>

#include "XmlFiles.hpp"
#include "xerces/Parser.hpp"

namespace {

using xerces::fromLocal;
using xercesc::DOMElement;

using DomTest = XmlFiles;

std::string matched(const DOMElement& element, const char* name) {
  xerces::match(element, fromLocal(name));
  return "matched";
}

std::string attribute(const DOMElement& element) {
  return xerces::mandatoryAttribute(element, fromLocal("name"));
}

// The ids of the children called p.
std::string children(const DOMElement& element) {
  std::string ids;
  for (const DOMElement* child : xerces::namedChildElements(element, fromLocal("p"))) {
    ids += xerces::transcode(child->getAttribute(fromLocal("id").c_str()));
  }
  return ids;
}

TEST_F(DomTest, HelpersReadElements) {
  const auto is = [](const char* name) {
    return [name](const DOMElement& element) { return matched(element, name); };
  };
  const std::string at = "XMLParser: in file \"{FILE}\" at line 1 at column ";
  const struct {
    const char* name;
    const char* document;
    std::function<std::string(const DOMElement&)> step;  // on the root element
    std::string expected;
  } rows[] = {
      {"match any namespace", "<c:config xmlns:c='urn:any'></c:config>", is("config"), "matched"},
      {"match not the qualified name", "<c:config xmlns:c='u'></c:config>", is("c:config"),
       at + "23: expected element called \"c:config\"!"},
      {"attribute", "<s name='  a\tb '></s>", attribute, "  a b "},
      {"attribute with prefix", "<s xmlns:n='u' n:name='a'></s>", attribute,
       at + "27: expected attribute \"name\"!"},
      {"text", "<p> a<!-- b --><c>d</c>\n<![CDATA[<]]></p>", xerces::textContent, " ad\n<"},
      {"text blank", "<p>  </p>", xerces::textContent, "  "},
      {"text empty tag", "<p/>", xerces::textContent,
       "XMLParser: in file \"\" at line 0 at column 0: expected element to have a text content!"},
      {"children",
       "<r>t<p id='1'/><q><p id='-'/></q><!-- c --><n:p xmlns:n='u' id='2'/><p id='3'/></r>",
       children, "123"},
  };
  for (const auto& row : rows) {
    const std::string file = write("row.xml", row.document);
    xerces::Parser parser;
    const DOMElement& root = *parser.parseDoc(file)->getDocumentElement();
    EXPECT_EQ(resultOf(file, [&] { return row.step(root); }), row.expected) << row.name;
  }
}

// Elements made without namespaces have no local name.
TEST_F(DomTest, ElementWithoutLocalNameHasTheEmptyName) {
  xerces::Parser parser;
  xercesc::DOMDocument* document = parser.parseDoc(write("a.xml", "<r><q/></r>"));
  DOMElement* plain = document->createElement(fromLocal("p").c_str());
  document->getDocumentElement()->appendChild(plain);

  const auto unnamed = xerces::namedChildElements(*document->getDocumentElement(), {});
  EXPECT_EQ(unnamed, std::list<DOMElement*>{plain});
  EXPECT_EQ(resultOf("a.xml", [&] { return matched(*plain, ""); }),
            "XMLParser: in file \"\" at line 0 at column 0: expected element called \"\"!");
}

}  // namespace
