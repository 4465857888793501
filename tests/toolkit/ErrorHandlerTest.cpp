#include "xerces/ErrorHandler.hpp"

#include <gtest/gtest.h>

#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "xerces/dom.hpp"

namespace {

TEST(ErrorHandler, ReportsInOrderOfArrivalUntilReset) {
  xercesc::XMLPlatformUtils::Initialize();
  const std::string header = "XML Parser reported the following errors:\n";
  const xerces::XmlString file = {'a', '.', 'x', 'm', 'l'}, message = {'M'}, publicId = {'p'};
  const auto problem = [&](const XMLCh* text, const XMLCh* systemId, XMLFileLoc line,
                           XMLFileLoc column) {
    return xercesc::SAXParseException(text, publicId.c_str(), systemId, line, column);
  };
  xerces::ErrorHandler handler;
  EXPECT_EQ(handler.getReport(), header);
  handler.warning(problem(message.c_str(), file.c_str(), 1, 2));
  EXPECT_FALSE(handler.hasErrors());
  handler.fatalError(problem(nullptr, nullptr, 5'000'000'000, 4'294'967'297));
  EXPECT_TRUE(handler.hasErrors());
  EXPECT_EQ(handler.getReport(), header +
                                     "\tWARNING  in \"a.xml\"(line=1, column=2): M\n"
                                     "\tFATAL  in \"\"(line=5000000000, column=4294967297): \n");
  EXPECT_EQ(handler.getErrors().front().publicId, "p");

  handler.resetErrors();
  EXPECT_FALSE(handler.hasErrors());
  handler.error(problem(message.c_str(), file.c_str(), 3, 15));
  EXPECT_TRUE(handler.hasErrors());
  EXPECT_EQ(handler.getReport(), header + "\tERROR  in \"a.xml\"(line=3, column=15): M\n");
  xercesc::XMLPlatformUtils::Terminate();
}

}  // namespace
