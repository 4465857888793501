#include "xerces/Parser.hpp"

#include <functional>
#include <memory>
#include <stdexcept>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/IOException.hpp>

#include "XmlFiles.hpp"

namespace {

using xerces::Parser;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::DOMUserDataHandler;

using ParserTest = XmlFiles;

const Parser::LocationTag& tagOf(const DOMNode* node) {
  return Parser::getLocationTag(node);
}

std::string resultOfParse(Parser& parser, const std::string& file) {
  return resultOf(file, [&] {
    parser.parseDoc(file);
    return "parsed";
  });
}

// "name line:column " for each element in document order.
std::string placesOf(const DOMElement* element, const std::string& file) {
  const auto& tag = tagOf(element);
  std::string places = xerces::transcode(element->getNodeName()) + " " + std::to_string(tag.line) +
                       ":" + std::to_string(tag.column) + " ";
  EXPECT_EQ(tag.file, tag.line == 0 ? "" : file) << places;
  for (auto* child = element->getFirstElementChild(); child != nullptr;
       child = child->getNextElementSibling()) {
    places += placesOf(child, file);
  }
  return places;
}

TEST_F(ParserTest, TagsTellWhereStartTagsEnd) {
  write("tags.xml",
        "<config>\n"
        "\t<a\n"
        "    id='1'\n"
        "  ></a><b></b>\n"
        "<c/><d><e/>x</d>\n"
        "<f>\n"
        "</f\n"
        "></config>");
  const std::string file = directory / "." / "tags.xml";  // kept as it is passed
  for (const bool schema : {false, true}) {
    Parser parser;
    parser.setDoSchema(schema);
    const DOMDocument* document = parser.parseDoc(file);
    EXPECT_EQ(placesOf(document->getDocumentElement(), file),
              "config 1:9 a 4:4 b 4:11 c 0:0 d 5:8 e 0:0 f 6:4 ");
    EXPECT_EQ(tagOf(document).line, 0);
    EXPECT_NE(&tagOf(document), &tagOf(document->getDocumentElement()->getFirstChild()));
  }
}

TEST_F(ParserTest, FailuresCarryTheReportOfTheirOwnParse) {
  const std::string report = "XML Parser reported the following errors:\n\tFATAL  in ";
  const std::pair<std::string, std::string> rows[] = {
      {write("malformed.xml", "<config>\n<a></b></config>"),
       report + "\"{FILE}\"(line=2, column=6): expected end of tag 'a'\n"},
      {directory / "missing.xml",
       report + "\"\"(line=0, column=0): unable to open primary document entity '{FILE}'\n"},
  };
  Parser parser;
  const DOMDocument* first = parser.parseDoc(write("first.xml", "<first>1</first>"));
  for (const auto& [file, expected] : rows) {
    parser.setErrorHandler(nullptr);  // must not hide the failure from parseDoc
    EXPECT_EQ(resultOfParse(parser, file), expected);
    const DOMDocument* next = parser.parseDoc(write("next.xml", "<next>2</next>"));
    EXPECT_EQ(xerces::textContent(*next->getDocumentElement()), "2") << file;
  }
  EXPECT_EQ(xerces::textContent(*first->getDocumentElement()), "1");
}

TEST_F(ParserTest, WarningsFailNothingButAreReported) {
  const std::string start =
      "<config xmlns='urn:a' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'\n"
      "xsi:schemaLocation='urn:a a.xsd'>";  // which is not there
  Parser parser;
  parser.setDoSchema(true);
  EXPECT_EQ(resultOfParse(parser, write("warned.xml", start + "x</config>")), "parsed");
  EXPECT_EQ(resultOfParse(parser, write("failed.xml", start + "</b>")),
            "XML Parser reported the following errors:\n"
            "\tWARNING  in \"\"(line=0, column=0): unable to open primary document entity '" +
                directory.string() +
                "/a.xsd'\n\tFATAL  in \"{FILE}\"(line=2, column=36): expected end of tag "
                "'config'\n");
}

TEST_F(ParserTest, TranslatesWhatIsThrownDuringAParse) {
  struct FailingParser : Parser {
    void parseFile(const std::string& /*name*/) override { fail(); }

    std::function<void()> fail;
  };
  using xercesc::XMLExcepts;
  const std::pair<std::function<void()>, const char*> rows[] = {
      {[] { throw xerces::Exception() << "own " << 1; }, "own 1"},
      {[] { throw xercesc::IOException("a.cpp", 9, XMLExcepts::Gen_ParseInProgress); },
       "XMLException: a.cpp:9: {POINTER}"},
      {[] { throw xercesc::DOMException(xercesc::DOMException::NOT_FOUND_ERR); },
       "DOMException: {POINTER}"},
      {[] { throw std::runtime_error("the reason"); }, "the reason"},
      {[] { throw 1; }, ""},
  };
  for (const auto& [fail, expected] : rows) {
    FailingParser parser;
    parser.fail = fail;
    EXPECT_EQ(resultOfParse(parser, "a.xml"), expected);
  }
}

// Copies of the roots in a document of another parser share their tags. A count of 1 afterwards
// says that the first parser's share is gone; the leak checker sees that the copies free the tags.
TEST_F(ParserTest, ReleasesEveryTagOfEveryDocument) {
  Parser survivor;
  DOMDocument* copies = survivor.parseDoc(write("copies.xml", "<copies></copies>"));
  DOMElement* list = copies->getDocumentElement();
  const std::string file = directory / "a.xml";
  {
    Parser parser;
    for (const char* text : {"<a><s>1</s></a>", "<b><s>2</s></b>", "<c><s>3</s></c>"}) {
      const DOMElement* root = parser.parseDoc(write("a.xml", text))->getDocumentElement();
      const DOMNode* copy = list->appendChild(copies->importNode(root, true));
      EXPECT_EQ(&tagOf(copy), &tagOf(root));
      EXPECT_EQ(tagOf(copy).refCount, 2);
      EXPECT_EQ(tagOf(copy->getFirstChild()).refCount, 2);
    }
  }
  for (const DOMNode* copy = list->getFirstChild(); copy; copy = copy->getNextSibling()) {
    for (const auto& [node, column] : {std::pair(copy, 4), {copy->getFirstChild(), 7}}) {
      EXPECT_EQ(tagOf(node).refCount, 1);
      EXPECT_EQ(tagOf(node).file, file);
      EXPECT_EQ(tagOf(node).line, 1);
      EXPECT_EQ(tagOf(node).column, column);
    }
  }
  EXPECT_EQ(list->getChildElementCount(), 3u);
}

TEST_F(ParserTest, ClonesCountButCarryNoTag) {
  auto parser = std::make_unique<Parser>();
  const DOMDocument* document = parser->parseDoc(write("a.xml", "<config>x</config>"));
  const DOMElement* root = document->getDocumentElement();
  const Parser::LocationTag& tag = tagOf(root);
  EXPECT_EQ(tagOf(root->cloneNode(true)).line, 0);
  EXPECT_EQ(tag.refCount, 2);

  parser.reset();
  ASSERT_EQ(tag.refCount, 1);  // kept for the clone for ever: freed here in its name
  Parser::getLocationTagHandler().handle(DOMUserDataHandler::NODE_DELETED, nullptr,
                                         const_cast<Parser::LocationTag*>(&tag), nullptr, nullptr);
}

// All document nodes carry one static tag, which a copied document once caused to be freed.
TEST_F(ParserTest, CopiedDocumentLeavesTheDocumentTagAlone) {
  Parser parser;
  DOMDocument* document = parser.parseDoc(write("a.xml", "<config/>"));
  const Parser::LocationTag& tag = tagOf(document);
  const auto handle = [&](DOMUserDataHandler::DOMOperationType operation) {
    Parser::getLocationTagHandler().handle(
        operation, Parser::LocationTagHandler::getLocationTagName(),
        const_cast<Parser::LocationTag*>(&tag), document, nullptr);
  };
  while (tag.refCount < 1) handle(DOMUserDataHandler::NODE_CLONED);
  handle(DOMUserDataHandler::NODE_DELETED);
  EXPECT_EQ(tag.refCount, 0);
  EXPECT_EQ(tag.file, "");
}

}  // namespace
