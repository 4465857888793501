#include "xerces/ErrorHandler.hpp"

#include <gtest/gtest.h>

#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "xerces/dom.hpp"

namespace {

using xerces::ErrorHandler;

constexpr const char* header = "XML Parser reported the following errors:\n";

class ErrorHandlerTest : public testing::Test {
 protected:
  ErrorHandlerTest() { xercesc::XMLPlatformUtils::Initialize(); }
  ~ErrorHandlerTest() override { xercesc::XMLPlatformUtils::Terminate(); }

  static xercesc::SAXParseException problem(const XMLCh* message, const XMLCh* systemId,
                                            XMLFileLoc line, XMLFileLoc column) {
    const xerces::XmlString publicId = {'p'};
    return {message, publicId.c_str(), systemId, line, column};
  }

  const xerces::XmlString file = {'a', '.', 'x', 'm', 'l'};
  const xerces::XmlString message = {'M'};
  ErrorHandler handler;
};

TEST_F(ErrorHandlerTest, ReportsInOrderOfArrival) {
  EXPECT_EQ(handler.getReport(), header);
  handler.warning(problem(message.c_str(), file.c_str(), 1, 2));
  EXPECT_FALSE(handler.hasErrors());
  handler.fatalError(problem(message.c_str(), nullptr, 5'000'000'000, 4'294'967'297));
  handler.warning(problem(nullptr, file.c_str(), 7, 0));
  handler.error(problem(message.c_str(), file.c_str(), 3, 15));
  EXPECT_TRUE(handler.hasErrors());

  EXPECT_EQ(handler.getReport(), std::string(header) +
                                     "\tWARNING  in \"a.xml\"(line=1, column=2): M\n"
                                     "\tFATAL  in \"\"(line=5000000000, column=4294967297): M\n"
                                     "\tWARNING  in \"a.xml\"(line=7, column=0): \n"
                                     "\tERROR  in \"a.xml\"(line=3, column=15): M\n");
  EXPECT_EQ(handler.getErrors().front().publicId, "p");
}

TEST_F(ErrorHandlerTest, PrintsNoLabelForAnUnknownSeverity) {
  handler.error(problem(message.c_str(), file.c_str(), 3, 15));
  // Only the XML library adds records; a severity beyond the known ones has to be forced in.
  auto& records = const_cast<std::vector<ErrorHandler::Exception>&>(handler.getErrors());
  records.front().severity = static_cast<ErrorHandler::Severity>(3);
  EXPECT_EQ(handler.getReport(), std::string(header) + "\t  in \"a.xml\"(line=3, column=15): M\n");
  EXPECT_FALSE(handler.hasErrors());
}

TEST_F(ErrorHandlerTest, ResetForgetsEverything) {
  handler.fatalError(problem(message.c_str(), file.c_str(), 3, 15));
  handler.resetErrors();
  EXPECT_FALSE(handler.hasErrors());
  handler.resetErrors();
  EXPECT_EQ(handler.getReport(), header);
}

}  // namespace
